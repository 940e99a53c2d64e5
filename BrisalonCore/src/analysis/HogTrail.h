#pragma once

#include "BrisalonCore/HogKind.h"

#include <cstdint>
#include <string_view>

namespace brisalon::detail {

/// What the classifier has to remember of a folder's path in order to classify
/// what lies in it: which path tests the path already passes, and which it
/// passes as soon as the next components fit.
///
/// A walk carries it from folder to folder, so classifying an item costs a look
/// at its name only; the result is exactly that of searching the whole path.
/// Names are bytes; lower-casing is exact for the tests' needles, which are
/// ASCII: of all characters only A–Z and U+212A (which lowers to k) can lower
/// into one that matters.
///
/// A small value; any thread.
class HogTrail {
public:
    /// The trail of a folder, given its whole path. The path need not be
    /// normalised; the empty one counts as "/".
    static HogTrail of(std::string_view path);

    /// The trail before the first component of a path that has no leading slash.
    static HogTrail ofNoFolder() noexcept;

    /// The trail of the folder of that name inside this one.
    HogTrail entering(std::string_view folderName) const;

    /// The kind of the item of that name inside this folder.
    HogKind classify(std::string_view name) const;

private:
    /// Which beginnings of the path tests' texts end at this folder, one bit each.
    using Beginnings = std::uint32_t;
    /// A test's place in the list of tests; the lowest that holds decides.
    using Order = std::uint8_t;

    struct Fit;
    class Index;
    class Tests;

    HogTrail(Beginnings reached, Order passed) noexcept : reached_(reached), passed_(passed) {}

    Beginnings reached_;
    Order passed_;
};

static_assert(sizeof(HogTrail) == 8, "every folder that waits to be walked holds one");

} // namespace brisalon::detail
