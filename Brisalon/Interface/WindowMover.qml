import QtQuick

// Moves the window by its background. The press alone does nothing, so that the
// window system only takes over once the pointer really drags.
MouseArea {
    id: mover

    property point pressed: Qt.point(0, 0)
    property bool isMoving: false
    // Without a window manager nobody takes over, and the window follows by hand.
    property bool movesByHand: false

    onPressed: mouse => {
        pressed = Qt.point(mouse.x, mouse.y);
        isMoving = false;
    }
    onPositionChanged: mouse => {
        const window = Window.window;
        const distance = Math.hypot(mouse.x - pressed.x, mouse.y - pressed.y);
        if (!isMoving && distance > 4) {
            isMoving = true;
            movesByHand = !window.startSystemMove();
        } else if (isMoving && movesByHand) {
            window.x += mouse.x - pressed.x;
            window.y += mouse.y - pressed.y;
        }
    }
    onDoubleClicked: {
        const window = Window.window;
        if (window.visibility === Window.Maximized)
            window.showNormal();
        else
            window.showMaximized();
    }
}
