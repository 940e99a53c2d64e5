import QtQuick
import QtQuick.Layouts
import Brisalon.Theme

// A row of a list: items side by side. No control, because those of Qt 6.4 have a
// role of their own that no other can replace.
Item {
    id: row

    property bool isSelected: false
    property bool isHovered: false
    property alias content: layout.data

    implicitWidth: layout.implicitWidth + 20
    implicitHeight: layout.implicitHeight + 16
    Accessible.role: Accessible.ListItem

    ContinuousRectangle {
        objectName: "rowBackground"
        anchors.fill: parent
        radius: 8
        color: row.isSelected ? Theme.accentSoft
               : Theme.faded(Theme.elevated, row.isHovered ? 1 : 0.55)
        borderWidth: 1
        borderColor: row.isSelected ? Theme.faded(Theme.accent, 0.35) : Theme.stroke
    }

    RowLayout {
        id: layout

        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 10
        anchors.topMargin: 8
        anchors.bottomMargin: 8
        spacing: 12
    }
}
