import QtQuick
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// A menu of commands, with a line between their groups.
T.Menu {
    id: menu

    // The Commands, in order.
    required property var commands

    implicitWidth: 240
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 8

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        interactive: false
        currentIndex: menu.currentIndex
        focus: true

        // From one end to the other, which the menu itself does not do.
        Keys.onUpPressed: event => {
            event.accepted = menu.currentIndex <= 0;
            if (event.accepted)
                menu.currentIndex = menu.count - 1;
        }
        Keys.onDownPressed: event => {
            event.accepted = menu.currentIndex === menu.count - 1;
            if (event.accepted)
                menu.currentIndex = 0;
        }
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

        required property Command modelData

        objectName: modelData.objectName + "Entry"
        text: modelData.text
        enabled: modelData.isEnabled
        onTriggered: modelData.run()
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
                text: entry.modelData.shortcut
                font: Theme.system(Theme.subheadline)
                color: Theme.muted
            }
        }

        background: Rectangle {
            radius: 6
            color: entry.highlighted && entry.enabled ? Theme.accentSoft : "transparent"
        }
    }

    Component {
        id: line

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
    }

    Instantiator {
        model: menu.commands
        delegate: Entry {}
        onObjectAdded: (index, entry) => {
            const [before, command] = [menu.commands[index - 1], menu.commands[index]];
            if (before && before.group !== command.group)
                menu.addItem(line.createObject(menu.contentItem));
            menu.addItem(entry);
        }
        onObjectRemoved: (index, entry) => menu.removeItem(entry)
    }
}
