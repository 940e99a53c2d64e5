#pragma once

#include "BrisalonCore/FileURL.h"

#include <optional>
#include <string>
#include <string_view>

namespace brisalon {

/// What the desktop knows of the program itself. Main thread.
class BundleInformation {
public:
    /// The version that people know, and the number of the build.
    static constexpr std::string_view versionKey = "CFBundleShortVersionString";
    static constexpr std::string_view buildKey = "CFBundleVersion";

    BundleInformation() = default;
    BundleInformation(const BundleInformation&) = delete;
    BundleInformation& operator=(const BundleInformation&) = delete;
    virtual ~BundleInformation() = default;

    /// The text for a key; absent when there is none.
    virtual std::optional<std::string> text(std::string_view key) const = 0;

    /// Where the program is: what a user would drag somewhere to name it.
    virtual FileURL url() const = 0;
};

} // namespace brisalon
