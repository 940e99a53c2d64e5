#pragma once

#include "Brisalon/Platform/BundleInformation.h"

#include <map>

namespace brisalon {

/// A program of the given texts and place, for tools and tests.
class MemoryBundleInformation final : public BundleInformation {
public:
    std::map<std::string, std::string, std::less<>> texts;
    FileURL place;

    std::optional<std::string> text(std::string_view key) const override
    {
        const auto found = texts.find(key);
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
    FileURL url() const override { return place; }
};

} // namespace brisalon
