import QtQuick
import Brisalon.Theme

// The background of a panel.
ContinuousRectangle {
    property real cornerRadius: 12

    radius: cornerRadius
    color: Theme.panel
    borderWidth: 1
    borderColor: Theme.stroke
}
