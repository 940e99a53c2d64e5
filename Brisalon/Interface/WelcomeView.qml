import QtQuick
import Brisalon.App
import Brisalon.Theme

// The start: what the program is, the three things that it can scan, and why one
// of them wants a permission.
Item {
    id: view

    required property AppState appState

    // The card under the pointer.
    property int hoveredTarget: WelcomeTarget.None
    property bool showFDADetails: false

    // Also while the pointer or the keyboard is on the section itself; otherwise it
    // would be gone before one got there from the card that brings it up.
    readonly property bool showsFDASection: !appState.hasFullDiskAccess
        && (hoveredTarget === WelcomeTarget.ThisMac || showFDADetails || thisMacCard.visualFocus
            || sectionHover.hovered || detailsButton.visualFocus)

    function hover(target: int, isHovered: bool) {
        if (isHovered)
            hoveredTarget = target;
        else if (hoveredTarget === target)
            hoveredTarget = WelcomeTarget.None;
    }

    // Brings what the keyboard has reached into sight.
    function reveal(item: Item) {
        const top = item.mapToItem(stack, 0, 0).y + stack.y;
        scroller.contentY = Math.max(0, Math.min(top - 32,
            Math.max(scroller.contentY, top + item.height + 32 - scroller.height)));
    }

    Flickable {
        id: scroller

        anchors.fill: parent
        contentHeight: Math.max(height, stack.y + stack.height + 32)
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        clip: interactive

        ThinScrollBar.vertical: ThinScrollBar {}

        Column {
            id: stack

            // In the middle without the last part, which comes and goes with the
            // pointer: what is under the pointer must not move then. Higher up only
            // where that part would not fit below.
            readonly property real middle: (scroller.height - cards.y - cards.height) / 2
            readonly property real highest: scroller.height - height - 32

            objectName: "welcomeStack"
            x: 32
            y: Math.round(Math.max(32, Math.min(middle, highest)))
            width: parent.width - 64
            spacing: 28

            Column {
                objectName: "welcomeHeader"
                anchors.horizontalCenter: parent.horizontalCenter
                width: parent.width
                spacing: 8

                BrandLogo {
                    anchors.horizontalCenter: parent.horizontalCenter
                    size: 72
                    cornerRadius: 16
                }

                TextLabel {
                    width: parent.width
                    topPadding: 8
                    horizontalAlignment: Text.AlignHCenter
                    text: "Your disk, as a map"
                    font: Theme.rounded(Theme.title, Font.Bold)
                    color: Theme.text
                }

                TextLabel {
                    anchors.horizontalCenter: parent.horizontalCenter
                    width: Math.min(parent.width, 420)
                    horizontalAlignment: Text.AlignHCenter
                    text: "Pick what to scan. Every rectangle is real space used — big blocks are your biggest wins."
                    wrapMode: Text.Wrap
                    lineHeight: 1.15
                    font: Theme.rounded(Theme.body)
                    color: Theme.muted
                }
            }

            Column {
                id: cards

                objectName: "welcomeCards"
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
                    isLastUsed: view.appState.lastUsedTarget === WelcomeTarget.Home
                    onHoveredChanged: view.hover(WelcomeTarget.Home, hovered)
                    onVisualFocusChanged: if (visualFocus) view.reveal(this)
                    onClicked: view.appState.startScan(ScanTargets.home)
                }

                WelcomeCard {
                    id: thisMacCard

                    objectName: "scanThisMacCard"
                    width: parent.width
                    text: "Scan This Mac"
                    subtitle: view.appState.hasFullDiskAccess
                              ? "Full disk map including system areas"
                              : "Entire startup disk · Full Disk Access recommended"
                    symbol: "internaldrive.fill"
                    isLastUsed: view.appState.lastUsedTarget === WelcomeTarget.ThisMac
                    onHoveredChanged: view.hover(WelcomeTarget.ThisMac, hovered)
                    onVisualFocusChanged: if (visualFocus) view.reveal(this)
                    onClicked: view.appState.startScan(ScanTargets.thisMac)
                }

                WelcomeCard {
                    objectName: "chooseFolderCard"
                    width: parent.width
                    text: "Choose folder…"
                    subtitle: "Projects, Downloads, external drives"
                    symbol: "folder.fill.badge.plus"
                    isLastUsed: view.appState.lastUsedTarget === WelcomeTarget.ChooseFolder
                    onHoveredChanged: view.hover(WelcomeTarget.ChooseFolder, hovered)
                    onVisualFocusChanged: if (visualFocus) view.reveal(this)
                    onClicked: view.appState.pickFolderAndScan()
                }
            }

            // Keeps the section's room while the section is hidden.
            Item {
                anchors.horizontalCenter: parent.horizontalCenter
                width: Math.min(parent.width, 440)
                height: section.height
                visible: !view.appState.hasFullDiskAccess

                Column {
                    id: section

                    objectName: "fdaSection"
                    width: parent.width
                    spacing: 8
                    visible: opacity > 0
                    opacity: view.showsFDASection ? 1 : 0

                    Behavior on opacity {
                        NumberAnimation {
                            duration: 200
                            easing.type: Easing.OutQuad
                        }
                    }

                    HoverHandler {
                        id: sectionHover
                    }

                    BorderlessButton {
                        id: detailsButton

                        objectName: "fdaDetailsButton"
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: view.showFDADetails ? "Hide Full Disk Access steps"
                                                  : "Why Full Disk Access?"
                        font: Theme.system(Theme.caption, Font.DemiBold)
                        tint: Theme.accent
                        onVisualFocusChanged: if (visualFocus) view.reveal(section)
                        onClicked: view.showFDADetails = !view.showFDADetails
                    }

                    Item {
                        width: parent.width
                        height: callout.height
                        clip: true

                        FullDiskAccessCallout {
                            id: callout

                            objectName: "welcomeCallout"
                            width: parent.width
                            y: view.showsFDASection ? 0 : -height
                            appState: view.appState
                            compact: true

                            Behavior on y {
                                NumberAnimation {
                                    duration: 200
                                    easing.type: Easing.OutQuad
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}
