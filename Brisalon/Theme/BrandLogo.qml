import QtQuick
import Brisalon.Theme

// The product's mark on its tile, with a glow below.
Item {
    id: logo

    required property real size
    required property real cornerRadius

    implicitWidth: size
    implicitHeight: size

    SoftShadow {
        blur: logo.size * 0.15
        cornerRadius: logo.cornerRadius
        color: Theme.faded(Theme.accent, 0.25)
        x: -blur
        y: logo.size * 0.06 - blur
        width: logo.size + 2 * blur
        height: logo.size + 2 * blur
    }

    LogoMark {
        anchors.fill: parent
        cornerRadius: logo.cornerRadius
    }
}
