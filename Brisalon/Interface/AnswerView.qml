import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// What sheets that answer a question have in common: what is asked, the answer in one
// figure, and below it what that figure is made of, which scrolls between two lines.
FocusScope {
    id: view

    required property AppState appState
    required property string title
    required property string explanation
    // Empty for none.
    property string figure: ""
    property string figureLabel: ""
    property color figureColor: Theme.text
    // The height that is left for the content.
    readonly property real contentLimit: Math.max(0, (Window.height || 820) - 300)
    default property alias content: content.data

    signal closed()

    implicitWidth: 560
    implicitHeight: column.implicitHeight

    ColumnLayout {
        id: column

        width: parent.width
        spacing: 0

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: 24
            Layout.bottomMargin: 20
            spacing: 24

            ColumnLayout {
                Layout.alignment: Qt.AlignTop
                spacing: 6

                TextLabel {
                    objectName: "answerTitle"
                    Layout.fillWidth: true
                    text: view.title
                    font: Theme.rounded(Theme.title2, Font.Bold)
                    color: Theme.text
                    Accessible.role: Accessible.Heading
                    Accessible.name: text
                }

                TextLabel {
                    objectName: "answerExplanation"
                    Layout.fillWidth: true
                    text: view.explanation
                    wrapMode: Text.Wrap
                    lineHeight: 1.2
                    font: Theme.system(Theme.callout)
                    color: Theme.textSecondary
                    Accessible.role: Accessible.StaticText
                    Accessible.name: text
                }
            }

            ColumnLayout {
                Layout.alignment: Qt.AlignTop
                visible: view.figure !== ""
                spacing: 2
                Accessible.role: Accessible.StaticText
                Accessible.name: view.figure + " " + view.figureLabel

                DigitText {
                    objectName: "answerFigure"
                    Layout.alignment: Qt.AlignRight
                    text: view.figure
                    font: Theme.rounded(Theme.title, Font.Bold)
                    color: view.figureColor
                    Accessible.ignored: true
                }

                TextLabel {
                    Layout.alignment: Qt.AlignRight
                    text: view.figureLabel
                    font: Theme.rounded(Theme.caption, Font.Medium)
                    color: Theme.muted
                    Accessible.ignored: true
                }
            }
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            color: Theme.stroke
        }

        Column {
            id: content

            Layout.fillWidth: true
        }

        Rectangle {
            Layout.fillWidth: true
            implicitHeight: 1
            visible: content.implicitHeight > 0
            color: Theme.stroke
        }

        BorderedButton {
            objectName: "answerCloseButton"
            Layout.alignment: Qt.AlignRight
            Layout.margins: 16
            Layout.rightMargin: 24
            text: "Close"
            display: T.AbstractButton.TextOnly
            isProminent: true
            tint: Theme.accent
            focus: true
            onClicked: view.closed()
        }
    }
}
