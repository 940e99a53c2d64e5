pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// The map of the current level with its legend.
PanelStyle {
    id: panel

    required property AppState appState

    // Whether the next change of level is one that the user asked for by zooming
    // in: it is animated, all others happen at once.
    property bool isZooming: false
    property TreemapView view: null

    cornerRadius: 18

    Component.onCompleted: showLevel()

    function zoom(node: fileNode) {
        isZooming = true;
        appState.zoom(node);
        isZooming = false;
    }

    // Every level has a view of its own, so that nothing of the pointer's state
    // survives from one level to the next; a rescan of a level keeps its view.
    function showLevel() {
        const level = appState.current;
        if (!level.isPresent)
            return;
        if (view && view.level.isSameItem(level)) {
            view.level = level;
            return;
        }
        const old = view;
        const hadFocus = old?.map.activeFocus ?? false;
        const showedFocus = old?.map.focusVisible ?? false;
        view = levelView.createObject(stage, {
            level: level,
            state: isZooming ? "away" : ""
        });
        if (old && isZooming) {
            // As large as it was: the legend of the new level may leave the map more room or
            // less, which the old one has no picture for.
            old.anchors.fill = undefined;
            old.state = "gone";
            view.state = "";
        } else if (old) {
            old.destroy();
        }
        // The keyboard stays on the map, and seen if it was; otherwise the new map is
        // where it comes to next.
        if (hadFocus)
            view.map.forceActiveFocus(showedFocus ? Qt.TabFocusReason : Qt.OtherFocusReason);
        else
            view.map.focus = true;
    }

    Connections {
        target: panel.appState

        function onCurrentChanged() {
            panel.showLevel();
        }
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 12

        Item {
            id: stage

            Layout.fillWidth: true
            Layout.fillHeight: true
        }

        HogLegend {
            objectName: "hogLegend"
            Layout.fillWidth: true
            level: panel.appState.current
        }
    }

    Component {
        id: levelView

        TreemapView {
            id: shown

            objectName: "treemapView"
            anchors.fill: parent
            enabled: state === ""
            selectedID: panel.appState.selected.id

            onSelectRequested: node => panel.appState.select(node)
            onZoomRequested: node => panel.zoom(node)
            onMenuRequested: point => (Window.window as BrisalonWindow).openContextMenu(shown, point)

            states: [
                State {
                    name: "away"
                    PropertyChanges {
                        shown.opacity: 0
                        shown.scale: 0.98
                    }
                },
                State {
                    name: "gone"
                    PropertyChanges {
                        shown.opacity: 0
                        shown.scale: 0.98
                    }
                }
            ]
            transitions: [
                Transition {
                    from: "away"
                    SpringTransition {}
                },
                Transition {
                    to: "gone"
                    SequentialAnimation {
                        SpringTransition {}
                        ScriptAction {
                            script: shown.destroy()
                        }
                    }
                }
            ]
        }
    }
}
