import QtQuick
import Brisalon.Theme

// The window's edge: a hairline against what lies behind the window, and a narrow
// band on every side and corner by which its size is changed.
Item {
    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.width: 1
        border.color: Theme.strokeStrong
    }

    component Edge: MouseArea {
        required property int edges
        readonly property real band: 5

        onPressed: Window.window.startSystemResize(edges)
    }

    Edge {
        edges: Qt.TopEdge
        width: parent.width
        height: band
        cursorShape: Qt.SizeVerCursor
    }
    Edge {
        edges: Qt.BottomEdge
        y: parent.height - height
        width: parent.width
        height: band
        cursorShape: Qt.SizeVerCursor
    }
    Edge {
        edges: Qt.LeftEdge
        width: band
        height: parent.height
        cursorShape: Qt.SizeHorCursor
    }
    Edge {
        edges: Qt.RightEdge
        x: parent.width - width
        width: band
        height: parent.height
        cursorShape: Qt.SizeHorCursor
    }

    component Corner: Edge {
        width: 2 * band
        height: 2 * band
    }

    Corner {
        edges: Qt.TopEdge | Qt.LeftEdge
        cursorShape: Qt.SizeFDiagCursor
    }
    Corner {
        edges: Qt.TopEdge | Qt.RightEdge
        x: parent.width - width
        cursorShape: Qt.SizeBDiagCursor
    }
    Corner {
        edges: Qt.BottomEdge | Qt.LeftEdge
        y: parent.height - height
        cursorShape: Qt.SizeBDiagCursor
    }
    Corner {
        edges: Qt.BottomEdge | Qt.RightEdge
        x: parent.width - width
        y: parent.height - height
        cursorShape: Qt.SizeFDiagCursor
    }
}
