import QtQuick
import QtQuick.Templates as T
import Brisalon.App

// The commands of the menu, whose shortcuts work everywhere in the window.
Item {
    id: commands

    required property AppState appState

    signal aboutRequested()

    readonly property list<T.Action> scan: [
        T.Action {
            text: "Scan Home Folder"
            shortcut: "Ctrl+Shift+H"
            enabled: !commands.appState.isScanning
            onTriggered: commands.appState.startScan(commands.appState.homeFolder)
        },
        T.Action {
            text: "Scan This Mac"
            shortcut: "Ctrl+Shift+M"
            enabled: !commands.appState.isScanning
            onTriggered: commands.appState.startScan(commands.appState.startupVolume)
        },
        T.Action {
            text: "Scan Folder…"
            shortcut: "Ctrl+O"
            enabled: !commands.appState.isScanning
            onTriggered: commands.appState.pickFolderAndScan()
        },
        T.Action {
            text: "Scan Again"
            shortcut: "Ctrl+R"
            enabled: !commands.appState.isScanning && commands.appState.tree.isPresent
            onTriggered: commands.appState.startScan(commands.appState.scanRoot)
        }
    ]

    readonly property T.Action about: T.Action {
        text: "About Brisalon"
        onTriggered: commands.aboutRequested()
    }

    Shortcut {
        sequence: "Escape"
        enabled: commands.appState.isScanning
        onActivated: commands.appState.cancelScan()
    }

    Shortcut {
        sequence: "Delete"
        enabled: commands.appState.selection.isPresent && !commands.appState.isScanning
        onActivated: commands.appState.requestTrashSelected()
    }

    Shortcut {
        sequence: "Backspace"
        onActivated: commands.appState.zoomUpOneLevel()
    }
}
