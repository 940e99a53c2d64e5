import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Theme

// The line at the bottom: what goes on, or what came of it.
Rectangle {
    id: bar

    required property AppState appState
    required property scanProgress progress

    readonly property bool showsFailures:
        StatusLine.isOfFailures(appState.isScanning, progress, appState.failureText)

    objectName: "statusBar"
    implicitHeight: row.implicitHeight + 18
    color: Theme.sidebar

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        anchors.topMargin: 9
        anchors.bottomMargin: 9
        spacing: 10

        Rectangle {
            objectName: "statusDot"
            Layout.preferredWidth: 6
            Layout.preferredHeight: 6
            radius: 3
            color: bar.appState.isScanning || bar.appState.isWorking ? Theme.accent : Theme.success
        }

        SymbolImage {
            objectName: "failureSymbol"
            visible: bar.showsFailures
            name: "exclamationmark.triangle.fill"
            size: Theme.caption
            color: Theme.amber
        }

        TextLabel {
            objectName: "statusText"
            Layout.fillWidth: true
            text: StatusLine.text(bar.appState.isScanning, bar.progress, bar.appState.failureText,
                                  bar.appState.statusMessage)
            maximumLineCount: 1
            // Failures are many sentences in a row, of which the first matter most.
            elide: bar.showsFailures ? Text.ElideRight : Text.ElideMiddle
            font: Theme.rounded(Theme.caption)
            color: Theme.textSecondary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        TextLabel {
            objectName: "mapHint"
            visible: bar.appState.shouldShowMapHint
            text: "Click inspect · Double-click zoom"
            font: Theme.rounded(Theme.caption)
            color: Theme.faded(Theme.muted, Theme.muted.a * 0.7)
        }
    }

    Rectangle {
        width: parent.width
        height: 1
        color: Theme.stroke
    }
}
