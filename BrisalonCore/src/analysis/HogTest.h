#pragma once

#include "BrisalonCore/HogKind.h"

#include <cstdint>
#include <string_view>

namespace brisalon::detail {

/// One test of the classifier: a plain text comparison with the lower-cased path
/// or its lower-cased last component, and the kind that it gives.
struct HogTest {
    enum class Where : std::uint8_t {
        nameIs,       ///< the last component is this text
        nameEndsWith, ///< the last component ends with it
        pathContains, ///< the path contains it, with no regard to where components end
    };

    Where where;
    std::string_view text;
    HogKind kind;

    /// Whether the test can be answered one component and one byte at a time.
    ///
    /// A path's text starts with a slash, so only its last component may be a
    /// mere part of a component of the path. Texts are lower-case ASCII: of all
    /// other characters only U+212A lowers into one of those. U+0130 lowers to
    /// "i" and a combining dot, which would matter to a text that ends in "i".
    /// Components are looked up by their two bytes at either end, so they have two
    /// or more, and the outermost is no k, which may be three bytes in a name.
    constexpr bool isWellFormed() const
    {
        for (const char c : text)
            if (c < ' ' || c > '~' || (c >= 'A' && c <= 'Z'))
                return false;
        if (text.ends_with('i'))
            return false;
        if (where != Where::pathContains)
            return isComponent(text);
        if (!text.starts_with('/'))
            return false;
        std::string_view rest = text.substr(1);
        for (auto end = rest.find('/'); end != std::string_view::npos; end = rest.find('/')) {
            if (!isComponent(rest.substr(0, end)))
                return false;
            rest.remove_prefix(end + 1);
        }
        return isComponent(rest) || (rest.empty() && text.size() > 1);
    }

private:
    static constexpr bool isComponent(std::string_view part)
    {
        return part.size() >= 2 && part.find('/') == std::string_view::npos &&
               part.front() != 'k' && part.back() != 'k';
    }
};

} // namespace brisalon::detail
