import QtQuick
import Brisalon.App
import Brisalon.Theme

// How far the running scan has come, and the way to stop it.
PanelStyle {
    id: card

    required property AppState appState
    required property scanProgress progress

    cornerRadius: 12
    implicitHeight: column.implicitHeight + 24

    Column {
        id: column

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        anchors.margins: 12
        spacing: 8

        Row {
            spacing: 8

            Spinner {
                anchors.verticalCenter: parent.verticalCenter
                width: 14
                height: 14
            }

            TextLabel {
                anchors.verticalCenter: parent.verticalCenter
                text: "Mapping…"
                font: Theme.rounded(Theme.caption, Font.DemiBold)
                color: Theme.text
            }
        }

        Column {
            width: parent.width
            visible: card.progress.isPresent
            spacing: 8

            TextLabel {
                text: card.progress.bytesText
                font: Theme.rounded(Theme.title3, Font.Bold)
                color: Theme.accent
            }

            TextLabel {
                text: card.progress.itemsText
                font: Theme.system(Theme.caption2)
                color: Theme.muted
            }

            TextLabel {
                width: parent.width
                text: card.progress.currentPath
                maximumLineCount: 1
                elide: Text.ElideMiddle
                font: Theme.system(Theme.caption2)
                color: Theme.faded(Theme.muted, Theme.muted.a * 0.85)
            }
        }

        Item {
            implicitWidth: cancel.implicitContentWidth
            implicitHeight: cancel.implicitContentHeight

            // As easy to hit as a button with an outline, in the room of its word.
            BorderlessButton {
                id: cancel

                objectName: "cancelButton"
                x: -leftPadding
                y: -topPadding
                horizontalPadding: 8
                verticalPadding: 5
                text: "Cancel"
                onClicked: card.appState.cancelScan()
            }
        }
    }
}
