import QtQuick
import Brisalon.Map
import Brisalon.Theme

// The colours of the hogs on a level, as a strip of chips that scrolls sideways.
// Takes no space when there are none.
ListView {
    id: legend

    property alias level: kinds.level

    implicitHeight: count > 0 ? metrics.height + 12 : 0
    visible: count > 0
    orientation: ListView.Horizontal
    spacing: 8
    boundsBehavior: Flickable.StopAtBounds
    clip: contentWidth > width
    model: kinds.entries
    Accessible.role: Accessible.List
    Accessible.name: "Legend"

    LegendKinds {
        id: kinds
    }

    FontMetrics {
        id: metrics

        font: Theme.rounded(11, Font.Medium)
    }

    delegate: Rectangle {
        id: chip

        required property var modelData

        width: row.width + 20
        height: row.height + 12
        radius: height / 2
        color: Theme.elevated
        Accessible.role: Accessible.StaticText
        Accessible.name: modelData.title

        Row {
            id: row

            x: 10
            y: 6
            spacing: 6

            ContinuousRectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: 10
                height: 10
                radius: 3
                color: chip.modelData.color
            }

            TextLabel {
                text: chip.modelData.title
                font: Theme.rounded(11, Font.Medium)
                color: Theme.textSecondary
                Accessible.ignored: true
            }
        }
    }
}
