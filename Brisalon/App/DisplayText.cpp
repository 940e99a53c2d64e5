#include "Brisalon/App/DisplayText.h"

namespace brisalon {

namespace {

// Invisible: one invites the end of a line, the other forbids it.
constexpr QChar zeroWidthSpace(0x200b);
constexpr QChar wordJoiner(0x2060);

} // namespace

QString displayText(std::string_view bytes)
{
    QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    for (QChar& character : text) {
        if (character.category() == QChar::Other_Control ||
            character.category() == QChar::Separator_Line ||
            character.category() == QChar::Separator_Paragraph)
            character = u' ';
    }
    return text;
}

QString breakable(const QString& name)
{
    QString result;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const bool isBeforeDigit = i + 1 < name.size() && name[i + 1].isDigit();
        const bool isDot = name[i] == u'.' && i > 0;
        if (isDot && !(isBeforeDigit && name[i - 1].isDigit()))
            result += zeroWidthSpace;
        result += name[i];
        if (name[i] == u'_' || name[i] == u'-')
            result += zeroWidthSpace;
        // Left alone, a line would rather end behind the dot.
        if (isDot && isBeforeDigit)
            result += wordJoiner;
    }
    return result;
}

QString withoutBreaks(QString text)
{
    return text.remove(zeroWidthSpace).remove(wordJoiner);
}

QString displayPath(std::string_view path)
{
    // Any path that the system takes in one piece is shown whole.
    constexpr std::size_t longest = 4096;
    constexpr std::size_t end = longest / 2;
    if (path.size() <= longest)
        return displayText(path);
    return displayText(path.substr(0, end)) + QChar(0x2026) +
           displayText(path.substr(path.size() - end));
}

} // namespace brisalon
