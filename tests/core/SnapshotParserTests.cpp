#include "BrisalonCore/SnapshotParser.h"

#include "base/Utf8.h"

#include <gtest/gtest.h>

using namespace brisalon;

namespace {

using Snapshots = std::vector<LocalSnapshot>;

/// The token of the only snapshot.
std::string tokenIn(std::string_view output)
{
    const Snapshots found = SnapshotParser::parse(output);
    return found.size() == 1 ? found.front().dateToken : std::string(found.size(), '?');
}

TEST(SnapshotParser, TheFirstTokenAnywhereInALine)
{
    for (const auto& [line, token] :
         {std::pair("2024-01-15-123456 2024-01-16-123456", "2024-01-15-123456"),
          {"992024-99-15-1234567", "2024-99-15-123456"},
          {"2024-01-2024-01-15-123456", "2024-01-15-123456"},
          {"\xFF\xC3 2024-01-15-123456\xE2\x80", "2024-01-15-123456"}})
        EXPECT_EQ(tokenIn(line), token);
    for (const char* line :
         {"", "\n \r\n\t", "2024-01-15-12345", "2024-1-15-123456", "2024\u201001-15-123456",
          "2024-01-15-12345x", "2024-01-15-\n123456", "202\xC0\xB4-01-15-123456"})
        EXPECT_EQ(tokenIn(line), "") << line;
}

TEST(SnapshotParser, LineBreaksAndTheWhiteSpaceAroundLines)
{
    const std::string token = "2024-01-15-123456";
    for (const char* lineBreak : {"\n", "\r", "\r\n", "\v", "\f", "\u0085", "\u2028", "\u2029"})
        EXPECT_EQ(SnapshotParser::parse("a " + token + lineBreak + token + " b" + lineBreak),
                  (Snapshots{{token, "a " + token}, {token, token + " b"}}));
    for (const char* space :
         {" ", "\t", "\u00A0", "\u1680", "\u2000", "\u200A", "\u202F", "\u205F", "\u3000"}) {
        const std::string line = "x " + std::string(space) + token;
        EXPECT_EQ(SnapshotParser::parse(space + line + space + space), (Snapshots{{token, line}}));
    }
    // Neither a break nor a space: control characters and format characters.
    for (const char* other : {"\x1C", "\x1F", "\u200B", "\uFEFF", "\u180E"})
        EXPECT_EQ(SnapshotParser::parse(other + token + other),
                  (Snapshots{{token, other + token + other}}));
}

TEST(SnapshotParser, DigitsOfAnyScript)
{
    for (const char* token : {"٢٠٢٤-٠١-١٥-١٢٣٤٥٦", "２０２４-01-１５-123456",
                              "\U0001D7D0\U0001D7CE\U0001D7D0\U0001D7D2-01-15-12345\U0001FBF9"})
        EXPECT_EQ(tokenIn(std::string("a") + token + "b"), token);
    // Numbers that are no decimal digits; the neighbours of digits.
    for (const char* other : {"²", "½", "①", "Ⅳ", "四", "\u0660\u066A", ":", "/", "\u065F"})
        EXPECT_EQ(tokenIn(std::string("202") + other + "-01-15-123456"), "") << other;
}

TEST(Utf8, IsStrict)
{
    for (const char* text : {"", "a", "\x7F", "\u0080", "\u07FF", "\u0800", "\uD7FF", "\uE000",
                             "\uFFFF", "\U00010000", "\U0010FFFF", "aä€😀"})
        EXPECT_TRUE(detail::isUtf8(text)) << text;
    for (const char* text : {"\x80", "\xC3", "\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x9F\xBF",
                             "\xE2\x82", "\xED\xA0\x80", "\xED\xBF\xBF", "\xF0\x8F\xBF\xBF",
                             "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xF8\x88\x80\x80\x80", "\xFE",
                             "\xFF", "abc\xE2\x82(", "\xF0\x9F\x98"})
        EXPECT_FALSE(detail::isUtf8(text)) << testing::PrintToString(text);
}

TEST(LocalSnapshot, FormattedDate)
{
    for (const char* token : {"2024-01-15-123456", "2024--01-15-123456", "-2024-01-15-123456-"})
        EXPECT_EQ(LocalSnapshot::formattedDate(token), "2024-01-15 · 12:34");
    EXPECT_EQ(LocalSnapshot::formattedDate("a-b-c-uvwxyz-rest"), "a-b-c · uv:wx");
    EXPECT_EQ(LocalSnapshot::formattedDate("٢٠٢٤-٠١-١٥-١٢٣٤٥٦"), "٢٠٢٤-٠١-١٥ · ١٢:٣٤");
    for (const char* token : {"2024-01-15", "2024-01-15-", "2024-01-15-1234", "2024-01-15-1234567",
                              "", "-", "abc", "2024-01-15-12ä4"})
        EXPECT_EQ(LocalSnapshot::formattedDate(token), token);
}

} // namespace
