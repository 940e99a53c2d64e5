#include "Brisalon/Map/BlockLabel.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/Theme/BoxBlur.h"
#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/ByteFormat.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace brisalon {

namespace {

/// The three texts of a label differ in these alone.
struct RunStyle {
    int size;
    QFont::Weight weight;
    double opacity;
    /// Fixed, so that which lines fit does not hang on the font found.
    double lineHeight;
};

constexpr RunStyle nameStyle{11, QFont::DemiBold, 1.0, 13};
constexpr RunStyle sizeStyle{10, QFont::Medium, 0.88, 12};
constexpr RunStyle hogStyle{9, QFont::Bold, 0.92, 11};

/// The dark halo behind the text: how far it reaches and how far below the text it
/// lies, in points, and its opacity (of 255) where the text is dense. Its blurred
/// coverage is multiplied, because that of thin strokes is well below a half; on the
/// lightest block colours, white text needs more.
constexpr double haloReach = 3;
constexpr double haloDrop = 0.5;
constexpr int haloStrength = 160;
constexpr int haloGain = 2;

/// Lays runs of text below one another in a box until a line does not fit.
class Flow {
public:
    explicit Flow(const QRectF& box) : box_(box), y_(box.top()) {}

    void append(const QString& text, const RunStyle& style)
    {
        if (full_)
            return;
        const QFont font = Theme::rounded(style.size, style.weight);
        const QFontMetricsF metrics(font);
        const double baseline =
            (style.lineHeight - metrics.ascent() - metrics.descent()) / 2 + metrics.ascent();

        QTextLayout layout(text, font);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        qsizetype start = 0;
        while (start < text.size()) {
            if (y_ + style.lineHeight > box_.bottom()) {
                full_ = true;
                break;
            }
            QTextLine line = layout.createLine();
            if (!line.isValid())
                break;
            line.setLineWidth(box_.width());
            const qsizetype end = line.textStart() + line.textLength();
            const bool cut = end < text.size() && y_ + 2 * style.lineHeight > box_.bottom();
            QString shown = cut ? metrics.elidedText(text.mid(start), Qt::ElideRight, box_.width())
                                : text.mid(start, end - start).trimmed();
            shown = withoutBreaks(shown);
            lines_.push_back({shown,
                              font,
                              style.opacity,
                              {box_.left(), y_ + baseline},
                              metrics.horizontalAdvance(shown)});
            y_ += style.lineHeight;
            start = end;
        }
        layout.endLayout();
    }

    std::vector<LabelLine> take() { return std::move(lines_); }

private:
    QRectF box_;
    double y_;
    bool full_ = false;
    std::vector<LabelLine> lines_;
};

/// `value` × `factor` ÷ 255, rounded.
int scaled(int value, int factor)
{
    const int product = value * factor + 128;
    return (product + (product >> 8)) >> 8;
}

} // namespace

std::vector<LabelLine> BlockLabel::lines(const FileNode& node, const QRectF& cell)
{
    if (!(cell.width() > 64 && cell.height() > 28))
        return {};
    Flow flow(cell.adjusted(8, 7, -8, -7));
    flow.append(breakable(displayText(node.name())), nameStyle);
    if (cell.height() > 44)
        flow.append(QString::fromStdString(ByteFormat::string(node.allocatedSize())), sizeStyle);
    if (cell.height() > 58 && node.hogKind() != HogKind::none) {
        const std::string_view hog = title(node.hogKind());
        flow.append(QString::fromUtf8(hog.data(), static_cast<qsizetype>(hog.size())), hogStyle);
    }
    return flow.take();
}

void BlockLabel::paint(const std::vector<LabelLine>& lines, MapLayers& layers, double ratio)
{
    if (lines.empty())
        return;
    QRectF extent;
    for (const LabelLine& line : lines) {
        const QFontMetricsF metrics(line.font);
        extent |= QRectF(line.baseline.x(), line.baseline.y() - metrics.ascent(), line.width,
                         metrics.ascent() + metrics.descent());
    }
    const int reach = std::max(static_cast<int>(std::lround(haloReach * ratio)), 1);
    const int drop = std::max(static_cast<int>(std::lround(haloDrop * ratio)), 1);
    const int margin = reach + drop;
    const QRect area = QRectF(extent.topLeft() * ratio, extent.size() * ratio)
                           .toAlignedRect()
                           .adjusted(-margin, -margin, margin, margin) &
                       layers.bright.rect();

    QImage text(area.size(), QImage::Format_ARGB32_Premultiplied);
    text.fill(Qt::transparent);
    QPainter painter(&text);
    painter.translate(-area.topLeft());
    painter.scale(ratio, ratio);
    for (const LabelLine& line : lines) {
        painter.setFont(line.font);
        painter.setPen(QColor::fromRgbF(1, 1, 1, static_cast<float>(line.opacity)));
        painter.drawText(line.baseline, line.text);
    }
    painter.end();

    QImage halo = text.convertToFormat(QImage::Format_Alpha8);
    boxBlur(halo, reach);
    for (QImage* layer : {&layers.bright, &layers.dimmed}) {
        for (int y = 0; y < area.height(); ++y) {
            const QRgb* from = reinterpret_cast<const QRgb*>(text.constScanLine(y));
            const uchar* dark = halo.constScanLine(std::max(y - drop, 0));
            QRgb* to = reinterpret_cast<QRgb*>(layer->scanLine(area.top() + y)) + area.left();
            for (int x = 0; x < area.width(); ++x) {
                const int dense = std::min(haloGain * dark[x], 255);
                const int light = 255 - scaled(dense, haloStrength);
                const int through = scaled(255 - qAlpha(from[x]), light);
                to[x] = qRgb(qRed(from[x]) + scaled(qRed(to[x]), through),
                             qGreen(from[x]) + scaled(qGreen(to[x]), through),
                             qBlue(from[x]) + scaled(qBlue(to[x]), through));
            }
        }
    }
}

} // namespace brisalon
