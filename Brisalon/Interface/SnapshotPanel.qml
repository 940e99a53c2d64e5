pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Theme

// The local snapshots of the startup volume.
ColumnLayout {
    id: panel

    required property AppState appState

    readonly property bool isEmpty: appState.snapshots.length === 0

    spacing: 10

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: 4
        Layout.leftMargin: 16
        Layout.rightMargin: 16

        SectionLabel {
            Layout.fillWidth: true
            title: "Time Machine"
        }

        PlainButton {
            id: refresh

            objectName: "refreshSnapshotsButton"
            text: "Refresh snapshots"
            enabled: !panel.appState.isScanning
            opacity: enabled ? 1 : 0.4
            cornerRadius: 4
            onClicked: panel.appState.listSnapshots()

            contentItem: SymbolImage {
                name: "arrow.clockwise"
                size: Theme.body
                color: refresh.hovered ? Theme.textSecondary : Theme.muted
            }

            HintTip {
                text: refresh.text
                visible: refresh.hovered && !refresh.down
            }
        }
    }

    TextLabel {
        objectName: "snapshotError"
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.leftMargin: 16
        Layout.rightMargin: 16
        visible: panel.isEmpty && panel.appState.snapshotError !== ""
        text: panel.appState.snapshotError
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        elide: Text.ElideRight
        font: Theme.system(Theme.caption)
        color: Theme.muted
    }

    ColumnLayout {
        objectName: "noSnapshots"
        Layout.fillWidth: true
        Layout.leftMargin: 16
        Layout.rightMargin: 16
        visible: panel.isEmpty && panel.appState.snapshotError === ""
        spacing: 6

        TextLabel {
            text: "No local snapshots"
            font: Theme.rounded(Theme.callout, Font.Medium)
            color: Theme.textSecondary
        }

        TextLabel {
            Layout.fillWidth: true
            text: "When present, snapshots often hide inside System Data."
            wrapMode: Text.Wrap
            font: Theme.system(Theme.caption)
            color: Theme.muted
        }

        Item {
            Layout.fillHeight: true
        }
    }

    ListView {
        id: list

        objectName: "snapshotList"
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.bottomMargin: 12
        visible: !panel.isEmpty
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: panel.appState.snapshots
        keyNavigationEnabled: false
        // The rows are made anew; the keyboard, if it was on one, goes to the first.
        onModelChanged: {
            if (!activeFocus)
                return;
            forceLayout();
            const next = itemAtIndex(0)?.nextItemInFocusChain() ?? refresh;
            next.forceActiveFocus(Qt.TabFocusReason);
        }
        Accessible.role: Accessible.List
        Accessible.name: "Local snapshots"

        // Beside the band at the window's edge that changes its size.
        ThinScrollBar.vertical: ThinScrollBar {
            rightPadding: 8
        }

        delegate: Item {
            id: cell

            required property localSnapshot modelData
            required property int index

            width: ListView.view.width
            implicitHeight: row.implicitHeight + 4

            ListRowStyle {
                id: row

                objectName: "snapshot" + cell.index
                x: 16
                y: 2
                width: parent.width - 32
                Accessible.name: cell.modelData.title

                content: [
                    SymbolImage {
                        objectName: "snapshotSymbol"
                        name: "clock.arrow.circlepath"
                        size: 14
                        color: Theme.danger
                    },
                    ColumnLayout {
                        spacing: 2

                        TextLabel {
                            objectName: "snapshotTitle"
                            Layout.fillWidth: true
                            text: cell.modelData.title
                            maximumLineCount: 1
                            elide: Text.ElideRight
                            font: Theme.rounded(Theme.callout, Font.Medium)
                            color: Theme.text
                            Accessible.ignored: true
                        }

                        TextLabel {
                            Layout.fillWidth: true
                            text: "Local snapshot · may appear as System Data"
                            elide: Text.ElideRight
                            font: Theme.system(Theme.caption2)
                            color: Theme.muted
                        }
                    },
                    BorderedButton {
                        objectName: "deleteSnapshotButton"
                        text: "Delete"
                        symbol: "trash.fill"
                        isSmall: true
                        tint: Theme.danger
                        Accessible.description: cell.modelData.title
                        onClicked: panel.appState.confirmSnapshot = cell.modelData
                        onActiveFocusChanged: {
                            if (activeFocus)
                                list.positionViewAtIndex(cell.index, ListView.Contain);
                        }
                    }
                ]
            }
        }
    }
}
