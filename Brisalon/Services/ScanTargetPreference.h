#pragma once

#include "BrisalonCore/FileURL.h"

#include <cstdint>

namespace brisalon {

class DefaultsStore;

/// Which kind of target was scanned last, remembered between runs so that the
/// welcome screen can mark it. Main thread, like the store.
struct ScanTargetPreference {
    enum class Kind : std::uint8_t { customFolder, home, thisMac };

    Kind kind = Kind::home;
    /// The folder of `customFolder`; empty for the other kinds.
    FileURL folder;

    /// What was saved last, without asking whether it still exists; `home` when
    /// nothing was, or nothing that can be understood.
    static ScanTargetPreference load(const DefaultsStore& store);

    /// Remembers the target that a scan of `root` stands for. Paths are compared
    /// with their symbolic links resolved, and stored so; `home` and `thisMac`
    /// leave the path of the last custom folder alone.
    static void save(const FileURL& root, DefaultsStore& store);

    /// Whether a target was ever saved.
    static bool isSaved(const DefaultsStore& store);

    friend bool operator==(const ScanTargetPreference&, const ScanTargetPreference&) = default;
};

} // namespace brisalon
