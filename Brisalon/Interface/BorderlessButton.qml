import QtQuick
import Brisalon.Theme

// A button of its words alone.
PlainButton {
    id: button

    property color tint: Theme.muted

    cornerRadius: 4
    font: Theme.system(Theme.caption)
    opacity: enabled ? 1 : 0.4

    contentItem: TextLabel {
        text: button.text
        horizontalAlignment: Text.AlignHCenter
        font: button.font
        color: button.hovered ? Theme.faded(button.tint, Math.min(1, button.tint.a * 1.5))
                              : button.tint
        opacity: button.down ? 0.7 : 1
    }
}
