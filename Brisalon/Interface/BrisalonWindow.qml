import QtQuick
import Brisalon.App
import Brisalon.Theme

// The one window. It has no frame of the desktop's: its content reaches up to the
// edge, and brings its own controls.
Window {
    id: window

    required property AppState appState

    title: "Brisalon"
    width: 1280
    height: 820
    minimumWidth: 960
    minimumHeight: 700
    flags: Qt.Window | Qt.FramelessWindowHint
    color: Theme.windowBackground
    visible: true

    AppCommands {
        id: commands

        appState: window.appState
    }

    RootView {
        anchors.fill: parent
        focus: true
        appState: window.appState
        commands: commands
    }

    ResizeBorder {
        anchors.fill: parent
        visible: window.visibility === Window.Windowed
    }
}
