import QtQuick
import Brisalon.Theme

// What the map's place says when there is no map to show.
Item {
    id: notice

    required property string symbol
    required property string title
    required property string detail
    required property color tint

    Column {
        anchors.centerIn: parent
        width: parent.width - 48
        spacing: 16

        Rectangle {
            objectName: "noticeDisc"
            anchors.horizontalCenter: parent.horizontalCenter
            width: 72
            height: 72
            radius: 36
            color: Theme.faded(notice.tint, notice.tint.a * 0.12)

            SymbolImage {
                anchors.centerIn: parent
                name: notice.symbol
                size: 28
                color: notice.tint
            }
        }

        Column {
            width: parent.width
            spacing: 8

            TextLabel {
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: notice.title
                font: Theme.rounded(Theme.title2, Font.Bold)
                color: Theme.text
            }

            TextLabel {
                objectName: "noticeDetail"
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(parent.width, 380)
                horizontalAlignment: Text.AlignHCenter
                text: notice.detail
                wrapMode: Text.Wrap
                maximumLineCount: 12
                elide: Text.ElideRight
                font: Theme.system(Theme.body)
                color: Theme.muted
            }
        }
    }
}
