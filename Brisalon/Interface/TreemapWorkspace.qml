import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Theme

// The map and the inspector beside it, with a divider between them that the user
// drags, or moves with the arrow keys. What the window gains or loses goes to the
// map; the inspector keeps its width within its bounds.
Item {
    id: workspace

    required property AppState appState
    required property scanProgress progress

    readonly property real minimumMapWidth: 520
    readonly property real minimumInspectorWidth: 320
    readonly property real maximumInspectorWidth: 420
    property real inspectorWidth: 380

    // The width that the column gets: what was asked for, unless the map needs it.
    readonly property real shownInspectorWidth:
        Math.max(minimumInspectorWidth, Math.min(inspectorWidth, width - minimumMapWidth))

    implicitWidth: minimumMapWidth + minimumInspectorWidth

    function resizeInspector(width: real) {
        inspectorWidth = Math.max(minimumInspectorWidth, Math.min(
            width, maximumInspectorWidth, workspace.width - minimumMapWidth));
    }

    // Zooms in as the user does it on the map.
    function zoom(node: fileNode) {
        pane.zoom(node);
    }

    // Brings the keyboard to the map, or to what stands in its place.
    function takeFocus(isVisible: bool) {
        pane.takeFocus(isVisible);
    }

    ColumnLayout {
        objectName: "mapColumn"
        anchors.left: parent.left
        anchors.right: inspector.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        spacing: 0

        MapHeaderBar {
            Layout.fillWidth: true
            appState: workspace.appState
        }

        TreemapPane {
            id: pane

            objectName: "treemapPane"
            Layout.fillWidth: true
            Layout.fillHeight: true
            appState: workspace.appState
            progress: workspace.progress
        }
    }

    InspectorColumn {
        id: inspector

        objectName: "inspectorColumn"
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: workspace.shownInspectorWidth
        appState: workspace.appState
        onZoomRequested: node => pane.zoom(node)
    }

    // Wider than the line that is seen, so that it is easy to catch.
    MouseArea {
        id: divider

        property real grip: 0

        objectName: "divider"
        anchors.horizontalCenter: inspector.left
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        width: 9
        activeFocusOnTab: true
        hoverEnabled: true
        cursorShape: Qt.SplitHCursor
        Accessible.role: Accessible.Splitter
        Accessible.name: "Inspector width"

        onPressed: mouse => grip = mouse.x
        onPositionChanged: mouse => {
            if (pressed)
                workspace.resizeInspector(inspector.width - (mouse.x - grip));
        }
        Keys.onLeftPressed: workspace.resizeInspector(inspector.width + 10)
        Keys.onRightPressed: workspace.resizeInspector(inspector.width - 10)

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 2
            height: parent.height
            color: divider.activeFocus ? Theme.accent
                   : divider.pressed || divider.containsMouse ? Theme.strokeStrong : "transparent"
        }
    }
}
