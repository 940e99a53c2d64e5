import QtQuick
import Brisalon.Theme

// The window's edge: a hairline against what lies behind the window, and a narrow
// band on every side and corner by which its size is changed.
Item {
    id: border

    // Moves those edges from one point of the screen to another, as far as the
    // window's smallest size allows; returns the point that they came to.
    function drag(edges: int, from: point, to: point): point {
        const window = Window.window;
        const left = edges & Qt.LeftEdge, top = edges & Qt.TopEdge;
        const wide = left || edges & Qt.RightEdge, high = top || edges & Qt.BottomEdge;
        const width = Math.max(window.minimumWidth,
                               window.width + (!wide ? 0 : left ? from.x - to.x : to.x - from.x));
        const height = Math.max(window.minimumHeight,
                                window.height + (!high ? 0 : top ? from.y - to.y : to.y - from.y));
        const x = width - window.width, y = height - window.height;
        if (left)
            window.x -= x;
        if (top)
            window.y -= y;
        window.width = width;
        window.height = height;
        return Qt.point(from.x + (left ? -x : x), from.y + (top ? -y : y));
    }

    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.width: 1
        border.color: Theme.strokeStrong
    }

    component Edge: MouseArea {
        required property int edges
        readonly property real band: 5

        property point grip: Qt.point(0, 0)
        // Without a window manager nobody takes over, and the edge follows by hand.
        property bool resizesByHand: false

        // Who takes over keeps the release to himself: until the next press nothing else
        // would be hovered.
        function letGo() {
            visible = false;
            visible = true;
        }

        onPressed: mouse => {
            grip = mapToGlobal(mouse.x, mouse.y);
            resizesByHand = !Window.window.startSystemResize(edges);
            if (!resizesByHand)
                Qt.callLater(letGo);
        }
        onPositionChanged: mouse => {
            if (pressed && resizesByHand)
                grip = (parent as ResizeBorder).drag(edges, grip, mapToGlobal(mouse.x, mouse.y));
        }
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
