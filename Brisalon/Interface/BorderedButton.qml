import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Brisalon.Theme

// A button with an outline: a symbol, a title or both, as `display` says. One that
// shows its symbol only says what it does in a tip. A prominent one is filled with
// its tint, for the step that a view is there for.
PlainButton {
    id: button

    property string symbol: ""
    property color tint: Theme.text
    property bool isProminent: false
    property bool isSmall: false

    readonly property bool showsTitle: display !== T.AbstractButton.IconOnly
    readonly property color foreground: isProminent ? "white" : tint

    cornerRadius: isSmall ? 6 : 7
    leftPadding: isSmall ? 8 : showsTitle ? 11 : 9
    rightPadding: leftPadding
    topPadding: isSmall ? 4 : 6
    bottomPadding: topPadding
    spacing: isSmall ? 4 : 6
    font: Theme.rounded(isSmall ? Theme.subheadline : Theme.callout, Font.Medium)
    opacity: enabled ? 1 : 0.4

    contentItem: RowLayout {
        spacing: button.spacing

        SymbolImage {
            Layout.alignment: Qt.AlignCenter
            visible: button.symbol !== ""
            name: button.symbol
            size: button.font.pixelSize
            color: button.foreground
        }

        TextLabel {
            Layout.fillWidth: true
            Layout.minimumHeight: button.isSmall ? 14 : 16
            visible: button.showsTitle
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            text: button.text
            font: button.font
            color: button.foreground
        }
    }

    background: ContinuousRectangle {
        readonly property color fill: button.isProminent ? button.tint : "white"
        readonly property real strength: button.down ? 0.14 : button.hovered ? 0.1 : 0.06

        radius: button.cornerRadius
        color: !button.isProminent ? Theme.faded(fill, strength)
               : button.down ? Qt.darker(fill, 1.2) : button.hovered ? Qt.lighter(fill, 1.08) : fill
        borderWidth: 1
        borderColor: Theme.stroke
    }

    HintTip {
        text: button.text
        visible: !button.showsTitle && button.hovered && !button.down
    }
}
