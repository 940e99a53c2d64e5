import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// One line of a menu: its text, and at the other end a shortcut, a size, or the sign of a
// menu of its own.
T.MenuItem {
    id: entry

    property string note: ""

    implicitWidth: (menu?.width ?? 240) - 10
    implicitHeight: 28
    leftPadding: 10
    rightPadding: 10
    opacity: enabled ? 1 : 0.4

    contentItem: Item {
        TextLabel {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width - note.width - (note.text === "" ? 0 : 12)
            text: entry.text
            elide: Text.ElideMiddle
            font: Theme.system(Theme.callout)
            color: Theme.text
        }

        TextLabel {
            id: note

            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            text: entry.note
            font: Theme.system(Theme.subheadline)
            color: Theme.muted
        }

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            visible: entry.subMenu !== null
            name: "chevron.right"
            size: 9
            color: Theme.muted
        }
    }

    background: Rectangle {
        radius: 6
        color: entry.highlighted && entry.enabled ? Theme.accentSoft : "transparent"
    }
}
