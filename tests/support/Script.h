#pragma once

#include "support/TemporaryTree.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace brisalon::tests {

/// Writes an executable of the shell's language into the tree; returns its path.
inline std::string script(const TemporaryTree& tree, std::string_view name, std::string_view body)
{
    const std::string path = tree.at(name);
    std::ofstream(path) << "#!/bin/sh\n" << body << '\n';
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
}

inline std::string contents(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace brisalon::tests
