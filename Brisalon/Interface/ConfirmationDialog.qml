import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// Asks before something that cannot simply be taken back. Shown while there is a
// question; every way out other than the destructive button is the same as Cancel,
// which has the keyboard at first, so that a hasty Return does no harm.
Sheet {
    id: dialog

    // Empty while nothing is asked.
    required property string question
    required property string explanation
    required property string action
    required property string symbol

    // What was asked last: a dialog that fades away still shows it.
    property string shownQuestion: ""
    property string shownExplanation: ""

    signal confirmed()
    signal dismissed()

    visible: question !== ""
    width: 420
    padding: 24

    onQuestionChanged: if (question !== "") shownQuestion = question
    onExplanationChanged: if (explanation !== "") shownExplanation = explanation
    onAboutToShow: cancel.forceActiveFocus(Qt.TabFocusReason)
    onAboutToHide: if (question !== "") dismissed()

    contentItem: FocusScope {
        implicitHeight: column.implicitHeight
        Accessible.role: Accessible.Dialog
        Accessible.name: dialog.shownQuestion
        Accessible.description: dialog.shownExplanation

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
                        name: dialog.symbol
                        size: 18
                        color: Theme.danger
                    }
                }

                Column {
                    width: parent.width - tile.width - parent.spacing
                    topPadding: 2
                    spacing: 6

                    Text {
                        objectName: "confirmationTitle"
                        width: parent.width
                        text: dialog.shownQuestion
                        textFormat: Text.PlainText
                        wrapMode: Text.Wrap
                        font: Theme.rounded(Theme.title3, Font.DemiBold)
                        color: Theme.text
                    }

                    Text {
                        objectName: "confirmationMessage"
                        width: parent.width
                        text: dialog.shownExplanation
                        textFormat: Text.PlainText
                        wrapMode: Text.Wrap
                        lineHeight: 1.2
                        font: Theme.system(Theme.callout)
                        color: Theme.textSecondary
                    }
                }
            }

            Row {
                anchors.right: parent.right
                spacing: 10

                BorderedButton {
                    objectName: "confirmButton"
                    text: dialog.action
                    display: T.AbstractButton.TextOnly
                    // Dark enough for white letters.
                    tint: Qt.darker(Theme.danger, 1.35)
                    isProminent: true
                    onClicked: dialog.confirmed()
                }

                BorderedButton {
                    id: cancel

                    objectName: "cancelConfirmationButton"
                    text: "Cancel"
                    display: T.AbstractButton.TextOnly
                    focus: true
                    onClicked: dialog.dismissed()
                }
            }
        }
    }
}
