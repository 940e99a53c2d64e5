import QtQuick
import Brisalon.App
import Brisalon.Interface
import Brisalon.Theme

// How full the volume is.
PanelStyle {
    id: card

    required property volumeStats volume

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
            from: RingColors.from(card.volume.usedFraction)
            to: RingColors.to(card.volume.usedFraction)

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
                text: card.volume.freeText
                font: Theme.rounded(Theme.callout, Font.DemiBold)
                color: Theme.text
            }

            TextLabel {
                text: card.volume.usedText
                font: Theme.system(Theme.caption2)
                color: Theme.muted
            }
        }
    }
}
