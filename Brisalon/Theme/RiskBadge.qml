import QtQuick
import Brisalon.Theme

// The coloured label of a risk.
Rectangle {
    id: badge

    // A Risk, an enumeration of the core whose name qmllint does not know, and its
    // title, as a node gives them.
    required property int risk
    required property string title

    readonly property color tint: Theme.riskColor(risk)

    implicitWidth: label.implicitWidth + 16
    implicitHeight: label.implicitHeight + 6
    radius: height / 2
    color: Theme.faded(tint, tint.a * 0.18)

    TextLabel {
        id: label

        anchors.centerIn: parent
        text: badge.title
        font: Theme.rounded(10, Font.Bold)
        color: badge.tint
    }
}
