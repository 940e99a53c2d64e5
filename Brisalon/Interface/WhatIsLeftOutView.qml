pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Layouts
import Brisalon.App
import Brisalon.Interface
import Brisalon.Theme

// What the scanned volume has in use and the map does not show: the content of a sheet,
// made anew each time.
AnswerView {
    id: view

    objectName: "whatIsLeftOutView"
    title: "What the Map Leaves Out"
    explanation: rows.explanation
    figure: rows.missingText
    figureLabel: "not on the map"

    ListView {
        id: list

        objectName: "leftOutList"
        width: parent.width
        height: Math.min(contentHeight + topMargin + bottomMargin, view.contentLimit)
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        visible: count > 0
        activeFocusOnTab: true
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        highlightResizeDuration: 0
        topMargin: 8
        bottomMargin: 8
        Accessible.role: Accessible.List
        Accessible.name: view.title

        model: WhatIsLeftOut {
            id: rows

            appState: view.appState
        }

        ThinScrollBar.vertical: ThinScrollBar {}

        delegate: Item {
            id: row

            required property int rank
            required property string title
            required property string detail
            required property string value
            required property int index

            readonly property bool isItem: rank === WhatIsLeftOut.Item
            readonly property bool isSum: rank === WhatIsLeftOut.Sum

            objectName: "leftOut" + index
            width: ListView.view.width
            implicitHeight: layout.implicitHeight + (isItem ? 8 : 18)
            Accessible.role: Accessible.ListItem
            Accessible.name: title + (value !== "" ? ", " + value : "")
            Accessible.description: detail
            Accessible.focusable: true

            RowLayout {
                id: layout

                x: row.isItem ? 40 : 24
                y: row.isItem ? 2 : 9
                width: parent.width - x - 24
                spacing: 24

                ColumnLayout {
                    Layout.alignment: Qt.AlignTop
                    spacing: 3

                    TextLabel {
                        Layout.fillWidth: true
                        text: row.title
                        maximumLineCount: 1
                        elide: Text.ElideMiddle
                        font: row.isItem ? Theme.system(Theme.subheadline)
                                         : Theme.rounded(Theme.callout,
                                                         row.isSum ? Font.Bold : Font.Medium)
                        color: row.isItem ? Theme.textSecondary : Theme.text
                        Accessible.ignored: true
                    }

                    TextLabel {
                        Layout.fillWidth: true
                        visible: text !== ""
                        text: row.detail
                        wrapMode: Text.Wrap
                        font: Theme.system(Theme.caption)
                        color: Theme.muted
                        Accessible.ignored: true
                    }
                }

                DigitText {
                    Layout.alignment: Qt.AlignTop
                    text: row.value
                    font: row.isItem ? Theme.rounded(Theme.caption)
                                     : Theme.rounded(Theme.callout,
                                                     row.isSum ? Font.Bold : Font.Medium)
                    color: row.isSum ? Theme.text : Theme.textSecondary
                    Accessible.ignored: true
                }
            }

            FocusRing {
                anchors.leftMargin: 12
                anchors.rightMargin: 12
                visible: row.activeFocus
                cornerRadius: 9
                outset: -1
            }
        }
    }
}
