import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// The column at the right: what is selected, and the lists below it.
//
// Its components reach for its ids without being bound to their context, because
// the Loader of Qt 6.4 refuses bound ones.
// qmllint disable unqualified
Rectangle {
    id: column

    required property AppState appState

    signal zoomRequested(node: fileNode)

    implicitWidth: 380
    color: Theme.panel

    // Here and not in the list, which comes and goes with its tab.
    LargeFilesModel {
        id: largestFiles

        appState: column.appState
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        InspectPanel {
            // Over a map as high as one file can make it, or as anything has: a click in
            // the list below must not move that list.
            property real tallest: 324

            objectName: "inspectPanel"
            Layout.fillWidth: true
            Layout.preferredHeight: column.appState.tree.isPresent ? tallest : implicitHeight
            appState: column.appState
            onImplicitHeightChanged: tallest = Math.max(tallest, implicitHeight)
            onZoomRequested: node => column.zoomRequested(node)
        }

        Rectangle {
            objectName: "inspectorDivider"
            Layout.fillWidth: true
            Layout.preferredHeight: 1
            color: Theme.stroke
        }

        SegmentedPicker {
            objectName: "inspectorPicker"
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.topMargin: 12
            Layout.bottomMargin: 12
            title: "Inspector"
            // In the order of SidebarTab.
            segments: ["Largest", "Snapshots"]
            current: column.appState.sidebarTab
            onPicked: index => column.appState.sidebarTab = index
        }

        Loader {
            Layout.fillWidth: true
            Layout.fillHeight: true
            sourceComponent: column.appState.sidebarTab === SidebarTab.Snapshots ? snapshots
                                                                               : largeFiles
        }
    }

    Component {
        id: largeFiles

        LargeFilesSidebar {
            objectName: "largeFilesSidebar"
            appState: column.appState
            files: largestFiles
            onMenuRequested: (item, point) => (Window.window as BrisalonWindow).openContextMenu(item, point)
        }
    }

    Component {
        id: snapshots

        SnapshotPanel {
            objectName: "snapshotPanel"
            appState: column.appState
        }
    }

    Rectangle {
        objectName: "inspectorEdge"
        width: 1
        height: parent.height
        color: Theme.stroke
    }
}
