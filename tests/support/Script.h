#pragma once

#include "support/Files.h"
#include "support/TemporaryTree.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace brisalon::tests {

/// Writes an executable of the shell's language into the tree; returns its path.
inline std::string script(const TemporaryTree& tree, std::string_view name, std::string_view body)
{
    tree.write(name, "#!/bin/sh\n" + std::string(body) + '\n');
    std::filesystem::permissions(tree.at(name), std::filesystem::perms::owner_all);
    return tree.at(name);
}

} // namespace brisalon::tests
