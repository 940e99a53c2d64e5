import QtQuick
import QtQuick.Templates as T
import Brisalon.Map
import Brisalon.Theme

// A panel over the window that has to be answered before anything else: what lies
// behind it is dimmed and out of reach of pointer, keys and shortcuts. Escape and a
// click outside hide it; whoever shows it reacts in onAboutToHide.
T.Popup {
    id: sheet

    // What has the keyboard again afterwards: a focus scope, which remembers where
    // in it the keyboard was.
    required property Item behind
    // What a screen reader calls it.
    required property string name
    property string description: ""
    // What has the keyboard at first, and shows it.
    property Item initialFocus: contentItem
    // Whether what had the keyboard before showed it.
    property bool wasFocusVisible: false

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2) : 0
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    modal: true
    dim: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutside

    // At once, because the keys of an opening sheet belong to it and not to what is
    // behind.
    onVisibleChanged: {
        if (visible) {
            const item = behind.Window.activeFocusItem;
            wasFocusVisible = (item as T.Control)?.visualFocus
                ?? (item as TreemapCanvas)?.focusVisible ?? false;
            initialFocus.forceActiveFocus(Qt.TabFocusReason);
        }
        introduce();
    }
    onNameChanged: introduce()
    onDescriptionChanged: introduce()
    onAboutToHide: behind.forceActiveFocus(wasFocusVisible ? Qt.TabFocusReason
                                                           : Qt.PopupFocusReason)

    // A popup is no item and takes no words; the item that it shows itself with does.
    function introduce() {
        if (!visible)
            return;
        const shell = contentItem.parent;
        shell.Accessible.name = name;
        shell.Accessible.description = description;
    }

    background: Item {
        SoftShadow {
            blur: 36
            cornerRadius: 16
            color: Theme.faded("black", 0.55)
            x: -blur
            y: 12 - blur
            width: parent.width + 2 * blur
            height: parent.height + 2 * blur
        }

        PanelStyle {
            objectName: "sheetPanel"
            anchors.fill: parent
            cornerRadius: 16
            borderColor: Theme.strokeStrong
        }
    }

    T.Overlay.modal: Rectangle {
        color: Theme.faded("black", 0.5)

        Behavior on opacity {
            NumberAnimation {
                duration: 120
            }
        }
    }

    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: 120
            easing.type: Easing.OutQuad
        }
    }

    exit: Transition {
        NumberAnimation {
            property: "opacity"
            to: 0
            duration: 120
            easing.type: Easing.InQuad
        }
    }
}
