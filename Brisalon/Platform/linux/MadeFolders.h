#pragma once

#include "BrisalonCore/Descriptor.h"

#include <string>
#include <vector>

namespace brisalon {

/// The folders that were made for some purpose. Those that have come to nothing, being
/// empty, go with it.
class MadeFolders {
public:
    MadeFolders() = default;
    MadeFolders(const MadeFolders&) = delete;
    MadeFolders& operator=(const MadeFolders&) = delete;
    ~MadeFolders();

    /// Opens the folder of that name in `base`, made for the user alone if there is
    /// nothing of that name, for what `flags` of open(2) say. Invalid with the reason
    /// in errno.
    Descriptor openOrMake(const Descriptor& base, const std::string& name, int flags);

    /// Whether any had to be made.
    bool any() const noexcept { return !made_.empty(); }

private:
    struct Made {
        Descriptor base;
        std::string name;
    };
    std::vector<Made> made_;
};

} // namespace brisalon
