#pragma once

#include "BrisalonCore/Descriptor.h"

#include <cstddef>

namespace brisalon::host {

/// The name of the file that tags its folder as a cache, by the Cache Directory Tagging
/// Standard (https://bford.info/cachedir/).
inline constexpr char cacheTagName[] = "CACHEDIR.TAG";

/// Whether this folder holds a tag: a regular file of that name, no link to one, that
/// begins with that standard's signature. False also when it cannot be read.
bool isCacheTagged(const Descriptor& folder) noexcept;

/// Whether any of the `depth` folders above this one is tagged.
bool isBelowCacheTag(const Descriptor& folder, std::size_t depth);

} // namespace brisalon::host
