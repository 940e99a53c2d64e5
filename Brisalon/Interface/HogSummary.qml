import QtQuick
import QtQuick.Layouts
import Brisalon.Theme

// What an item is known to be, and how safe it is to remove.
ColumnLayout {
    id: summary

    required property color tint
    required property string title
    // As a node gives them.
    required property string risk
    required property string riskTitle
    required property string riskSummary

    spacing: 6

    Row {
        spacing: 8

        ContinuousRectangle {
            objectName: "hogSwatch"
            anchors.verticalCenter: parent.verticalCenter
            width: 12
            height: 12
            radius: 4
            color: summary.tint
        }

        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: summary.title
            textFormat: Text.PlainText
            font: Theme.rounded(Theme.callout, Font.Medium)
            color: Theme.textSecondary
        }

        RiskBadge {
            objectName: "inspectedRisk"
            anchors.verticalCenter: parent.verticalCenter
            risk: summary.risk
            title: summary.riskTitle
        }
    }

    Text {
        Layout.fillWidth: true
        text: summary.riskSummary
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font: Theme.system(Theme.caption)
        color: Theme.muted
    }
}
