import QtQuick

// A sheet whose content is made anew each time that it is shown.
Sheet {
    id: sheet

    required property Component view

    // The Loader of Qt 6.4 refuses components that are bound to their context.
    contentItem: Loader {
        active: sheet.visible
        focus: true
        sourceComponent: sheet.view
    }
}
