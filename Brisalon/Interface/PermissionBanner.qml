import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// The strip that recommends Full Disk Access, and that says thanks once it was
// granted. Takes no space otherwise.
Rectangle {
    id: banner

    required property AppState appState

    readonly property bool thanks: appState.fdaJustGranted
    readonly property Item content: thanks ? granted : request

    objectName: "permissionBanner"
    visible: thanks || appState.shouldShowFDABanner
    implicitWidth: content.implicitWidth + 40
    implicitHeight: content.implicitHeight + 24
    color: thanks ? Theme.faded(Theme.success, 0.1) : Theme.faded(Theme.amber, 0.08)

    WindowMover {
        anchors.fill: parent
    }

    RowLayout {
        id: granted

        objectName: "grantedBanner"
        x: 20
        y: 12
        width: parent.width - 40
        spacing: 12
        visible: banner.thanks

        SymbolImage {
            objectName: "grantedSymbol"
            name: "checkmark.circle.fill"
            color: Theme.success
        }

        TextLabel {
            objectName: "grantedText"
            Layout.fillWidth: true
            text: "Full Disk Access enabled — This Mac scans will show more detail."
            wrapMode: Text.Wrap
            font: Theme.rounded(Theme.subheadline, Font.Medium)
            color: Theme.text
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        BorderedButton {
            objectName: "dismissButton"
            text: "Dismiss"
            display: T.AbstractButton.TextOnly
            isSmall: true
            onClicked: banner.appState.fdaJustGranted = false
        }
    }

    ColumnLayout {
        id: request

        objectName: "requestBanner"
        x: 20
        y: 12
        width: parent.width - 40
        spacing: 12
        visible: !banner.thanks

        RowLayout {
            Layout.fillWidth: true
            spacing: 12

            Rectangle {
                objectName: "requestCircle"
                Layout.preferredWidth: 36
                Layout.preferredHeight: 36
                radius: 18
                color: Theme.faded(Theme.amber, 0.15)

                SymbolImage {
                    objectName: "requestSymbol"
                    anchors.centerIn: parent
                    name: "lock.shield.fill"
                    size: 16
                    color: Theme.amber
                }
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 3

                TextLabel {
                    objectName: "requestTitle"
                    Layout.fillWidth: true
                    text: "Full Disk Access recommended"
                    wrapMode: Text.Wrap
                    font: Theme.rounded(Theme.subheadline, Font.DemiBold)
                    color: Theme.text
                }

                TextLabel {
                    objectName: "requestDetail"
                    Layout.fillWidth: true
                    text: "Home scans work without it. Enable FDA for complete This Mac maps."
                    wrapMode: Text.Wrap
                    font: Theme.system(Theme.caption)
                    color: Theme.muted
                }
            }
        }

        FullDiskAccessCallout {
            objectName: "bannerCallout"
            Layout.maximumWidth: request.width
            appState: banner.appState
            compact: true
            showActions: true
        }

        Row {
            spacing: 12

            BorderlessButton {
                objectName: "notNowButton"
                anchors.verticalCenter: parent.verticalCenter
                text: "Not now"
                font: Theme.system(Theme.subheadline)
                onClicked: banner.appState.dismissFDABanner()
            }

            BorderedButton {
                objectName: "refreshButton"
                text: "Refresh"
                display: T.AbstractButton.TextOnly
                isSmall: true
                onClicked: banner.appState.refreshPermission()
            }
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.stroke
    }
}
