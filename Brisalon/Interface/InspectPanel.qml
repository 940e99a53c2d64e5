import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Theme

// What is selected, and what can be done with it: the ticked large files, or else
// the block that was clicked, or else nothing.
Item {
    id: panel

    required property AppState appState

    readonly property selection shown: appState.selection

    signal zoomRequested(node: fileNode)

    implicitHeight: column.implicitHeight + 36

    ColumnLayout {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 18
        spacing: 14

        SectionLabel {
            title: "Selection"
        }

        ColumnLayout {
            objectName: "emptySelection"
            Layout.fillWidth: true
            Layout.topMargin: 8
            Layout.bottomMargin: 8
            visible: !panel.shown.isPresent
            spacing: 6

            TextLabel {
                Layout.fillWidth: true
                text: "Nothing selected"
                font: Theme.rounded(Theme.headline, Font.DemiBold)
                color: Theme.textSecondary
            }

            TextLabel {
                Layout.fillWidth: true
                text: "Click a block on the map to inspect it. Double-click a folder to drill down."
                wrapMode: Text.Wrap
                font: Theme.system(Theme.callout)
                color: Theme.muted
            }
        }

        RowLayout {
            Layout.fillWidth: true
            visible: panel.shown.isPresent
            spacing: 12

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                TextLabel {
                    objectName: "selectionTitle"
                    Layout.fillWidth: true
                    text: panel.shown.title
                    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    font: Theme.rounded(Theme.title3, Font.Bold)
                    color: Theme.text
                }

                TextLabel {
                    objectName: "selectionSubtitle"
                    Layout.fillWidth: true
                    text: panel.shown.subtitle
                    elide: Text.ElideRight
                    font: Theme.rounded(Theme.caption, Font.Medium)
                    color: Theme.muted
                }
            }

            DigitText {
                objectName: "inspectedSize"
                Layout.alignment: Qt.AlignTop
                text: panel.shown.sizeText
                font: Theme.rounded(Theme.title2, Font.Bold)
                color: Theme.accent
            }
        }

        HogSummary {
            objectName: "hogSummary"
            Layout.fillWidth: true
            visible: panel.shown.item.isHog
            item: panel.shown.item
        }

        Repeater {
            model: panel.shown.facts

            MetaChip {
                required property selectionFact modelData

                objectName: "fact" + modelData.label
                label: modelData.label
                value: modelData.value
            }
        }

        PathBlock {
            objectName: "pathBlock"
            Layout.fillWidth: true
            visible: panel.shown.isOneItem
            path: panel.shown.item.path
        }

        RowLayout {
            visible: panel.shown.isPresent
            spacing: 8

            BorderedButton {
                objectName: "revealButton"
                visible: panel.shown.canReveal
                text: "Reveal"
                symbol: "folder.fill"
                onClicked: panel.appState.requestReveal(panel.shown.item.url)
            }

            BorderedButton {
                objectName: "zoomInButton"
                visible: panel.shown.canZoom
                text: "Zoom in"
                symbol: "arrow.up.left.and.arrow.down.right"
                isProminent: true
                tint: Theme.accent
                onClicked: panel.zoomRequested(panel.appState.selected)
            }

            BorderedButton {
                objectName: "inspectorTrashButton"
                text: "Trash"
                symbol: "trash.fill"
                tint: Theme.danger
                enabled: !panel.appState.isScanning
                onClicked: panel.appState.requestTrashSelected()
            }
        }
    }
}
