import QtQuick
import Brisalon.Theme

// What the window shows while a folder hovers over it: that letting go scans it.
Rectangle {
    id: hint

    required property string folder

    color: Theme.faded(Theme.windowBackground, 0.6)

    Rectangle {
        anchors.fill: parent
        anchors.margins: 10
        radius: 14
        color: Theme.faded(Theme.accent, 0.06)
        border.width: 2
        border.color: Theme.accent
    }

    // A card, because the map's own words go on behind it.
    PanelStyle {
        anchors.centerIn: parent
        width: column.width + 56
        height: column.height + 48
        cornerRadius: 16
        borderColor: Theme.strokeStrong

        Column {
            id: column

            anchors.centerIn: parent
            width: Math.min(hint.width - 176, Math.max(title.implicitWidth, way.implicitWidth))
            spacing: 10

            SymbolImage {
                anchors.horizontalCenter: parent.horizontalCenter
                name: "folder.fill"
                size: 34
                color: Theme.accent
            }

            TextLabel {
                id: title

                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: "Drop to scan this folder"
                font: Theme.rounded(Theme.title3, Font.DemiBold)
                color: Theme.text
            }

            TextLabel {
                id: way

                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: hint.folder
                maximumLineCount: 1
                elide: Text.ElideMiddle
                font: Theme.system(Theme.callout)
                color: Theme.textSecondary
            }
        }
    }
}
