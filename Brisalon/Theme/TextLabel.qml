import QtQuick

// A text of the interface. Always plain: names come from the disk, and one that
// looks like markup must be read as it is.
Text {
    textFormat: Text.PlainText
}
