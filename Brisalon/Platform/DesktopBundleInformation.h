#pragma once

#include "Brisalon/Platform/BundleInformation.h"

namespace brisalon {

/// The running program: the version that it was built as, and its own file.
class DesktopBundleInformation final : public BundleInformation {
public:
    std::optional<std::string> text(std::string_view key) const override;
    FileURL url() const override;
};

} // namespace brisalon
