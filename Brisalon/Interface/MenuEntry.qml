import QtQuick
import QtQuick.Layouts
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

    contentItem: RowLayout {
        spacing: 12

        TextLabel {
            Layout.fillWidth: true
            text: entry.text
            elide: Text.ElideMiddle
            font: Theme.system(Theme.callout)
            color: Theme.text
        }

        TextLabel {
            visible: text !== ""
            text: entry.note
            font: Theme.system(Theme.subheadline)
            color: Theme.muted
        }

        SymbolImage {
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
