import QtQuick
import QtQuick.Layouts
import Brisalon.Theme

// One of the welcome screen's targets.
PlainButton {
    id: card

    required property string subtitle
    required property string symbol
    required property bool isLastUsed

    cornerRadius: 14
    padding: 14
    Accessible.description: subtitle

    contentItem: RowLayout {
        spacing: 14

        ContinuousRectangle {
            Layout.preferredWidth: 44
            Layout.preferredHeight: 44
            radius: 12
            color: card.isLastUsed ? Theme.accentSoft : Theme.elevated

            SymbolImage {
                anchors.centerIn: parent
                name: card.symbol
                size: 18
                color: card.isLastUsed ? Theme.accent : Theme.textSecondary
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 3

            RowLayout {
                spacing: 8

                TextLabel {
                    text: card.text
                    font: Theme.rounded(Theme.callout, Font.DemiBold)
                    color: Theme.text
                }

                TextLabel {
                    visible: card.isLastUsed
                    leftPadding: 8
                    rightPadding: 8
                    topPadding: 3
                    bottomPadding: 3
                    text: "Last used"
                    font: Theme.system(10, Font.DemiBold)
                    color: Theme.accent
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text

                    Rectangle {
                        anchors.fill: parent
                        z: -1
                        radius: height / 2
                        color: Theme.accentSoft
                    }
                }
            }

            TextLabel {
                Layout.fillWidth: true
                text: card.subtitle
                wrapMode: Text.Wrap
                font: Theme.system(Theme.caption)
                color: Theme.muted
            }
        }

        SymbolImage {
            name: "chevron.right"
            size: Theme.caption
            color: card.hovered ? Theme.muted : Theme.faded(Theme.muted, Theme.muted.a * 0.6)

            Behavior on color {
                ColorAnimation {
                    duration: 200
                    easing.type: Easing.OutQuad
                }
            }
        }
    }

    background: ContinuousRectangle {
        radius: card.cornerRadius
        color: Theme.panel
        borderWidth: card.isLastUsed ? 1.5 : 1
        borderColor: card.isLastUsed ? Theme.faded(Theme.accent, 0.45) : Theme.stroke
    }
}
