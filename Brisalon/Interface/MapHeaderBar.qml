import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Brisalon.App
import Brisalon.Theme

// The bar above the map: where one is, the way up, a new scan, and how much the
// selection takes. Without a map it takes no space.
Rectangle {
    id: bar

    required property AppState appState

    objectName: "mapHeaderBar"
    visible: appState.tree.isPresent
    implicitHeight: visible ? row.implicitHeight + 24 : 0
    color: Theme.faded(Theme.panel, 0.6)

    RowLayout {
        id: row

        anchors.fill: parent
        anchors.leftMargin: 20
        anchors.rightMargin: 20
        anchors.topMargin: 12
        anchors.bottomMargin: 12
        spacing: 12

        BorderedButton {
            objectName: "upButton"
            visible: bar.appState.canZoomOut
            symbol: "chevron.up"
            text: "Up one level"
            display: T.AbstractButton.IconOnly
            onClicked: bar.appState.zoomUpOneLevel()
        }

        Breadcrumb {
            objectName: "breadcrumb"
            Layout.fillWidth: true
            appState: bar.appState
        }

        BorderedButton {
            objectName: "rescanButton"
            symbol: "arrow.clockwise"
            text: "Rescan"
            display: T.AbstractButton.IconOnly
            enabled: !bar.appState.isScanning
            onClicked: bar.appState.startScan(bar.appState.scanRoot)
        }

        Rectangle {
            objectName: "selectionChip"
            Layout.preferredWidth: Math.ceil(chip.implicitWidth) + 20
            Layout.preferredHeight: chip.implicitHeight + 10
            visible: bar.appState.selection.isPresent
            radius: height / 2
            color: Theme.accentSoft

            TextLabel {
                id: chip

                objectName: "selectionSize"
                anchors.centerIn: parent
                text: bar.appState.selection.sizeText
                font: Theme.rounded(Theme.caption, Font.DemiBold)
                color: Theme.accent
            }
        }

        BorderedButton {
            objectName: "trashButton"
            visible: bar.appState.selection.isPresent
            enabled: !bar.appState.isScanning
            symbol: "trash.fill"
            text: "Move to Trash"
            isProminent: true
            tint: Theme.danger
            font: Theme.rounded(Theme.callout, Font.DemiBold)
            onClicked: bar.appState.requestTrashSelected()
        }
    }

    Rectangle {
        anchors.bottom: parent.bottom
        width: parent.width
        height: 1
        color: Theme.stroke
    }
}
