#pragma once

#include "BrisalonCore/Descriptor.h"

#include <string_view>

namespace brisalon::host {

/// The name of the file that tags its folder as a cache, by the Cache Directory Tagging
/// Standard (https://bford.info/cachedir/).
inline constexpr char cacheTagName[] = "CACHEDIR.TAG";

/// Whether this folder holds a tag: a regular file of that name, no link to one, that
/// begins with that standard's signature. False also when it cannot be read.
bool isCacheTagged(const Descriptor& folder) noexcept;

/// Whether any of the folders that hold the item at this absolute path, whose links are
/// resolved, is tagged.
bool isBelowCacheTag(std::string_view path);

} // namespace brisalon::host
