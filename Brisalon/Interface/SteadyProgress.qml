import QtQuick
import Brisalon.App

// The model's progress, taken over once a frame. A scan reports many times between
// two frames, and laying out its texts for reports that nobody sees would hold up
// the frames themselves.
FrameAnimation {
    required property AppState appState

    property scanProgress progress

    running: appState.isScanning
    onTriggered: progress = appState.progress
    onRunningChanged: progress = appState.progress
    Component.onCompleted: progress = appState.progress
}
