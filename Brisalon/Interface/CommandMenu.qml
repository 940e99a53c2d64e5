import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// The menu of the application's commands.
T.Menu {
    id: menu

    required property AppCommands commands

    implicitWidth: 240
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 8

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
    }

    background: Rectangle {
        radius: 10
        color: Theme.elevated
        border.width: 1
        border.color: Theme.strokeStrong
    }

    delegate: T.MenuItem {}

    component Entry: T.MenuItem {
        id: entry

        implicitWidth: 230
        implicitHeight: 28
        leftPadding: 10
        rightPadding: 10
        opacity: enabled ? 1 : 0.4

        contentItem: Item {
            TextLabel {
                anchors.verticalCenter: parent.verticalCenter
                text: entry.text
                font: Theme.system(Theme.callout)
                color: Theme.text
            }

            TextLabel {
                anchors.verticalCenter: parent.verticalCenter
                anchors.right: parent.right
                text: entry.action?.shortcut ?? ""
                font: Theme.system(Theme.subheadline)
                color: Theme.muted
            }
        }

        background: Rectangle {
            radius: 6
            color: entry.highlighted && entry.enabled ? Theme.accentSoft : "transparent"
        }
    }

    Entry {
        action: menu.commands.scan[0]
    }
    Entry {
        action: menu.commands.scan[1]
    }
    Entry {
        action: menu.commands.scan[2]
    }
    Entry {
        action: menu.commands.scan[3]
    }
    T.MenuSeparator {
        implicitWidth: 230
        implicitHeight: 11

        contentItem: Item {}
        background: Rectangle {
            x: 10
            y: 5
            width: parent.width - 20
            height: 1
            color: Theme.stroke
        }
    }
    Entry {
        objectName: "aboutEntry"
        action: menu.commands.about
    }
}
