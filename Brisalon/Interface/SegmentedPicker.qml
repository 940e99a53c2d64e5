pragma ComponentBehavior: Bound

import QtQuick
import Brisalon.Theme

// Picks one of a few things that exclude one another. The keyboard comes to the one
// that is picked and moves on with the arrow keys.
Item {
    id: picker

    // What is picked, for those who cannot see it.
    required property string title
    required property var segments
    required property int current

    signal picked(index: int)

    implicitHeight: 28
    Accessible.role: Accessible.PageTabList
    Accessible.name: title

    function pick(index: int) {
        if (index < 0 || index >= segments.length)
            return;
        // First, because the one that has the keyboard must stay within its reach.
        repeater.itemAt(index).forceActiveFocus(Qt.TabFocusReason);
        picked(index);
    }

    ContinuousRectangle {
        anchors.fill: parent
        radius: 8
        color: Theme.well
        borderWidth: 1
        borderColor: Theme.stroke
    }

    ContinuousRectangle {
        x: 2 + picker.current * width
        y: 2
        width: (picker.width - 4) / picker.segments.length
        height: picker.height - 4
        radius: 6
        color: Theme.strokeStrong
        borderWidth: 1
        borderColor: Theme.stroke

        Behavior on x {
            NumberAnimation {
                duration: 160
                easing.type: Easing.OutCubic
            }
        }
    }

    Row {
        anchors.fill: parent
        anchors.margins: 2

        Repeater {
            id: repeater

            model: picker.segments

            PlainButton {
                id: segment

                required property string modelData
                required property int index
                readonly property bool isCurrent: index === picker.current

                objectName: "segment" + modelData
                width: parent.width / repeater.count
                height: parent.height
                text: modelData
                cornerRadius: 6
                focusPolicy: isCurrent ? Qt.StrongFocus : Qt.ClickFocus
                Accessible.role: Accessible.PageTab
                Accessible.selectable: true
                Accessible.selected: isCurrent

                onClicked: picker.picked(index)
                Keys.onLeftPressed: picker.pick(index - 1)
                Keys.onRightPressed: picker.pick(index + 1)

                contentItem: TextLabel {
                    text: segment.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    font: Theme.rounded(Theme.callout, Font.Medium)
                    color: segment.isCurrent || segment.hovered ? Theme.text
                                                                : Theme.textSecondary
                }
            }
        }
    }
}
