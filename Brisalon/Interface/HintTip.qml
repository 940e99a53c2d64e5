import QtQuick
import QtQuick.Templates as T
import Brisalon.Theme

// The words that appear beside a button after the pointer has rested on it.
T.ToolTip {
    id: tip

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 6 : 0
    implicitWidth: contentItem.implicitWidth + leftPadding + rightPadding
    implicitHeight: contentItem.implicitHeight + topPadding + bottomPadding
    leftPadding: 9
    rightPadding: 9
    topPadding: 5
    bottomPadding: 5
    margins: 8
    delay: 600

    contentItem: TextLabel {
        text: tip.text
        font: Theme.system(Theme.subheadline)
        color: Theme.text
    }

    background: Rectangle {
        radius: 6
        color: Theme.elevated
        border.width: 1
        border.color: Theme.strokeStrong
    }
}
