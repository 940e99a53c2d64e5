import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// How to grant Full Disk Access, in three steps. As wide as its words; in less
// room they wrap.
ContinuousRectangle {
    id: callout

    required property AppState appState
    property bool compact: false
    property bool showActions: false

    readonly property real padding: compact ? 10 : 12

    implicitWidth: column.implicitWidth + 2 * padding
    implicitHeight: column.implicitHeight + 2 * padding
    radius: 12
    color: Theme.accentSoft
    borderWidth: 1
    borderColor: Theme.faded(Theme.accent, 0.25)

    component Step: RowLayout {
        id: step

        required property int number
        required property string text

        Layout.fillWidth: true
        spacing: 8

        Rectangle {
            objectName: "stepCircle" + step.number
            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 16
            Layout.preferredHeight: 16
            radius: 8
            color: Theme.accentSoft

            TextLabel {
                anchors.centerIn: parent
                text: step.number
                font: Theme.rounded(10, Font.Bold)
                color: Theme.accent
            }
        }

        TextLabel {
            objectName: "stepText" + step.number
            Layout.fillWidth: true
            text: step.text
            wrapMode: Text.Wrap
            font: Theme.system(Theme.caption)
            color: Theme.textSecondary
        }
    }

    ColumnLayout {
        id: column

        objectName: "calloutColumn"
        anchors.fill: parent
        anchors.margins: callout.padding
        spacing: callout.compact ? 8 : 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 8

            SymbolImage {
                Layout.alignment: Qt.AlignTop
                Layout.preferredWidth: 16
                Layout.preferredHeight: 16
                name: "lock.shield.fill"
                color: Theme.accent
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                TextLabel {
                    text: "Full Disk Access"
                    font: Theme.rounded(callout.compact ? Theme.caption : Theme.callout,
                                        Font.DemiBold)
                    color: Theme.text
                }

                TextLabel {
                    Layout.fillWidth: true
                    text: "Without it, Mail, Safari, and much of System Data stay hidden during This Mac scans."
                    wrapMode: Text.Wrap
                    font: Theme.system(Theme.caption)
                    color: Theme.muted
                }
            }
        }

        Step {
            number: 1
            text: "Open Settings → Privacy & Security → Full Disk Access"
        }

        Step {
            number: 2
            text: "Click + and add Brisalon.app"
        }

        Step {
            number: 3
            text: "Enable the toggle, quit & reopen Brisalon, then Refresh"
        }

        Row {
            Layout.topMargin: 2
            visible: callout.showActions
            spacing: 8

            BorderedButton {
                objectName: "showInFinderButton"
                text: "Show in Finder"
                display: T.AbstractButton.TextOnly
                isSmall: true
                onClicked: callout.appState.revealAppInFinder()
            }

            BorderedButton {
                objectName: "openSettingsButton"
                text: "Open Settings"
                display: T.AbstractButton.TextOnly
                isSmall: true
                isProminent: true
                tint: Theme.accent
                onClicked: callout.appState.openSettings()
            }
        }
    }
}
