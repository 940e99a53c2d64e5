pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// The largest files of the last scan. Some of them can be ticked, to be looked at
// or moved to the Trash together.
ColumnLayout {
    id: sidebar

    required property AppState appState
    required property LargeFilesModel files

    // The context menu of what is ticked, at a point of that item.
    signal menuRequested(item: Item, point: point)

    spacing: 10

    RowLayout {
        Layout.fillWidth: true
        Layout.topMargin: 4
        Layout.leftMargin: 16
        Layout.rightMargin: 16

        SectionLabel {
            Layout.fillWidth: true
            title: "Largest files"
        }

        DigitText {
            objectName: "tickedSize"
            visible: sidebar.appState.selection.isOfFiles
            text: sidebar.appState.selection.sizeText
            font: Theme.rounded(Theme.caption, Font.Bold)
            color: Theme.accent
        }
    }

    TextLabel {
        objectName: "noLargeFiles"
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.leftMargin: 16
        Layout.rightMargin: 16
        Layout.bottomMargin: 12
        visible: list.count === 0
        text: "Run a scan to list the biggest files here."
        wrapMode: Text.Wrap
        font: Theme.system(Theme.callout)
        color: Theme.muted
    }

    ListView {
        id: list

        // Whether the keyboard and not the pointer was used last, so that it must be
        // seen where the keyboard is.
        property bool showsFocus: true

        objectName: "largeFilesList"
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.bottomMargin: 12
        visible: count > 0
        clip: true
        topMargin: 1
        bottomMargin: 1
        spacing: 4
        boundsBehavior: Flickable.StopAtBounds
        model: sidebar.files
        currentIndex: sidebar.files.currentRow
        keyNavigationEnabled: false
        highlightFollowsCurrentItem: false
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: "Largest files"

        // Beside the band at the window's edge that changes its size.
        ThinScrollBar.vertical: ThinScrollBar {
            rightPadding: 8
        }

        // A click leaves the list where it is, or its second would hit another row.
        onCurrentIndexChanged: {
            if (showsFocus)
                positionViewAtIndex(currentIndex, ListView.Contain);
        }
        onActiveFocusChanged: {
            if (activeFocus)
                sidebar.files.enter();
            else if (Window.active) // and not when the window itself loses the keyboard
                showsFocus = true;
        }
        // Before the command itself: it acts on what the ring shows.
        Keys.onShortcutOverride: event => {
            if (showsFocus && (event.matches(StandardKey.Delete) || event.matches(StandardKey.Copy)))
                sidebar.files.meanCurrent();
            event.accepted = false;
        }
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Menu
                    || event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier) {
                sidebar.files.mean(currentIndex);
                if (currentItem)
                    sidebar.menuRequested(currentItem, Qt.point(16, currentItem.height));
                event.accepted = true;
                return;
            }
            event.accepted = sidebar.files.press(event.key, event.modifiers);
            if (!event.accepted)
                return;
            showsFocus = true;
            positionViewAtIndex(currentIndex, ListView.Contain);
        }

        delegate: ListRowStyle {
            id: row

            required property largeFileEntry entry
            required property int index
            required isSelected

            objectName: "largeFile" + index
            // No x: the lists of newer Qt set that of their rows.
            transform: Translate { x: 16 }
            width: ListView.view.width - 32
            isHovered: pointer.containsMouse
            Accessible.name: entry.spokenText
            Accessible.selectable: true
            Accessible.selected: isSelected
            Accessible.focusable: true
            Accessible.onPressAction: sidebar.files.click(index)

            content: [
                ContinuousRectangle {
                    objectName: "colorBar"
                    Layout.preferredWidth: 4
                    Layout.preferredHeight: 36
                    Layout.topMargin: 4
                    Layout.bottomMargin: 4
                    radius: 4
                    color: NodeColor.ofFile(row.entry)
                },
                ItemWords {
                    name: row.entry.name
                    place: row.entry.folderName
                },
                DigitText {
                    objectName: "fileSize"
                    text: row.entry.sizeText
                    font: Theme.rounded(Theme.caption, Font.DemiBold)
                    color: Theme.textSecondary
                    Accessible.ignored: true
                }
            ]

            MouseArea {
                id: pointer

                anchors.fill: parent
                acceptedButtons: Qt.LeftButton | Qt.RightButton
                hoverEnabled: true
                onPressed: mouse => {
                    if (mouse.button !== Qt.RightButton)
                        return;
                    sidebar.files.mean(row.index);
                    sidebar.menuRequested(row, Qt.point(mouse.x, mouse.y));
                }
                onClicked: mouse => {
                    if (mouse.button === Qt.RightButton)
                        return;
                    list.showsFocus = false;
                    sidebar.files.click(row.index, mouse.modifiers);
                    list.forceActiveFocus(Qt.MouseFocusReason);
                }
            }

            FocusRing {
                visible: row.activeFocus && list.showsFocus
                cornerRadius: 9
                outset: -1
            }
        }
    }
}
