import QtQuick
import Brisalon.Theme

// A small heading over a group. Given in mixed case, shown in capitals.
TextLabel {
    required property string title

    text: title.toUpperCase()
    font: {
        const font = Theme.rounded(10, Font.DemiBold);
        font.letterSpacing = 0.6;
        return font;
    }
    color: Theme.muted
}
