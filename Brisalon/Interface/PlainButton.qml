import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// What every button here has in common: it is as large as its content, Return
// presses it like Space does, and the keyboard's focus is seen on it.
T.AbstractButton {
    id: button

    // The rounding of the button's own outline, which the focus ring follows.
    property real cornerRadius: 8

    // Whole, so that what is drawn in pieces has no seams.
    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    hoverEnabled: true
    Accessible.name: text
    // The controls of Qt 6.4 do not tell that they are disabled, nor keep from being
    // pressed.
    Accessible.description: enabled ? "" : "Not available now"
    Accessible.onPressAction: {
        if (enabled)
            clicked();
    }

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    FocusRing {
        z: 1
        visible: button.visualFocus
        cornerRadius: button.cornerRadius
    }
}
