pragma ComponentBehavior: Bound

import QtQuick
import Brisalon.App
import Brisalon.Theme

// The way from the scan's root to the level on screen. When it is longer than its
// place, its end stays in sight and the rest can be scrolled to.
ListView {
    id: breadcrumb

    required property AppState appState

    implicitHeight: Math.max(contentItem.childrenRect.height, 24)
    orientation: ListView.Horizontal
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentWidth > width
    clip: interactive
    spacing: 4
    model: appState.breadcrumbs
    keyNavigationEnabled: false

    Timer {
        id: afterLayout

        interval: 0
        onTriggered: breadcrumb.positionViewAtEnd()
    }

    // Not while the crumbs are laid out: a view that is moved then makes all of them, of
    // which there may be ten thousand.
    onWidthChanged: afterLayout.restart()
    // The crumbs are made anew; only where they are is known where their end is. The
    // keyboard, if it was on one, goes to the last.
    onModelChanged: {
        forceLayout();
        positionViewAtEnd();
        if (activeFocus)
            itemAtIndex(count - 1)?.nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason);
    }

    delegate: Row {
        id: crumb

        required property fileNode modelData
        required property int index
        readonly property bool isCurrent: index === breadcrumb.count - 1

        spacing: 4

        // The context menu of the folder, which is selected for it.
        function openMenu() {
            breadcrumb.appState.select(modelData);
            (Window.window as BrisalonWindow).openContextMenu(button, Qt.point(8, button.height));
        }

        // Not in the button, which would take every mouse button for its own then.
        TapHandler {
            acceptedButtons: Qt.RightButton
            onTapped: crumb.openMenu()
        }

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: crumb.index > 0
            name: "chevron.right"
            size: 9
            color: Theme.faded(Theme.muted, Theme.muted.a * 0.6)
        }

        PlainButton {
            id: button

            objectName: "crumb" + crumb.index
            // A long name leaves room for others.
            width: Math.min(implicitWidth, 276)
            focusPolicy: Qt.TabFocus
            text: crumb.modelData.name
            cornerRadius: height / 2
            leftPadding: 8
            rightPadding: 8
            topPadding: 4
            bottomPadding: 4

            onClicked: breadcrumb.appState.jumpToBreadcrumb(crumb.modelData)
            Keys.onMenuPressed: crumb.openMenu()
            Keys.onPressed: event => {
                if (event.key === Qt.Key_F10 && event.modifiers === Qt.ShiftModifier)
                    crumb.openMenu();
            }

            contentItem: TextLabel {
                text: button.text
                maximumLineCount: 1
                elide: Text.ElideMiddle
                font: Theme.rounded(Theme.callout, crumb.isCurrent ? Font.DemiBold : Font.Medium)
                color: crumb.isCurrent || button.hovered ? Theme.text : Theme.textSecondary
            }

            background: Rectangle {
                radius: button.cornerRadius
                color: crumb.isCurrent ? Theme.elevated : "transparent"
            }
        }
    }
}
