import QtQuick
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Interface
import Brisalon.Theme

// What the program is: the content of a sheet. Made anew each time, so that it
// reads the version then and begins with the help closed.
FocusScope {
    id: about

    required property AppState appState
    required property ProductInformation product

    readonly property string versionText: product.versionText()
    property bool showFDAHelp: false

    signal closed()

    objectName: "aboutView"
    implicitWidth: 420
    implicitHeight: column.implicitHeight + 72

    // Before whatever button has the keyboard: those are pressed with Space here.
    Shortcut {
        sequences: ["Return", "Enter"]
        autoRepeat: false
        onActivated: about.closed()
    }

    Column {
        id: column

        objectName: "aboutColumn"
        x: 36
        y: 36
        width: parent.width - 72
        spacing: 20

        BrandLogo {
            objectName: "aboutLogo"
            anchors.horizontalCenter: parent.horizontalCenter
            size: 80
            cornerRadius: 16
        }

        Column {
            objectName: "aboutName"
            anchors.horizontalCenter: parent.horizontalCenter
            spacing: 4

            BrandWordmark {
                objectName: "aboutWordmark"
                anchors.horizontalCenter: parent.horizontalCenter
                style: Theme.title
            }

            TextLabel {
                objectName: "aboutVersion"
                anchors.horizontalCenter: parent.horizontalCenter
                text: about.versionText
                font: Theme.system(Theme.callout)
                color: Theme.muted
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }

        TextLabel {
            objectName: "aboutTagline"
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, 300)
            horizontalAlignment: Text.AlignHCenter
            text: "See your Mac as a map. Reclaim the big blocks."
            wrapMode: Text.Wrap
            font: Theme.system(Theme.body)
            color: Theme.textSecondary
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }

        BorderlessButton {
            objectName: "aboutLink"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: text !== ""
            text: about.product.siteLabel
            font: Theme.system(Theme.callout, Font.DemiBold)
            tint: Theme.accent
            Accessible.role: Accessible.Link
            onClicked: about.product.openSite()
        }

        BorderlessButton {
            objectName: "aboutHelpButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: about.showFDAHelp ? "Hide Full Disk Access help" : "Full Disk Access help"
            font: Theme.system(Theme.body)
            tint: Theme.accent
            onClicked: about.showFDAHelp = !about.showFDAHelp
        }

        FullDiskAccessCallout {
            objectName: "aboutCallout"
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(parent.width, 340)
            visible: about.showFDAHelp
            appState: about.appState
            compact: true
            showActions: true
        }

        BorderedButton {
            objectName: "aboutCloseButton"
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Close"
            display: T.AbstractButton.TextOnly
            isProminent: true
            tint: Theme.accent
            focus: true
            onClicked: about.closed()
        }
    }
}
