import QtQuick
import Brisalon.Theme

// A small outlined button that shows a symbol, and says what it does in a tip.
PlainButton {
    id: button

    required property string symbol

    cornerRadius: 7
    leftPadding: 9
    rightPadding: 9
    topPadding: 6
    bottomPadding: 6
    opacity: enabled ? 1 : 0.4

    contentItem: SymbolImage {
        name: button.symbol
        size: Theme.callout
        color: button.hovered ? Theme.text : Theme.textSecondary
    }

    background: Rectangle {
        radius: button.cornerRadius
        color: Theme.faded("white", button.down ? 0.14 : button.hovered ? 0.1 : 0.06)
        border.width: 1
        border.color: Theme.stroke
    }

    HintTip {
        text: button.text
        visible: button.hovered && !button.down
    }
}
