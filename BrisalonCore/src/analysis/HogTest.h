#pragma once

#include "BrisalonCore/HogKind.h"

#include <cstddef>
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
    /// Components have two bytes or more, since names are looked up by two.
    constexpr bool isWellFormed() const
    {
        const bool isPath = where == Where::pathContains;
        std::size_t length = isPath ? 2 : 0; // of the component so far
        for (const char c : text) {
            if (c < ' ' || c > '~' || (c >= 'A' && c <= 'Z'))
                return false;
            if (c != '/')
                ++length;
            else if (isPath && length >= 2)
                length = 0;
            else
                return false;
        }
        if (isPath && (!text.starts_with('/') || text.size() < 2))
            return false;
        return !text.ends_with('i') && (length >= 2 || (isPath && length == 0));
    }
};

} // namespace brisalon::detail
