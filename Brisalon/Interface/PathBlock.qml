import QtQuick
import QtQuick.Layouts
import Brisalon.Theme

// Where an item lies, to be read and copied. A path of more than a few lines is
// scrolled to, so that what stands below keeps its place.
ColumnLayout {
    id: block

    required property string path

    readonly property int shownLines: 3

    spacing: 6

    SectionLabel {
        title: "Path"
    }

    ContinuousRectangle {
        id: well

        objectName: "pathWell"
        Layout.fillWidth: true
        implicitHeight: flickable.height + 20
        radius: 8
        color: Theme.well

        Flickable {
            id: flickable

            x: 10
            y: 10
            width: parent.width - 20
            height: Math.min(pathText.implicitHeight,
                             Math.ceil(metrics.lineSpacing) * block.shownLines)
            contentWidth: width
            contentHeight: pathText.implicitHeight
            boundsBehavior: Flickable.StopAtBounds
            interactive: contentHeight > height
            clip: interactive

            // Beside the text and not on it.
            ThinScrollBar.vertical: ThinScrollBar {
                parent: well
                x: well.width - width - 1
                y: flickable.y
                height: flickable.height
            }

            TextEdit {
                id: pathText

                objectName: "pathText"
                width: flickable.width
                text: block.path
                horizontalAlignment: TextEdit.AlignLeft
                wrapMode: TextEdit.WrapAnywhere
                readOnly: true
                selectByMouse: true
                selectByKeyboard: true
                activeFocusOnTab: true
                font: Theme.monospaced(Theme.caption)
                color: Theme.textSecondary
                selectionColor: Theme.faded(Theme.accent, 0.45)
                selectedTextColor: Theme.text
                Accessible.role: Accessible.EditableText
                Accessible.readOnly: true
                Accessible.name: "Path"

                onTextChanged: {
                    deselect();
                    flickable.contentY = 0;
                }
                onCursorRectangleChanged: {
                    const top = cursorRectangle.y;
                    const bottom = top + cursorRectangle.height;
                    if (top < flickable.contentY)
                        flickable.contentY = top;
                    else if (bottom > flickable.contentY + flickable.height)
                        flickable.contentY = bottom - flickable.height;
                }
            }
        }

        FontMetrics {
            id: metrics

            font: pathText.font
        }

        FocusRing {
            visible: pathText.activeFocus
            cornerRadius: well.radius
            outset: 2
        }
    }
}
