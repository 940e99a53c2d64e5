import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// A menu in the look of the product.
T.Menu {
    id: menu

    implicitWidth: 240
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    padding: 5
    margins: 8
    cascade: true

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

    // Of the menus in it.
    delegate: MenuEntry {
        objectName: (subMenu?.objectName ?? "") + "Entry"
    }
}
