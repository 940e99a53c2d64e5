import QtQuick
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// What the map tells of the block under the pointer: a card beside the pointer
// that fades in and out and lets the mouse through.
Item {
    id: tooltip

    objectName: "mapTooltip"

    required property TreemapCanvas map

    // The node that is shown; while the card fades out, the one that was.
    property fileNode node

    readonly property bool shown: map.enabled && map.hoveredNode.isPresent

    // The placement allows the card 240 points to the right edge, of which it
    // leaves 8.
    readonly property real textWidth: Math.max(Math.min(232, map.width - 16) - 24, 40)

    function take() {
        if (shown)
            node = map.hoveredNode
    }

    x: map.tooltipPosition.x
    y: map.tooltipPosition.y
    width: content.width + 24
    height: content.height + 20
    opacity: shown ? 1 : 0
    visible: opacity > 0
    Accessible.ignored: true

    Component.onCompleted: take()

    Connections {
        target: tooltip.map
        function onHoverChanged() {
            tooltip.take()
        }
    }

    Behavior on opacity {
        NumberAnimation {
            duration: 140
            easing.type: Easing.OutQuad
        }
    }

    SoftShadow {
        blur: 16
        cornerRadius: 10
        color: Qt.rgba(0, 0, 0, 0.35)
        x: -blur
        y: 8 - blur
        width: tooltip.width + 2 * blur
        height: tooltip.height + 2 * blur
    }

    FrostedCard {
        id: card

        map: tooltip.map
        cornerRadius: 10
        width: tooltip.width
        height: tooltip.height

        Connections {
            target: tooltip
            function onXChanged() {
                card.update()
            }
            function onYChanged() {
                card.update()
            }
        }
    }

    Column {
        id: content

        x: 12
        y: 10
        spacing: 5

        TextLabel {
            width: Math.min(implicitWidth, tooltip.textWidth)
            text: tooltip.node.name
            font: Theme.rounded(Theme.caption, Font.DemiBold)
            color: Theme.text
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }

        TextLabel {
            text: tooltip.node.sizeText
            font: Theme.monospaced(Theme.caption)
            color: Theme.textSecondary
        }

        Row {
            visible: tooltip.node.isHog
            spacing: 6

            RiskBadge {
                id: badge

                risk: tooltip.node.risk // qmllint disable
                title: tooltip.node.riskTitle
            }

            TextLabel {
                anchors.verticalCenter: badge.verticalCenter
                text: tooltip.node.hogTitle
                font: Theme.system(Theme.caption2)
                color: Theme.muted
            }
        }
    }
}
