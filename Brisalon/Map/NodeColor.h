#pragma once

#include "Brisalon/App/CoreValues.h"
#include "BrisalonCore/HogKind.h"

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <string_view>

namespace brisalon {

/// The one source of an item's colour: blocks, legend, rows and swatches.
///
/// A known hog has a fixed colour for its kind; everything else gets a hue from
/// its name, so neighbours differ while each keeps its colour from one launch
/// to the next. Opaque sRGB. No state; any thread. A singleton in QML, which never
/// sees the bytes of a name and hands over the item instead.
class NodeColor : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// `name` is the item's name as bytes; it matters for HogKind::none alone.
    static QColor color(HogKind kind, std::string_view name);

    /// The colour that follows from a name: its hue is a whole degree, taken
    /// from Bernstein's djb2 hash (h × 33 + byte, 64 bits, wrapping) of the
    /// bytes exactly as they are. The empty name has hue 341.
    static QColor hashed(std::string_view name);

    /// The same of an item as QML has it.
    Q_INVOKABLE static QColor ofFile(const brisalon::LargeFileEntry& file);
};

} // namespace brisalon
