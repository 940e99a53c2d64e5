import QtQuick

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
    // What the question is about in detail, shown when the user asks for it.
    property Component details: null

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
    onClosed: (contentItem as ConfirmationView).areDetailsShown = false
    onExplanationChanged: if (explanation !== "") shownExplanation = explanation
    onAboutToHide: if (question !== "") dismissed()

    contentItem: ConfirmationView {
        question: dialog.shownQuestion
        explanation: dialog.shownExplanation
        action: dialog.action
        symbol: dialog.symbol
        details: dialog.details
        onConfirmed: dialog.confirmed()
        onDismissed: dialog.dismissed()
    }
}
