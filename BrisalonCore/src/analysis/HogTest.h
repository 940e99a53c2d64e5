#pragma once

#include "BrisalonCore/HogKind.h"

#include <cstdint>
#include <string_view>

namespace brisalon::detail {

/// Takes the first component off the text of a path that begins with a slash.
constexpr std::string_view takeComponent(std::string_view& path) noexcept
{
    const auto end = path.find('/', 1);
    const std::string_view component = path.substr(1, end - (end != std::string_view::npos));
    path.remove_prefix(end == std::string_view::npos ? path.size() : end);
    return component;
}

/// One test of the classifier, a row of its tables: a text that is compared with the
/// lower-cased path or its lower-cased last component, and the kind that it gives.
struct HogTest {
    enum class Where : std::uint8_t {
        nameIs,       ///< the last component is this text
        nameEndsWith, ///< the last component ends with it
        pathContains, ///< the path contains it, with no regard to where components end
        /// The item has this path below whatever folder, or lies below such an item.
        /// Whole components: "*" stands for any one, "**" for any number of them.
        within,
        tagged, ///< the item or a folder above it is tagged as a cache; no text
    };

    Where where;
    std::string_view text;
    HogKind kind;

    /// Throws a sentence for what cannot be told from one component at a time, and from
    /// the bytes at its ends whether it is worth a closer look. The tables are constants,
    /// so such a row does not compile and the compiler shows the sentence.
    constexpr HogTest(Where place, std::string_view wanted, HogKind given)
        : where(place), text(wanted), kind(given)
    {
        for (const char c : text)
            if (c < ' ' || c > '~' || (c >= 'A' && c <= 'Z'))
                throw "a hog's text is lower-case ASCII: it is compared with lower-cased names";
        switch (where) {
        case Where::nameIs:
        case Where::nameEndsWith:
            checkName(text);
            if (text.find('/') != std::string_view::npos)
                throw "the text of a name holds no slash";
            break;
        case Where::pathContains:
        case Where::within:
            checkPath();
            break;
        case Where::tagged:
            if (!text.empty())
                throw "the tag has no text: its row ranks tagged folders among the others";
            break;
        }
    }

private:
    static constexpr bool isWildcard(std::string_view part) { return part == "*" || part == "**"; }

    static constexpr void checkName(std::string_view name)
    {
        if (name.size() < 2)
            throw "a name has two characters or more: it is looked up by two at either end";
        if (name.find('*') != std::string_view::npos)
            throw "a star stands for whole components, and only in a row of the kind within";
    }

    constexpr void checkPath() const
    {
        if (!text.starts_with('/') || text.ends_with('/'))
            throw "the text of a path begins with a slash and does not end with one";
        // U+0130 lowers to an "i" and a combining dot: to the text's end and more.
        if (where == Where::pathContains && text.ends_with('i'))
            throw "a text that goes on inside a name ends in no i: one with a dot would fit too";
        std::string_view previous = "*";
        for (std::string_view rest = text; !rest.empty();) {
            const std::string_view part = takeComponent(rest);
            if (where != Where::within || !isWildcard(part))
                checkName(part);
            else if (isWildcard(previous) || rest.empty())
                throw "a star stands between two names";
            previous = part;
        }
    }
};

} // namespace brisalon::detail
