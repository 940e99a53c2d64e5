import QtQuick
import Brisalon.Theme

// The background of a panel.
Rectangle {
    property real cornerRadius: 12

    radius: cornerRadius
    color: Theme.panel
    border.width: 1
    border.color: Theme.stroke
}
