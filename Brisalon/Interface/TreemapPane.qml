import QtQuick
import Brisalon.App
import Brisalon.Theme

// The large area in the middle: the map, or what stands in its place.
//
// Its components reach for its ids without being bound to their context, because
// the Loader of Qt 6.4 refuses bound ones.
// qmllint disable unqualified
Item {
    id: pane

    required property AppState appState
    required property scanProgress progress

    readonly property Component content: {
        switch (MapPlace.content(appState.scanError, appState.tree, appState.current,
                                 appState.isScanning)) {
        case MapPlace.Failure:
            return failure;
        case MapPlace.EmptyFolder:
            return emptyFolder;
        case MapPlace.Map:
            return map;
        case MapPlace.FirstScan:
            return scanning;
        default:
            return welcome;
        }
    }

    // Zooms in as the user does it on the map.
    function zoom(node: fileNode) {
        const panel = loader.item as MapPanel;
        panel?.zoom(node);
    }

    function takeFocus(isVisible: bool) {
        loader.forceActiveFocus(isVisible ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    Rectangle {
        id: well

        objectName: "well"
        anchors.fill: parent
        anchors.margins: 16
        color: Theme.well
        clip: true

        CornerGradient {
            width: 480
            height: 480
            radius: 480
            from: Qt.tint(Theme.well, Theme.faded(Theme.accent, 0.04))
            to: Theme.well
        }

        Loader {
            id: loader

            anchors.fill: parent
            focus: true
            sourceComponent: pane.content
        }

        Loader {
            anchors.centerIn: parent
            active: pane.appState.isScanning && pane.appState.tree.isPresent
            sourceComponent: ScanOverlay {
                objectName: "scanOverlay"

                readonly property MapPanel panel: loader.item as MapPanel

                map: panel?.view?.map ?? null
            }
        }
    }

    Component {
        id: failure

        Notice {
            objectName: "notice"
            symbol: "exclamationmark.triangle.fill"
            title: "Scan failed"
            detail: pane.appState.scanError
            tint: Theme.danger

            MouseArea {
                anchors.fill: parent
                onClicked: pane.appState.dismissScanError()
            }

            Shortcut {
                sequence: "Escape"
                onActivated: pane.appState.dismissScanError()
            }
        }
    }

    Component {
        id: emptyFolder

        Notice {
            objectName: "notice"
            symbol: "folder.fill"
            title: "Empty folder"
            detail: pane.appState.current.path
            tint: Theme.muted
        }
    }

    Component {
        id: map

        MapPanel {
            objectName: "mapPanel"
            appState: pane.appState
        }
    }

    Component {
        id: welcome

        WelcomeView {
            appState: pane.appState
        }
    }

    Component {
        id: scanning

        ScanningWelcome {
            objectName: "scanningWelcome"
            progress: pane.progress
        }
    }
}
