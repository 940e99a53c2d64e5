import QtQuick
import Brisalon.App
import Brisalon.Theme

// The map's place while the first scan runs.
Item {
    id: view

    required property scanProgress progress

    Column {
        anchors.centerIn: parent
        width: parent.width
        spacing: 20

        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 34
            height: 34
        }

        TextLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Building your map…"
            font: Theme.rounded(Theme.title2, Font.DemiBold)
            color: Theme.text
        }

        TextLabel {
            objectName: "scannedPath"
            // As high as its two lines at all times, so that nothing above it
            // moves from one path to the next.
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, 420)
            height: 2 * Math.ceil(lineMetrics.height)
            visible: view.progress.isPresent
            horizontalAlignment: Text.AlignHCenter
            text: view.progress.currentPath
            wrapMode: Text.WrapAtWordBoundaryOrAnywhere
            maximumLineCount: 2
            elide: Text.ElideRight
            font: Theme.system(Theme.caption)
            color: Theme.muted
        }
    }

    FontMetrics {
        id: lineMetrics

        font: Theme.system(Theme.caption)
    }
}
