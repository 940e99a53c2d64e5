#pragma once

#include "support/TemporaryTree.h"

#include <string>

namespace brisalon::tests {

/// A small ext4 disk of its own, mounted for this process alone from a file in
/// memory.
class LoopVolume {
public:
    LoopVolume();
    /// What is found of another one where the power fails now.
    static LoopVolume afterPowerFailure(const LoopVolume& other);
    LoopVolume(const LoopVolume&) = delete;
    LoopVolume& operator=(const LoopVolume&) = delete;
    ~LoopVolume();

    /// False where the rights or the tools for it are missing.
    bool isMounted() const noexcept { return isMounted_; }
    /// The path of an item on the volume.
    std::string at(const std::string& relative) const { return memory_.at("volume/" + relative); }

private:
    /// Makes the image by that command of the shell, in which "$1" is its path.
    explicit LoopVolume(const std::string& command);

    TemporaryTree memory_{TemporaryTree::Storage::memory};
    bool isMounted_ = false;
};

} // namespace brisalon::tests
