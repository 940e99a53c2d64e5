pragma ComponentBehavior: Bound

import QtQuick
import Brisalon.Theme

// A line of text whose digits are all equally wide, so that numbers line up below
// one another and do not jitter while they change. The fonts of the interface have
// digits of different widths, and no way to ask them for others.
Item {
    id: line

    property string text
    property font font
    property color color

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    baselineOffset: metrics.ascent
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    FontMetrics {
        id: metrics

        font: line.font
    }

    // The metrics above round a digit to whole pixels, which looks spaced out.
    TextLabel {
        id: tenZeros

        visible: false
        text: "0000000000"
        font: line.font
    }

    Row {
        id: row

        Repeater {
            model: line.text.match(/\d|\D+/g)

            TextLabel {
                required property string modelData

                width: /\d/.test(modelData) ? tenZeros.implicitWidth / 10 : implicitWidth
                horizontalAlignment: Text.AlignHCenter
                text: modelData
                font: line.font
                color: line.color
                Accessible.ignored: true
            }
        }
    }
}
