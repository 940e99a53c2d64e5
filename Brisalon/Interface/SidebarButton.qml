import QtQuick
import QtQuick.Layouts
import Brisalon.Theme

// A row of the sidebar that does something; highlighted while it is active.
PlainButton {
    id: button

    required property string symbol
    property bool isActive: false
    readonly property color foreground: isActive ? Theme.text : Theme.textSecondary

    cornerRadius: 10
    leftPadding: 12
    rightPadding: 12
    topPadding: 9
    bottomPadding: 9

    contentItem: RowLayout {
        spacing: 9

        SymbolImage {
            name: button.symbol
            size: Theme.callout
            color: button.foreground
        }

        TextLabel {
            Layout.fillWidth: true
            text: button.text
            font: Theme.rounded(Theme.callout, button.isActive ? Font.DemiBold : Font.Medium)
            color: button.foreground
        }
    }

    background: ContinuousRectangle {
        radius: button.cornerRadius
        color: button.isActive ? Theme.accentSoft
               : Theme.faded("white", button.down ? 0.06 : 0)
        borderWidth: button.isActive ? 1 : 0
        borderColor: Theme.faded(Theme.accent, 0.35)
    }
}
