import QtQuick
import Brisalon.Theme

// The coloured label of a risk.
Rectangle {
    id: badge

    // The raw value and the title of a risk, as a node gives them.
    required property string risk
    required property string title

    readonly property color tint: Theme.riskColor(risk)

    implicitWidth: label.implicitWidth + 16
    implicitHeight: label.implicitHeight + 6
    radius: height / 2
    color: Theme.faded(tint, tint.a * 0.18)

    Text {
        id: label

        anchors.centerIn: parent
        text: badge.title
        textFormat: Text.PlainText
        font: Theme.rounded(10, Font.Bold)
        color: badge.tint
    }
}
