#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Paths as text: bytes between slashes. Nothing here asks the file system for items,
/// and nothing but components() makes up for doubled or closing slashes: the other
/// functions take absolute, normalised paths ("/" or "/a/b"). Any thread.
namespace brisalon::paths {

/// The names between the slashes, in order; empty ones are left out.
std::vector<std::string_view> components(std::string_view path);

/// "/" and each folder on the way from there to `path`, itself included: "/", "/a",
/// "/a/b".
std::vector<std::string_view> way(std::string_view path);

/// Whether `path` is `folder` or lies below it. Goes by whole components: "/ab" does
/// not lie in "/a".
bool isWithin(std::string_view path, std::string_view folder) noexcept;

/// Whether `path` lies below `folder`.
bool isBelow(std::string_view path, std::string_view folder) noexcept;

/// The rest of `path`, which lies within `folder`, without a slash before it; empty
/// for the folder itself.
std::string_view relative(std::string_view path, std::string_view folder) noexcept;

/// The item of that name, or at that relative path, in the folder; the folder itself
/// for an empty name.
std::string joined(std::string_view folder, std::string_view name);

/// The path itself when it is absolute, else the same seen from the process's current
/// folder, or from "/" when that cannot be told.
std::string absolute(std::string_view path);

} // namespace brisalon::paths
