import QtQuick
import Brisalon.Theme

// Where the keyboard is: a ring round its parent.
Rectangle {
    // The rounding of what it surrounds.
    property real cornerRadius: 8
    // The room between that and the outer edge of the ring; negative for a ring within.
    property real outset: 3

    anchors.fill: parent
    anchors.margins: -outset
    radius: cornerRadius + outset
    color: "transparent"
    border.width: 2
    border.color: Theme.faded(Theme.accent, 0.9)
}
