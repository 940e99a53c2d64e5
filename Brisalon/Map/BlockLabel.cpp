#include "Brisalon/Map/BlockLabel.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/Theme/Theme.h"
#include "BrisalonCore/ByteFormat.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

#include <array>
#include <cmath>
#include <cstdint>

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

/// A name is one text, whatever characters it has: a line feed in it must not
/// begin a line of its own.
QString withoutControls(QString text)
{
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control
            || character.category() == QChar::Separator_Line
            || character.category() == QChar::Separator_Paragraph)
            character = u' ';
    }
    return text;
}

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
            const bool cut =
                end < text.size() && y_ + 2 * style.lineHeight > box_.bottom();
            const QString shown = cut
                ? metrics.elidedText(text.mid(start), Qt::ElideRight, box_.width())
                : text.mid(start, end - start).trimmed();
            lines_.push_back({shown, font, style.opacity, {box_.left(), y_ + baseline},
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

/// The blurred shape of the text, as opacities of black.
class Halo {
public:
    Halo(const QImage& text, int radius)
        : width_(text.width()), height_(text.height()), radius_(radius),
          alpha_(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_)),
          scratch_(alpha_.size())
    {
        for (int y = 0; y < height_; ++y) {
            const QRgb* line = reinterpret_cast<const QRgb*>(text.constScanLine(y));
            for (int x = 0; x < width_; ++x)
                alpha_[index(x, y)] = static_cast<std::uint8_t>(qAlpha(line[x]));
        }
        for (int pass = 0; pass < 2; ++pass) {
            blur(alpha_, scratch_, width_, height_, 1, width_);
            blur(scratch_, alpha_, height_, width_, width_, 1);
        }
    }

    int at(int x, int y) const { return y < 0 ? 0 : alpha_[index(x, y)]; }

private:
    std::size_t index(int x, int y) const
    {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_)
               + static_cast<std::size_t>(x);
    }

    /// A box blur along one direction: `length` samples `step` apart, in `count`
    /// rows `rowStep` apart.
    void blur(const std::vector<std::uint8_t>& from, std::vector<std::uint8_t>& to, int length,
              int count, int step, int rowStep) const
    {
        const int window = 2 * radius_ + 1;
        for (int row = 0; row < count; ++row) {
            const auto sample = [&](int i) -> std::size_t {
                return static_cast<std::size_t>(row) * static_cast<std::size_t>(rowStep)
                       + static_cast<std::size_t>(i) * static_cast<std::size_t>(step);
            };
            int sum = 0;
            for (int i = 0; i < std::min(radius_, length); ++i)
                sum += from[sample(i)];
            for (int i = 0; i < length; ++i) {
                if (i + radius_ < length)
                    sum += from[sample(i + radius_)];
                if (i > radius_)
                    sum -= from[sample(i - radius_ - 1)];
                to[sample(i)] = static_cast<std::uint8_t>(sum / window);
            }
        }
    }

    int width_;
    int height_;
    int radius_;
    std::vector<std::uint8_t> alpha_;
    std::vector<std::uint8_t> scratch_;
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
    flow.append(withoutControls(displayText(node.name())), nameStyle);
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
    // The halo reaches two radii beyond the text.
    const int radius = std::max(static_cast<int>(std::lround(1.2 * ratio)), 1);
    const int margin = 2 * radius + 1;
    const QRect area = QRectF(extent.topLeft() * ratio, extent.size() * ratio)
                           .toAlignedRect()
                           .adjusted(-margin, -margin, margin, margin)
                       & layers.bright.rect();

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

    const Halo halo(text, radius);
    const int drop = std::max(static_cast<int>(std::lround(0.5 * ratio)), 1);
    constexpr int strength = 150; // of 255, where the text is dense
    for (QImage* layer : {&layers.bright, &layers.dimmed}) {
        for (int y = 0; y < area.height(); ++y) {
            const QRgb* from = reinterpret_cast<const QRgb*>(text.constScanLine(y));
            QRgb* to = reinterpret_cast<QRgb*>(layer->scanLine(area.top() + y)) + area.left();
            for (int x = 0; x < area.width(); ++x) {
                const int light = 255 - scaled(halo.at(x, y - drop), strength);
                const int through = scaled(255 - qAlpha(from[x]), light);
                to[x] = qRgb(qRed(from[x]) + scaled(qRed(to[x]), through),
                             qGreen(from[x]) + scaled(qGreen(to[x]), through),
                             qBlue(from[x]) + scaled(qBlue(to[x]), through));
            }
        }
    }
}

} // namespace brisalon
