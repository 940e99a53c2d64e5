import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
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

                Text {
                    text: card.text
                    textFormat: Text.PlainText
                    font: Theme.rounded(Theme.callout, Font.DemiBold)
                    color: Theme.text
                }

                T.Label {
                    visible: card.isLastUsed
                    leftPadding: 8
                    rightPadding: 8
                    topPadding: 3
                    bottomPadding: 3
                    text: "Last used"
                    textFormat: Text.PlainText
                    font: Theme.system(10, Font.DemiBold)
                    color: Theme.accent

                    background: Rectangle {
                        radius: height / 2
                        color: Theme.accentSoft
                    }
                }
            }

            Text {
                Layout.fillWidth: true
                text: card.subtitle
                textFormat: Text.PlainText
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
