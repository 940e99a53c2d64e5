import QtQuick.Templates as T
import Brisalon.Theme

// The look of a row of a list.
T.Control {
    id: row

    property bool isSelected: false
    property bool isHovered: false

    leftPadding: 10
    rightPadding: 10
    topPadding: 8
    bottomPadding: 8
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    background: ContinuousRectangle {
        radius: 8
        color: row.isSelected ? Theme.accentSoft
               : Theme.faded(Theme.elevated, row.isHovered ? 1 : 0.55)
        borderWidth: 1
        borderColor: row.isSelected ? Theme.faded(Theme.accent, 0.35) : Theme.stroke
    }
}
