import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// The content of the window.
FocusScope {
    id: root

    required property AppState appState
    required property Commands commands

    readonly property Item focused: Window.activeFocusItem
    readonly property bool isFocusHidden: focused !== null && !focused.visible

    Component.onCompleted: appState.appear()

    function zoom(node: fileNode) {
        workspace.zoom(node);
    }

    // What goes away while the keyboard is on it leaves the keyboard to the map. Later,
    // because it may come back at once, or leave the keyboard to something else.
    onIsFocusHiddenChanged: if (isFocusHidden) handingOn.start()

    Timer {
        id: handingOn

        interval: 0
        onTriggered: {
            if (root.isFocusHidden)
                workspace.takeFocus((root.focused as T.Control)?.visualFocus ?? false);
        }
    }

    Instantiator {
        model: root.commands.all

        delegate: Shortcut {
            required property Command modelData

            sequence: modelData.shortcut
            enabled: modelData.isEnabled
            onActivated: modelData.run()
        }
    }

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
                id: workspace

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

    ConfirmationDialog {
        behind: root
        question: root.appState.confirmTrash.isPresent ? root.appState.confirmTrash.title : ""
        explanation: root.appState.confirmTrash.message
        action: "Move to Trash"
        symbol: "trash.fill"
        itemsOf: root.appState
        onConfirmed: root.appState.confirmPendingTrash()
        onDismissed: root.appState.dismissTrash()
    }

    ConfirmationDialog {
        behind: root
        question: root.appState.confirmSnapshot.isPresent
                  ? "Delete local Time Machine snapshot?" : ""
        explanation: "Local snapshots can free a lot of space, but Time Machine will have to recopy that data later. This cannot be undone from Trash."
        action: "Delete Snapshot"
        symbol: "clock.arrow.circlepath"
        onConfirmed: root.appState.confirmPendingSnapshot()
        onDismissed: root.appState.dismissSnapshot()
    }

    // A folder that is dropped anywhere is scanned, unless a sheet has to be answered first.
    DropArea {
        id: drop

        property fileURL folder

        objectName: "dropArea"
        anchors.fill: parent
        enabled: !root.appState.isScanning && !(T.Overlay.overlay?.visible ?? false)
        onEntered: event => {
            folder = ScanTargets.dropped(event.urls);
            event.accepted = folder.path !== "";
        }
        onDropped: event => {
            event.accept(Qt.CopyAction);
            root.appState.startScan(folder);
        }
    }

    DropHint {
        objectName: "dropHint"
        anchors.fill: parent
        visible: drop.containsDrag
        folder: drop.folder.path
    }
}
