import QtQuick
import Brisalon.App
import Brisalon.Interface
import Brisalon.Theme

// The one window. It has no frame of the desktop's: its content reaches up to the
// edge, and brings its own controls.
Window {
    id: window

    required property AppState appState
    required property Commands commands
    required property ProductInformation product
    property bool showAbout: false

    title: "Brisalon"
    width: 1280
    height: 820
    minimumWidth: 960
    minimumHeight: 700
    flags: Qt.Window | Qt.FramelessWindowHint
    color: Theme.windowBackground
    visible: true

    function toggleZoom() {
        if (visibility === Window.Maximized)
            showNormal();
        else
            showMaximized();
    }

    // The commands for what is selected, at a point of that item.
    function openContextMenu(item: Item, point: point) {
        contextMenu.popup(rootView, item.mapToItem(rootView, point));
    }

    CommandMenu {
        id: contextMenu

        property Item behind: null

        objectName: "contextMenu"
        commands: window.commands.contextMenu
        // A menu that closes leaves the keyboard nowhere.
        onAboutToShow: behind = window.activeFocusItem
        onClosed: {
            if (!window.activeFocusItem?.parent)
                behind?.forceActiveFocus(Qt.PopupFocusReason);
        }
    }

    Connections {
        target: window.commands

        function onAboutRequested() {
            window.showAbout = true;
        }

        function onWhatMayGoRequested() {
            whatMayGo.open();
        }

        function onWhatIsLeftOutRequested() {
            whatIsLeftOut.open();
        }

        function onZoomRequested(node: fileNode) {
            rootView.zoom(node);
        }
    }

    RootView {
        id: rootView

        anchors.fill: parent
        focus: true
        appState: window.appState
        commands: window.commands
    }

    ResizeBorder {
        anchors.fill: parent
        visible: window.visibility === Window.Windowed
    }

    // qmllint disable unqualified
    LoadedSheet {
        behind: rootView
        name: "About Brisalon"
        visible: window.showAbout
        onAboutToHide: window.showAbout = false
        view: AboutView {
            focus: true
            appState: window.appState
            product: window.product
            onClosed: window.showAbout = false
        }
    }

    LoadedSheet {
        id: whatMayGo

        behind: rootView
        name: "What May Go"
        view: WhatMayGoView {
            focus: true
            appState: window.appState
            onClosed: whatMayGo.close()
        }
    }

    LoadedSheet {
        id: whatIsLeftOut

        behind: rootView
        name: "What the Map Leaves Out"
        view: WhatIsLeftOutView {
            focus: true
            appState: window.appState
            onClosed: whatIsLeftOut.close()
        }
    }
    // qmllint enable unqualified
}
