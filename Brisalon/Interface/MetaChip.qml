import QtQuick
import Brisalon.Theme

// A fact with its label, in a capsule.
Rectangle {
    id: chip

    required property string label
    required property string value

    implicitWidth: row.implicitWidth + 20
    implicitHeight: row.implicitHeight + 12
    radius: height / 2
    color: Theme.elevated

    Row {
        id: row

        x: 10
        y: 6
        spacing: 6

        TextLabel {
            text: chip.label
            font: Theme.system(Theme.caption2, Font.DemiBold)
            color: Theme.muted
        }

        TextLabel {
            text: chip.value
            font: Theme.system(Theme.caption)
            color: Theme.textSecondary
        }
    }
}
