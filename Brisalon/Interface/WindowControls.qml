import QtQuick
import Brisalon.Theme

// Close, minimise and zoom. Quiet until the pointer comes near.
Row {
    id: controls

    spacing: 8

    component Control: PlainButton {
        id: control

        required property string symbol
        required property color tint

        width: 14
        height: 14
        cornerRadius: 7

        background: Rectangle {
            radius: control.cornerRadius
            color: !nearby.hovered && !control.visualFocus ? Theme.faded("white", 0.16)
                   : control.down ? Qt.darker(control.tint, 1.25) : control.tint
        }

        SymbolImage {
            anchors.centerIn: parent
            visible: nearby.hovered || control.visualFocus
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
        onClicked: Window.window.close()
    }

    Control {
        objectName: "minimiseButton"
        text: "Minimise"
        symbol: "minus"
        tint: Theme.amber
        onClicked: Window.window.showMinimized()
    }

    Control {
        objectName: "zoomButton"
        text: "Zoom"
        symbol: "arrow.up.left.and.arrow.down.right"
        tint: Theme.success
        onClicked: {
            const window = Window.window;
            if (window.visibility === Window.Maximized)
                window.showNormal();
            else
                window.showMaximized();
        }
    }
}
