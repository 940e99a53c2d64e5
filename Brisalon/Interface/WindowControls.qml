import QtQuick
import Brisalon.Theme

// Close, minimise and zoom. Quiet until the pointer comes near.
Row {
    spacing: 8

    component Control: PlainButton {
        id: control

        required property string symbol
        required property color tint
        property bool isNear: false

        readonly property bool isAwake: isNear || visualFocus

        width: 14
        height: 14
        cornerRadius: 7

        background: Rectangle {
            radius: control.cornerRadius
            color: !control.isAwake ? Theme.faded("white", 0.16)
                   : control.down ? Qt.darker(control.tint, 1.25) : control.tint
        }

        SymbolImage {
            anchors.centerIn: parent
            visible: control.isAwake
            name: control.symbol
            size: 7
            color: Theme.faded("black", 0.65)
        }
    }

    HoverHandler {
        id: nearby

        margin: 4
    }

    Control {
        objectName: "closeButton"
        text: "Close"
        symbol: "xmark"
        tint: Theme.danger
        isNear: nearby.hovered
        onClicked: Window.window.close()
    }

    Control {
        objectName: "minimiseButton"
        text: "Minimise"
        symbol: "minus"
        tint: Theme.amber
        isNear: nearby.hovered
        onClicked: Window.window.showMinimized()
    }

    Control {
        objectName: "zoomButton"
        text: "Zoom"
        symbol: "arrow.up.left.and.arrow.down.right"
        tint: Theme.success
        isNear: nearby.hovered
        onClicked: (Window.window as BrisalonWindow).toggleZoom()
    }
}
