#pragma once

#include "support/TemporaryTree.h"

#include <cstdlib>
#include <string>

namespace brisalon::tests {

/// A small disk of its own, mounted for this process alone from a file "image" in
/// memory, which lies beside the folder that it is mounted on.
class LoopVolume {
public:
    /// With that file system: "ext4" or "btrfs".
    explicit LoopVolume(const std::string& type)
        : LoopVolume("truncate -s 128M \"$1\" && mkfs.$2 -q \"$1\"", type)
    {
    }
    /// What is found of another one where the power fails now.
    static LoopVolume afterPowerFailure(const LoopVolume& other)
    {
        return {"cp \"$2\" \"$1\"", other.memory_.at("image")};
    }

    /// False where the rights or the tools for it are missing.
    bool isMounted() const noexcept { return isMounted_; }
    /// The path of an item on the volume.
    std::string at(const std::string& relative) const { return path() + '/' + relative; }
    std::string path() const { return memory_.at("volume"); }

private:
    /// Makes the image by a command of the shell: "$1" is its path, "$2" the second.
    LoopVolume(const std::string& command, const std::string& argument)
    {
        memory_.folder("volume");
        const std::string whole = "exec 2>/dev/null; PATH=$PATH:/sbin:/usr/sbin; set -- '" +
                                  memory_.at("image") + "' '" + argument + "'; " + command +
                                  " && mount -o loop \"$1\" '" + path() + '\'';
        isMounted_ = memory_.isInMemory() && std::system(whole.c_str()) == 0;
    }

    TemporaryTree memory_{TemporaryTree::Storage::memory};
    bool isMounted_ = false;
};

} // namespace brisalon::tests
