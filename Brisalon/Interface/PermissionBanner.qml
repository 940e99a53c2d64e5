import QtQuick
import Brisalon.App

// The strip that recommends Full Disk Access, and thanks for it.
Item {
    required property AppState appState

}
