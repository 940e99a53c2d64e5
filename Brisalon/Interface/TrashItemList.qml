pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Interface
import Brisalon.Theme

// What a move to the Trash would take, item by item.
ListView {
    id: list

    required property AppState appState

    objectName: "trashItems"
    implicitHeight: Math.min(contentHeight, 226)
    clip: true
    spacing: 4
    boundsBehavior: Flickable.StopAtBounds
    activeFocusOnTab: true
    Accessible.role: Accessible.List
    Accessible.name: "Items to move to the Trash"

    model: TrashItemsModel {
        appState: list.appState
    }

    ThinScrollBar.vertical: ThinScrollBar {
        id: bar
    }

    Keys.onPressed: event => {
        const last = count - 1;
        const page = Math.max(1, Math.floor(height / (contentHeight / count)));
        const to = { [Qt.Key_Home]: 0, [Qt.Key_End]: last,
                     [Qt.Key_PageUp]: Math.max(0, currentIndex - page),
                     [Qt.Key_PageDown]: Math.min(last, currentIndex + page) }[event.key];
        event.accepted = to !== undefined;
        if (event.accepted)
            currentIndex = to;
    }

    delegate: ListRowStyle {
        id: row

        required property largeFileEntry entry
        required property int index

        objectName: "trashItem" + index
        width: ListView.view.width - (bar.visible ? 12 : 0)
        Accessible.name: entry.spokenText
        Accessible.focusable: true

        content: [
            ItemWords {
                spacing: 2
                name: row.entry.name
                place: row.entry.folderPath
            },
            DigitText {
                text: row.entry.sizeText
                font: Theme.rounded(Theme.caption, Font.DemiBold)
                color: Theme.textSecondary
                Accessible.ignored: true
            }
        ]

        FocusRing {
            visible: row.activeFocus
            cornerRadius: 9
            outset: -1
        }
    }
}
