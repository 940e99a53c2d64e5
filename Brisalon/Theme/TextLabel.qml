import QtQuick

// A text of the interface. Always plain: names come from the disk, and one that
// looks like markup must be read as it is. Always at its left, also a name that is
// written from the right: names in a list are looked for along one edge.
Text {
    textFormat: Text.PlainText
    horizontalAlignment: Text.AlignLeft
}
