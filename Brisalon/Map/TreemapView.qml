import QtQuick
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// The map with its tooltip.
Item {
    id: view

    property alias level: canvas.level
    property alias selectedID: canvas.selectedID
    readonly property alias map: canvas

    signal selectRequested(node: fileNode)
    signal zoomRequested(node: fileNode)
    signal menuRequested(point: point)

    TreemapCanvas {
        id: canvas

        anchors.fill: parent
        focus: true
        // While a transition scales the view.
        smooth: view.scale !== 1
        // This makes it known; what it says of itself and of its blocks comes from the
        // map.
        Accessible.role: Accessible.List

        // Before the command itself: where the keyboard is, it acts on the block that is
        // marked there and not on files that are ticked elsewhere.
        Keys.onShortcutOverride: event => {
            if (focusVisible && selectedNode.isPresent
                    && (event.matches(StandardKey.Delete) || event.matches(StandardKey.Copy)))
                view.selectRequested(selectedNode);
            event.accepted = false;
        }

        onSelectRequested: node => view.selectRequested(node)
        onZoomRequested: node => view.zoomRequested(node)
        onMenuRequested: point => view.menuRequested(point)
    }

    FocusRing {
        visible: canvas.focusVisible
        outset: 4
    }

    MapTooltip {
        map: canvas
    }
}
