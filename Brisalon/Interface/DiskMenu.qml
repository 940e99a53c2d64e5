pragma ComponentBehavior: Bound

import QtQuick
import Brisalon.App

// The local disks, each of which can be scanned.
PlainMenu {
    id: diskMenu

    required property AppState appState

    objectName: "scanDisk"
    implicitWidth: 320

    Instantiator {
        active: diskMenu.appState.disks.length === 0
        // Not disabled, since the keyboard then could not stand on it, nor leave the menu.
        delegate: MenuEntry {
            objectName: "noDisksEntry"
            opacity: 0.4
            text: "No disks found yet"
        }
        onObjectAdded: (index, entry) => diskMenu.addItem(entry)
        onObjectRemoved: (index, entry) => diskMenu.removeItem(entry)
    }

    Instantiator {
        // Their number, so that new figures leave the entries and the keyboard in place.
        model: diskMenu.appState.disks.length
        delegate: MenuEntry {
            required property int index
            // None for a moment when the list grows shorter.
            readonly property var disk: diskMenu.appState.disks[index]

            objectName: "diskEntry"
            text: disk?.name ?? ""
            note: disk?.sizeText ?? ""
            Accessible.name: note === "" ? text : text + ", " + note
            onTriggered: diskMenu.appState.startScan(disk.mountPoint)
        }
        onObjectAdded: (index, entry) => diskMenu.insertItem(index, entry)
        onObjectRemoved: (index, entry) => diskMenu.removeItem(entry)
    }
}
