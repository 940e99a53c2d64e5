import QtQuick
import QtQuick.Layouts
import Brisalon.App

// The map with the bar above it.
ColumnLayout {
    id: workspace

    required property AppState appState
    required property scanProgress progress

    spacing: 0

    MapHeaderBar {
        Layout.fillWidth: true
        appState: workspace.appState
    }

    TreemapPane {
        objectName: "treemapPane"
        Layout.fillWidth: true
        Layout.fillHeight: true
        appState: workspace.appState
        progress: workspace.progress
    }
}
