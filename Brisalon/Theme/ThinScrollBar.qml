import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// Tells where one is in what is longer than its place, and moves there.
T.ScrollBar {
    id: bar

    implicitWidth: 4 + leftPadding + rightPadding
    padding: 2
    minimumSize: 0.1
    visible: size < 1
    // What it moves follows the keyboard.
    Accessible.ignored: true

    contentItem: Rectangle {
        radius: width / 2
        color: Theme.faded("white", bar.pressed ? 0.4 : bar.hovered ? 0.3 : 0.16)
    }
}
