#include "Brisalon/Theme/Theme.h"

#include <QStringList>

namespace brisalon {

namespace {

QColor rgb(float red, float green, float blue)
{
    return QColor::fromRgbF(red, green, blue);
}

QColor white(float opacity)
{
    return QColor::fromRgbF(1, 1, 1, opacity);
}

QFont font(const QStringList& families, int size, int weight)
{
    QFont result;
    result.setFamilies(families);
    result.setPixelSize(size);
    result.setWeight(static_cast<QFont::Weight>(weight));
    // Full hinting makes small text of these families dark and uneven.
    result.setHintingPreference(QFont::PreferVerticalHinting);
    return result;
}

} // namespace

QColor Theme::sidebar()
{
    return rgb(0.065f, 0.072f, 0.088f);
}

QColor Theme::panel()
{
    return rgb(0.078f, 0.086f, 0.105f);
}

QColor Theme::well()
{
    return rgb(0.028f, 0.032f, 0.042f);
}

QColor Theme::elevated()
{
    return rgb(0.11f, 0.12f, 0.145f);
}

QColor Theme::text()
{
    return white(0.94f);
}

QColor Theme::textSecondary()
{
    return white(0.68f);
}

QColor Theme::muted()
{
    return white(0.42f);
}

QColor Theme::stroke()
{
    return white(0.07f);
}

QColor Theme::strokeStrong()
{
    return white(0.14f);
}

QColor Theme::accent()
{
    return rgb(0.22f, 0.62f, 0.98f);
}

QColor Theme::accentSoft()
{
    return faded(accent(), 0.16);
}

QColor Theme::danger()
{
    return rgb(1.0f, 0.42f, 0.48f);
}

QColor Theme::success()
{
    return rgb(0.28f, 0.88f, 0.66f);
}

QColor Theme::amber()
{
    return rgb(1.0f, 0.72f, 0.28f);
}

QColor Theme::windowBackground()
{
    return rgb(0.04f, 0.045f, 0.055f);
}

QColor Theme::backgroundTop()
{
    return rgb(0.05f, 0.06f, 0.08f);
}

QColor Theme::backgroundBottom()
{
    return rgb(0.03f, 0.035f, 0.05f);
}

QColor Theme::faded(const QColor& color, double opacity)
{
    QColor result = color;
    result.setAlphaF(static_cast<float>(opacity));
    return result;
}

QFont Theme::system(int size, int weight)
{
    static const QStringList families{"Inter",     "Inter Variable", "Cantarell",
                                      "Noto Sans", "DejaVu Sans",    "sans-serif"};
    return font(families, size, weight);
}

QFont Theme::rounded(int size, int weight)
{
    // The rounded family has no weight between its medium, which its package has as a
    // family of its own, and its bold, and is drawn lighter than the interface's. So its
    // bold stands for semibold, and its medium made bolder, which is heavier, for bold.
    static const QStringList medium{"Quicksand Medium", "Quicksand", "Nunito",
                                    "Varela Round",     "Inter",     "Noto Sans",
                                    "DejaVu Sans",      "sans-serif"};
    static const QStringList other = medium.mid(1);
    const bool isOfMedium = weight == QFont::Medium || weight >= QFont::Bold;
    return font(isOfMedium ? medium : other, size, weight);
}

QFont Theme::monospaced(int size, int weight)
{
    static const QStringList families{"JetBrains Mono", "Noto Sans Mono", "DejaVu Sans Mono",
                                      "monospace"};
    return font(families, size, weight);
}

QColor Theme::riskColor(Risk risk)
{
    switch (risk) {
    case Risk::safe:
        return success();
    case Risk::review:
        return amber();
    case Risk::caution:
        return danger();
    case Risk::unknown:
        break;
    }
    return muted();
}

} // namespace brisalon
