import QtQuick
import Brisalon.Theme

// Something is going on, nobody knows for how long.
RingGauge {
    id: spinner

    property color tint: Theme.accent

    implicitWidth: 20
    implicitHeight: 20
    fraction: 0.72
    lineWidth: Math.max(2, width / 10)
    track: Theme.faded(tint, 0.14)
    from: Theme.faded(tint, 0)
    to: tint
    Accessible.role: Accessible.Indicator

    NumberAnimation on turn {
        from: 0
        to: 1
        duration: 900
        loops: Animation.Infinite
        running: spinner.visible
    }
}
