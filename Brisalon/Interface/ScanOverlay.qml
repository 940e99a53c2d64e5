import QtQuick
import Brisalon.Map
import Brisalon.Theme

// A card over the old map while a new one is made.
Item {
    id: overlay

    // What lies behind the card and shows through it; none over an empty folder.
    required property TreemapCanvas map

    implicitWidth: content.implicitWidth + 40
    implicitHeight: content.implicitHeight + 40

    SoftShadow {
        blur: 20
        cornerRadius: 14
        color: Theme.faded("black", 0.25)
        x: -blur
        y: 8 - blur
        width: parent.width + 2 * blur
        height: parent.height + 2 * blur
    }

    ContinuousRectangle {
        anchors.fill: parent
        radius: 14
        visible: !overlay.map
        color: Theme.elevated
    }

    Loader {
        anchors.fill: parent
        active: overlay.map
        // The Loader of Qt 6.4 refuses components that are bound to their context.
        sourceComponent: FrostedCard {
            cornerRadius: 14
            map: overlay.map // qmllint disable unqualified
        }
    }

    Column {
        id: content

        anchors.centerIn: parent
        spacing: 10

        Spinner {
            anchors.horizontalCenter: parent.horizontalCenter
        }

        TextLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            text: "Updating map…"
            font: Theme.rounded(Theme.callout, Font.DemiBold)
            color: Theme.text
        }
    }
}
