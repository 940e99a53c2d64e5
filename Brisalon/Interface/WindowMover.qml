import QtQuick

// Moves the window by its background; a double click on the band at its top, where
// other windows have their title, zooms it. The press alone does nothing, so that
// the window system only takes over once the pointer really drags.
MouseArea {
    id: mover

    readonly property real titleBand: 52

    property point pressed: Qt.point(0, 0)
    property bool isMoving: false
    // Without a window manager nobody takes over, and the window follows by hand.
    property bool movesByHand: false

    // Who takes over keeps the release to himself: until the next press nothing else would
    // be hovered.
    function letGo() {
        visible = false;
        visible = true;
    }

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
            if (!movesByHand)
                Qt.callLater(letGo);
        } else if (isMoving && movesByHand) {
            window.x += mouse.x - pressed.x;
            window.y += mouse.y - pressed.y;
        }
    }
    onDoubleClicked: mouse => {
        if (mapToItem(null, mouse.x, mouse.y).y < titleBand)
            (Window.window as BrisalonWindow).toggleZoom();
    }
}
