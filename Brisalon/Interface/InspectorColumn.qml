import QtQuick
import Brisalon.App

// The column at the right: what is selected, and the lists below it.
Item {
    required property AppState appState

    implicitWidth: 380
}
