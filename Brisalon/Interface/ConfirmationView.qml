import QtQuick
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// The words of a confirmation, with the destructive button before Cancel.
FocusScope {
    id: view

    required property string question
    required property string explanation
    required property string action
    required property string symbol
    property AppState itemsOf: null
    property bool areItemsShown: false
    readonly property alias cancelButton: cancel

    signal confirmed()
    signal dismissed()

    implicitHeight: column.implicitHeight

    Column {
        id: column

        width: parent.width
        spacing: 20

        Row {
            width: parent.width
            spacing: 16

            Rectangle {
                id: tile

                width: 44
                height: 44
                radius: 22
                color: Theme.faded(Theme.danger, 0.15)

                SymbolImage {
                    anchors.centerIn: parent
                    name: view.symbol
                    size: 18
                    color: Theme.danger
                }
            }

            Column {
                width: parent.width - tile.width - parent.spacing
                topPadding: 2
                spacing: 6

                TextLabel {
                    objectName: "confirmationTitle"
                    width: parent.width
                    text: view.question
                    wrapMode: Text.Wrap
                    font: Theme.rounded(Theme.title3, Font.DemiBold)
                    color: Theme.text
                }

                TextLabel {
                    objectName: "confirmationMessage"
                    width: parent.width
                    text: view.explanation
                    wrapMode: Text.Wrap
                    lineHeight: 1.2
                    font: Theme.system(Theme.callout)
                    color: Theme.textSecondary
                }

                PlainButton {
                    id: disclosure

                    readonly property color ink: hovered ? Theme.text : Theme.textSecondary

                    objectName: "itemsButton"
                    visible: view.itemsOf !== null
                    topPadding: 4
                    bottomPadding: 4
                    cornerRadius: 4
                    text: view.areItemsShown ? "Hide items" : "Show items"
                    onClicked: view.areItemsShown = !view.areItemsShown

                    contentItem: Row {
                        spacing: 6

                        SymbolImage {
                            anchors.verticalCenter: parent.verticalCenter
                            name: "chevron.right"
                            size: 9
                            rotation: view.areItemsShown ? 90 : 0
                            color: disclosure.ink
                        }

                        TextLabel {
                            text: disclosure.text
                            font: Theme.system(Theme.subheadline)
                            color: disclosure.ink
                        }
                    }
                }
            }
        }

        TrashItemList {
            width: parent.width
            visible: view.areItemsShown
            appState: view.itemsOf
        }

        Row {
            anchors.right: parent.right
            spacing: 10

            BorderedButton {
                objectName: "confirmButton"
                text: view.action
                display: T.AbstractButton.TextOnly
                // Dark enough for white letters.
                tint: Qt.darker(Theme.danger, 1.35)
                isProminent: true
                onClicked: view.confirmed()
            }

            BorderedButton {
                id: cancel

                objectName: "cancelConfirmationButton"
                text: "Cancel"
                display: T.AbstractButton.TextOnly
                onClicked: view.dismissed()
            }
        }
    }
}
