pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Interface
import Brisalon.Theme

// What of the map may be cleared, kind by kind: the content of a sheet. Made anew each
// time, so that it begins at its top.
AnswerView {
    id: view

    objectName: "whatMayGoView"
    title: "What May Go"
    explanation: places.explanation
    figure: places.safeText
    figureLabel: "safe to remove"
    figureColor: Theme.success

    function show(row: int) {
        closed();
        places.show(row);
    }

    ListView {
        id: list

        objectName: "placesList"
        width: parent.width
        height: Math.min(contentHeight + bottomMargin, view.contentLimit)
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        spacing: 4
        bottomMargin: 16
        visible: count > 0
        activeFocusOnTab: true
        // The sums of a large tree come later than the sheet.
        onCountChanged: focus = count > 0
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        highlightResizeDuration: 0
        Keys.onSpacePressed: view.show(currentIndex)
        Keys.onReturnPressed: view.show(currentIndex)
        Keys.onEnterPressed: view.show(currentIndex)
        Accessible.role: Accessible.List
        Accessible.name: view.title

        model: WhatMayGo {
            id: places

            appState: view.appState
        }

        ThinScrollBar.vertical: ThinScrollBar {}

        delegate: Column {
            id: cell

            required property largeFileEntry entry
            required property hogSum sum
            required property bool isFirst
            required property int index

            width: ListView.view.width
            Accessible.ignored: true

            RowLayout {
                x: 24
                width: parent.width - 48
                visible: cell.isFirst
                Accessible.role: Accessible.StaticText
                Accessible.name: cell.sum.spokenText

                HogSummary {
                    Layout.topMargin: 16
                    Layout.bottomMargin: 10
                    Layout.fillWidth: true
                    item: cell.entry
                }

                ColumnLayout {
                    Layout.topMargin: 16
                    Layout.bottomMargin: 10
                    Layout.alignment: Qt.AlignTop
                    spacing: 4

                    DigitText {
                        Layout.alignment: Qt.AlignRight
                        text: cell.sum.sizeText
                        font: Theme.rounded(Theme.title3, Font.Bold)
                        color: Theme.text
                        Accessible.ignored: true
                    }

                    TextLabel {
                        Layout.alignment: Qt.AlignRight
                        text: cell.sum.placesText
                        font: Theme.system(Theme.caption)
                        color: Theme.muted
                        Accessible.ignored: true
                    }
                }
            }

            ListRowStyle {
                id: row

                objectName: "place" + cell.index
                x: 24
                width: parent.width - 48
                isHovered: pointer.containsMouse
                Accessible.name: cell.entry.spokenText + ", " + cell.entry.folderPath
                Accessible.focusable: true
                Accessible.onPressAction: view.show(cell.index)

                content: [
                    ItemWords {
                        name: cell.entry.name
                        place: cell.entry.folderPath
                    },
                    DigitText {
                        text: cell.entry.sizeText
                        font: Theme.rounded(Theme.caption, Font.DemiBold)
                        color: Theme.textSecondary
                        Accessible.ignored: true
                    }
                ]

                MouseArea {
                    id: pointer

                    anchors.fill: parent
                    hoverEnabled: true
                    onClicked: view.show(cell.index)
                }

                FocusRing {
                    visible: cell.activeFocus
                    cornerRadius: 9
                    outset: -1
                }
            }
        }
    }
}
