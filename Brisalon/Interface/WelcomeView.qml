import QtQuick
import Brisalon.App
import Brisalon.Theme

// The start: what the program is, and the three things that it can scan.
Item {
    id: view

    required property AppState appState

    Column {
        anchors.centerIn: parent
        width: parent.width - 64
        spacing: 28

        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            width: parent.width
            spacing: 8

            BrandLogo {
                anchors.horizontalCenter: parent.horizontalCenter
                size: 72
                cornerRadius: 16
            }

            Text {
                width: parent.width
                topPadding: 8
                horizontalAlignment: Text.AlignHCenter
                text: "Your disk, as a map"
                textFormat: Text.PlainText
                font: Theme.rounded(Theme.title, Font.Bold)
                color: Theme.text
            }

            Text {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(parent.width, 420)
                horizontalAlignment: Text.AlignHCenter
                text: "Pick what to scan. Every rectangle is real space used — big blocks are your biggest wins."
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                lineHeight: 1.15
                font: Theme.rounded(Theme.body)
                color: Theme.muted
            }
        }

        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, 440)
            spacing: 10
            enabled: !view.appState.isScanning

            WelcomeCard {
                objectName: "scanHomeCard"
                width: parent.width
                text: "Scan Home folder"
                subtitle: "Recommended · fast, no extra permissions"
                symbol: "house.fill"
                isLastUsed: view.appState.lastUsedTarget === "home"
                onClicked: view.appState.startScan(view.appState.homeFolder)
            }

            WelcomeCard {
                objectName: "scanThisMacCard"
                width: parent.width
                text: "Scan This Mac"
                subtitle: view.appState.hasFullDiskAccess
                          ? "Full disk map including system areas"
                          : "Entire startup disk · Full Disk Access recommended"
                symbol: "internaldrive.fill"
                isLastUsed: view.appState.lastUsedTarget === "thisMac"
                onClicked: view.appState.startScan(view.appState.startupVolume)
            }

            WelcomeCard {
                objectName: "chooseFolderCard"
                width: parent.width
                text: "Choose folder…"
                subtitle: "Projects, Downloads, external drives"
                symbol: "folder.fill.badge.plus"
                isLastUsed: view.appState.lastUsedTarget === "custom"
                onClicked: view.appState.pickFolderAndScan()
            }
        }
    }
}
