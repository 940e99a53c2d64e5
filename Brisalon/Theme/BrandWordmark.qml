pragma ComponentBehavior: Bound

import QtQuick
import Brisalon.Theme

// The product's name: one word in three runs, the middle one accented.
Row {
    id: wordmark

    // The size of the text style that it is set in.
    required property int style

    Accessible.role: Accessible.StaticText
    Accessible.name: "Brisalon"

    Repeater {
        model: [
            { run: "Bris", color: Theme.text },
            { run: "al", color: Theme.accent },
            { run: "on", color: Theme.text }
        ]

        TextLabel {
            required property var modelData

            text: modelData.run
            font: Theme.rounded(wordmark.style, Font.Bold)
            color: modelData.color
            Accessible.ignored: true
        }
    }
}
