import QtQuick
import QtQuick.Layouts
import Brisalon.Theme

// What a row of a list says of an item: its name, and below it where it lies.
ColumnLayout {
    property alias name: name.text
    property alias place: place.text

    spacing: 3

    TextLabel {
        id: name

        objectName: "itemName"
        Layout.fillWidth: true
        maximumLineCount: 1
        elide: Text.ElideMiddle
        font: Theme.rounded(Theme.callout, Font.Medium)
        color: Theme.text
        Accessible.ignored: true
    }

    TextLabel {
        id: place

        objectName: "itemPlace"
        Layout.fillWidth: true
        maximumLineCount: 1
        elide: Text.ElideMiddle
        font: Theme.system(Theme.caption2)
        color: Theme.muted
        Accessible.ignored: true
    }
}
