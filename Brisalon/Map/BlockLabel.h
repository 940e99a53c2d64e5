#pragma once

#include "Brisalon/Map/MapLayers.h"
#include "BrisalonCore/FileNode.h"

#include <QFont>
#include <QRectF>
#include <QString>

#include <vector>

namespace brisalon {

/// One line of a block's label.
struct LabelLine {
    QString text;
    QFont font;
    /// Of the white that it is set in.
    double opacity;
    /// The left end of the baseline, in points from the map's top-left corner.
    QPointF baseline;
    double width;
};

/// The text in a block: its name, then its size in a cell taller than 44 points,
/// then the title of its hog kind (if it has one) in a cell taller than 58; none
/// at all unless the cell is wider than 64 points and taller than 28.
///
/// The text flows in the cell less 8 points at the sides and 7 above and below,
/// wrapped at that width. A line that does not fit whole is left out, with all
/// that follows; where that cuts a text short, the line before ends in an
/// ellipsis. Stateless; any thread, once a QGuiApplication exists.
class BlockLabel {
public:
    BlockLabel() = delete;

    /// The lines, top to bottom; empty when there is no label.
    static std::vector<LabelLine> lines(const FileNode& node, const QRectF& cell);

    /// Paints the lines into both layers, each on a soft dark halo that keeps
    /// white text readable on the light colours.
    static void paint(const std::vector<LabelLine>& lines, MapLayers& layers, double ratio);
};

} // namespace brisalon
