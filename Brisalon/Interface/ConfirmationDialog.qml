import QtQuick
import Brisalon.App

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
    // Whose pending move to the Trash it is, of which the items are shown when the user
    // asks for them; none where it is something else.
    property AppState itemsOf: null

    // What was asked last: a dialog that fades away still shows it.
    property string shownQuestion: ""
    property string shownExplanation: ""

    signal confirmed()
    signal dismissed()

    visible: question !== ""
    name: shownQuestion
    description: shownExplanation
    initialFocus: (contentItem as ConfirmationView).cancelButton
    width: 420
    padding: 24

    onQuestionChanged: if (question !== "") shownQuestion = question
    onClosed: (contentItem as ConfirmationView).areItemsShown = false
    onExplanationChanged: if (explanation !== "") shownExplanation = explanation
    onAboutToHide: if (question !== "") dismissed()

    contentItem: ConfirmationView {
        question: dialog.shownQuestion
        explanation: dialog.shownExplanation
        action: dialog.action
        symbol: dialog.symbol
        itemsOf: dialog.itemsOf
        onConfirmed: dialog.confirmed()
        onDismissed: dialog.dismissed()
    }
}
