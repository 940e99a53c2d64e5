import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Theme

// The left column: the window's controls, the product, the volume, the targets
// and, while a scan runs, its progress.
Rectangle {
    id: sidebar

    required property AppState appState
    required property scanProgress progress
    required property Commands commands

    readonly property int phase: ScanTargets.phase(appState.tree, appState.isScanning)

    objectName: "sidebar"
    color: Theme.sidebar

    WindowMover {
        anchors.fill: parent
    }

    PlainButton {
        id: menuButton

        objectName: "menuButton"
        anchors.right: parent.right
        anchors.rightMargin: 14
        y: 12
        text: "Menu"
        padding: 6
        onClicked: menu.open()

        contentItem: SymbolImage {
            name: "line.3.horizontal"
            size: 12
            color: menuButton.hovered || menu.visible ? Theme.text : Theme.textSecondary
        }

        background: Rectangle {
            radius: menuButton.cornerRadius
            color: Theme.faded("white", menuButton.hovered || menu.visible ? 0.08 : 0)
        }

        CommandMenu {
            id: menu

            // Whether the keyboard was seen on its button, where it then returns to.
            property bool wasFocusVisible: false

            y: menuButton.height + 4
            commands: sidebar.commands.menu
            submenu: DiskMenu {
                appState: sidebar.appState
            }
            onAboutToShow: {
                wasFocusVisible = menuButton.visualFocus;
                sidebar.appState.listDisks();
            }
            onAboutToHide: if (wasFocusVisible) menuButton.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 12

        RowLayout {
            Layout.leftMargin: 18
            Layout.rightMargin: 18
            Layout.topMargin: 52
            Layout.bottomMargin: 20
            spacing: 12

            BrandLogo {
                objectName: "sidebarLogo"
                size: 40
                cornerRadius: 11
            }

            Column {
                spacing: 2

                BrandWordmark {
                    style: Theme.headline
                }

                TextLabel {
                    text: "Disk map"
                    font: Theme.rounded(Theme.caption)
                    color: Theme.muted
                }
            }
        }

        DiskRingCard {
            objectName: "diskRingCard"
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.bottomMargin: 20
            visible: sidebar.appState.volume.isPresent
            volume: sidebar.appState.volume
        }

        SectionLabel {
            Layout.leftMargin: 20
            Layout.bottomMargin: 8
            title: "Scan"
        }

        TextLabel {
            Layout.leftMargin: 20
            Layout.rightMargin: 20
            Layout.bottomMargin: 8
            visible: sidebar.phase === ScanTargets.BeforeFirst
            text: "Pick a scan target in the map →"
            font: Theme.rounded(Theme.caption)
            color: Theme.muted
        }

        Column {
            Layout.fillWidth: true
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            spacing: 4
            enabled: sidebar.phase === ScanTargets.Mapped
            opacity: sidebar.phase === ScanTargets.BeforeFirst ? 0.45 : 1

            SidebarButton {
                objectName: "homeTarget"
                width: parent.width
                text: "Home folder"
                symbol: "house.fill"
                isActive: ScanTargets.isShown(ScanTargets.home, sidebar.phase,
                                              sidebar.appState.scanRoot)
                onClicked: sidebar.appState.startScan(ScanTargets.home)
            }

            SidebarButton {
                objectName: "thisMacTarget"
                width: parent.width
                text: "This Mac"
                symbol: "internaldrive.fill"
                isActive: ScanTargets.isShown(ScanTargets.thisMac, sidebar.phase,
                                              sidebar.appState.scanRoot)
                onClicked: sidebar.appState.startScan(ScanTargets.thisMac)
            }

            SidebarButton {
                objectName: "folderTarget"
                width: parent.width
                text: "Choose folder…"
                symbol: "folder.fill.badge.plus"
                onClicked: sidebar.appState.pickFolderAndScan()
            }
        }

        ScanningCard {
            objectName: "scanningCard"
            Layout.fillWidth: true
            Layout.leftMargin: 16
            Layout.rightMargin: 16
            Layout.topMargin: 16
            visible: sidebar.phase === ScanTargets.Scanning
            appState: sidebar.appState
            progress: sidebar.progress
        }

        SidebarButton {
            Layout.fillWidth: true
            Layout.leftMargin: 12
            Layout.rightMargin: 12
            Layout.topMargin: 8
            visible: sidebar.phase === ScanTargets.Mapped
            objectName: "sidebarRescan"
            text: "Rescan"
            symbol: "arrow.clockwise"
            onClicked: sidebar.appState.startScan(sidebar.appState.scanRoot)
        }

        Item {
            Layout.fillHeight: true
        }
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.stroke
    }

    // Last, so that the Tab key comes to them last.
    WindowControls {
        x: 18
        anchors.verticalCenter: menuButton.verticalCenter
    }
}
