import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Map
import Brisalon.Theme

// What is selected, and what can be done with it: the ticked large files, or else
// the block that was clicked, or else nothing.
Item {
    id: panel

    required property AppState appState

    readonly property fileNode node: appState.selected
    readonly property var files: appState.selectedLargeFileEntries
    readonly property bool showsFiles: appState.hasTickedLargeFiles
    readonly property bool showsFile: showsFiles && files.length === 1
    readonly property bool showsNode: !showsFiles && node.isPresent
    // The one item that is described, if it is one.
    readonly property var item: showsFile ? files[0] : showsNode ? node : null

    signal zoomRequested(node: fileNode)

    implicitHeight: column.implicitHeight + 36

    ColumnLayout {
        id: column

        anchors.fill: parent
        anchors.margins: 18
        spacing: 14

        SectionLabel {
            title: "Selection"
        }

        ColumnLayout {
            objectName: "emptySelection"
            Layout.fillWidth: true
            Layout.topMargin: 8
            Layout.bottomMargin: 8
            visible: !panel.showsFiles && !panel.showsNode
            spacing: 6

            Text {
                Layout.fillWidth: true
                text: "Nothing selected"
                textFormat: Text.PlainText
                font: Theme.rounded(Theme.headline, Font.DemiBold)
                color: Theme.textSecondary
            }

            Text {
                Layout.fillWidth: true
                text: "Click a block on the map to inspect it. Double-click a folder to drill down."
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                font: Theme.system(Theme.callout)
                color: Theme.muted
            }
        }

        RowLayout {
            Layout.fillWidth: true
            visible: panel.showsFiles || panel.showsNode
            spacing: 12

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 2

                Text {
                    objectName: "selectionTitle"
                    Layout.fillWidth: true
                    text: panel.item ? panel.item.name : panel.files.length + " large files"
                    textFormat: Text.PlainText
                    wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                    maximumLineCount: 2
                    elide: Text.ElideRight
                    font: Theme.rounded(Theme.title3, Font.Bold)
                    color: Theme.text
                }

                Text {
                    objectName: "selectionSubtitle"
                    Layout.fillWidth: true
                    text: panel.showsNode ? panel.node.kindTitle
                          : panel.showsFile ? "File" : "Multi-select from Largest tab"
                    textFormat: Text.PlainText
                    elide: Text.ElideRight
                    font: Theme.rounded(Theme.caption, Font.Medium)
                    color: Theme.muted
                }
            }

            DigitText {
                objectName: "inspectedSize"
                Layout.alignment: Qt.AlignTop
                text: panel.showsNode ? panel.node.sizeText : panel.appState.selectedBytesText
                font: Theme.rounded(Theme.title2, Font.Bold)
                color: Theme.accent
            }
        }

        HogSummary {
            objectName: "hogSummary"
            Layout.fillWidth: true
            visible: panel.item !== null && panel.item.hogKind !== "none"
            tint: panel.showsFile ? NodeColor.ofFile(panel.files[0]) : NodeColor.ofNode(panel.node)
            title: panel.item?.hogTitle ?? ""
            risk: panel.item?.risk ?? ""
            riskTitle: panel.item?.riskTitle ?? ""
            riskSummary: panel.item?.riskSummary ?? ""
        }

        MetaChip {
            objectName: "contentsChip"
            visible: panel.showsNode && panel.node.isAggregate
            label: "Contents"
            // 64-bit integers are unknown to the qmllint of Qt 6.4.
            // qmllint disable type
            value: panel.node.smallFileCount + " small files"
            // qmllint enable type
        }

        PathBlock {
            objectName: "pathBlock"
            Layout.fillWidth: true
            visible: panel.item !== null
            path: panel.item?.path ?? ""
        }

        RowLayout {
            visible: panel.showsFiles || panel.showsNode
            spacing: 8

            BorderedButton {
                objectName: "revealButton"
                visible: panel.item !== null && !(panel.showsNode && panel.node.isAggregate)
                text: "Reveal"
                symbol: "folder.fill"
                onClicked: panel.appState.requestReveal(panel.item.url)
            }

            BorderedButton {
                objectName: "zoomInButton"
                visible: panel.showsNode && panel.node.canZoom
                text: "Zoom in"
                symbol: "arrow.up.left.and.arrow.down.right"
                isProminent: true
                tint: Theme.accent
                onClicked: panel.zoomRequested(panel.node)
            }

            BorderedButton {
                objectName: "inspectorTrashButton"
                text: "Trash"
                symbol: "trash.fill"
                tint: Theme.danger
                enabled: !panel.appState.isScanning
                onClicked: panel.appState.requestTrashSelected()
            }
        }
    }
}
