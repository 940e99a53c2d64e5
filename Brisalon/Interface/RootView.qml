import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Theme

// The content of the window.
FocusScope {
    id: root

    required property AppState appState
    required property AppCommands commands

    Component.onCompleted: appState.refreshVolume()

    SteadyProgress {
        id: steady

        appState: root.appState
    }

    CornerGradient {
        anchors.fill: parent
        from: Theme.backgroundTop
        to: Theme.backgroundBottom
    }

    WindowMover {
        anchors.fill: parent
    }

    RowLayout {
        anchors.fill: parent
        spacing: 0

        SidebarView {
            Layout.preferredWidth: 248
            Layout.fillHeight: true
            appState: root.appState
            progress: steady.progress
            commands: root.commands
        }

        ColumnLayout {
            spacing: 0

            PermissionBanner {
                Layout.fillWidth: true
                appState: root.appState
            }

            TreemapWorkspace {
                Layout.fillWidth: true
                Layout.fillHeight: true
                appState: root.appState
                progress: steady.progress
            }

            StatusBar {
                Layout.fillWidth: true
                appState: root.appState
                progress: steady.progress
            }
        }
    }
}
