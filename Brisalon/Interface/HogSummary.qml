import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// What an item is known to be, and how safe it is to remove.
ColumnLayout {
    id: summary

    required property largeFileEntry item

    spacing: 6

    Row {
        spacing: 8

        ContinuousRectangle {
            objectName: "hogSwatch"
            anchors.verticalCenter: parent.verticalCenter
            width: 12
            height: 12
            radius: 4
            color: NodeColor.ofFile(summary.item)
        }

        TextLabel {
            anchors.verticalCenter: parent.verticalCenter
            text: summary.item.hogTitle
            font: Theme.rounded(Theme.callout, Font.Medium)
            color: Theme.textSecondary
        }

        RiskBadge {
            objectName: "inspectedRisk"
            anchors.verticalCenter: parent.verticalCenter
            risk: summary.item.risk // qmllint disable
            title: summary.item.riskTitle
        }
    }

    TextLabel {
        Layout.fillWidth: true
        text: summary.item.riskSummary
        wrapMode: Text.Wrap
        font: Theme.system(Theme.caption)
        color: Theme.muted
    }
}
