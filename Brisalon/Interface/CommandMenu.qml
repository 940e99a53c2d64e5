import QtQuick
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// A menu of commands, with a line between their groups.
PlainMenu {
    id: menu

    // The Commands, in order.
    required property var commands
    // What the command opens that opens a menu, if one of them does.
    property T.Menu submenu: null

    component Entry: MenuEntry {
        required property Command modelData

        objectName: modelData.objectName + "Entry"
        text: modelData.text
        note: modelData.shortcut
        enabled: modelData.isEnabled
        onTriggered: modelData.run()
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
            if (!command.opensMenu)
                return menu.addItem(entry);
            menu.submenu.title = command.text;
            menu.submenu.enabled = Qt.binding(() => command.isEnabled);
            menu.addMenu(menu.submenu);
        }
        onObjectRemoved: (index, entry) => menu.removeItem(entry)
    }
}
