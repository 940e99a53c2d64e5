import QtQuick
import Brisalon.App
import Brisalon.Theme

// How full the volume is.
PanelStyle {
    id: card

    required property volumeStats volume

    readonly property bool isFull: volume.usedFraction > 0.9
    readonly property bool isFilling: !isFull && volume.usedFraction > 0.75

    cornerRadius: 14
    implicitHeight: 80

    Row {
        anchors.fill: parent
        anchors.margins: 12
        spacing: 14

        RingGauge {
            objectName: "ring"
            width: 56
            height: 56
            lineWidth: 6
            fraction: card.volume.usedFraction
            track: Theme.faded("white", 0.08)
            from: card.isFull ? Theme.danger : card.isFilling ? Theme.amber : Theme.accent
            to: card.isFull ? Theme.faded(Theme.danger, 0.7)
                : card.isFilling ? Theme.accent : Theme.faded(Theme.success, 0.8)

            Column {
                anchors.centerIn: parent
                spacing: -3

                TextLabel {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: card.volume.usedPercent
                    font: Theme.rounded(18, Font.Bold)
                    color: Theme.text
                }

                TextLabel {
                    anchors.horizontalCenter: parent.horizontalCenter
                    text: "%"
                    font: Theme.system(9, Font.DemiBold)
                    color: Theme.muted
                }
            }
        }

        Column {
            anchors.verticalCenter: parent.verticalCenter
            spacing: 3

            TextLabel {
                text: "Storage"
                font: Theme.rounded(Theme.caption, Font.DemiBold)
                color: Theme.muted
            }

            TextLabel {
                text: card.volume.freeText + " free"
                font: Theme.rounded(Theme.callout, Font.DemiBold)
                color: Theme.text
            }

            TextLabel {
                text: card.volume.usedText + " used"
                font: Theme.system(Theme.caption2)
                color: Theme.muted
            }
        }
    }
}
