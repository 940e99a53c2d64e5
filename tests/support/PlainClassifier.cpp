#include "support/PlainClassifier.h"

#include <algorithm>
#include <vector>

namespace brisalon::tests {

using detail::HogTest;

namespace {

constexpr std::string_view kelvinSign = "\xE2\x84\xAA";
constexpr std::string_view dottedCapitalI = "\xC4\xB0"; // lowers to two characters

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string lowered(std::string_view text)
{
    std::string result = replaced(std::string(text), kelvinSign, "k");
    result = replaced(std::move(result), dottedCapitalI, "i\xCC\x87");
    for (char& c : result)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + 32);
    return result;
}

/// What follows the slashes of a path.
std::vector<std::string_view> components(std::string_view path)
{
    std::vector<std::string_view> result;
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        path.remove_prefix(slash + 1);
        result.push_back(path.substr(0, path.find('/')));
    }
    return result;
}

using Components = std::span<const std::string_view>;

bool startsWith(Components path, Components wanted)
{
    if (wanted.empty())
        return true;
    if (wanted.front() == "**")
        return startsWith(path, wanted.subspan(1)) ||
               (!path.empty() && startsWith(path.subspan(1), wanted));
    return !path.empty() && (wanted.front() == "*" || wanted.front() == path.front()) &&
           startsWith(path.subspan(1), wanted.subspan(1));
}

bool isWithin(const std::string& path, std::string_view wanted)
{
    const auto names = components(path);
    const auto wantedNames = components(wanted);
    for (std::size_t i = 0; i < names.size(); ++i)
        if (startsWith(Components(names).subspan(i), wantedNames))
            return true;
    return false;
}

} // namespace

HogKind plainKind(std::span<const HogTest> tests, std::string_view path, bool isTagged)
{
    const std::string text = lowered(path);
    const std::string name = text.substr(text.rfind('/') + 1);
    const auto passes = [&](const HogTest& test) {
        switch (test.where) {
        case HogTest::Where::nameIs:
            return name == test.text;
        case HogTest::Where::nameEndsWith:
            return name.ends_with(test.text);
        case HogTest::Where::pathContains:
            return text.find(test.text) != std::string::npos;
        case HogTest::Where::within:
            return isWithin(text, test.text);
        case HogTest::Where::tagged:
            return isTagged;
        }
        return false;
    };
    const auto found = std::ranges::find_if(tests, passes);
    return found == tests.end() ? HogKind::none : found->kind;
}

std::string pathOf(std::span<const std::uint8_t> bytes, std::span<const HogTest> tests)
{
    std::vector<std::string_view> pieces{
        kelvinSign, dottedCapitalI, "\xE2\x84", "\xAA", "\xFF", "", "/",
    };
    for (const HogTest& test : tests) {
        for (const std::string_view name : components(test.text))
            pieces.push_back(name);
        pieces.push_back(test.text);
    }
    enum : unsigned { noSlash = 1, upperCase = 2, kelvin = 4, secondHalf = 8 };
    std::string path;
    unsigned style = 0;
    for (const unsigned byte : bytes) {
        if (byte < 32) {
            style = byte;
        } else if (byte < 128) {
            path += static_cast<char>(byte);
        } else {
            const auto index = (style & secondHalf) != 0 ? byte : byte - 128;
            std::string piece(pieces[index % pieces.size()]);
            if ((style & upperCase) != 0)
                for (char& c : piece)
                    c = static_cast<char>(c >= 'a' && c <= 'z' ? c - 32 : c);
            if ((style & kelvin) != 0)
                piece = replaced(replaced(std::move(piece), "k", kelvinSign), "K", kelvinSign);
            if ((style & noSlash) == 0 && !piece.starts_with('/'))
                path += '/';
            path += piece;
            style = 0;
        }
    }
    return path;
}

} // namespace brisalon::tests
