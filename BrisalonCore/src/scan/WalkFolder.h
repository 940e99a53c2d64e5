#pragma once

#include "analysis/HogTrail.h"
#include "host/Folder.h"
#include "host/MountBarriers.h"
#include "model/NodeAssembly.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>

namespace brisalon::detail {

/// A folder on a walk, from when it is opened until everything below it is
/// finished. Its parent outlives it.
struct WalkFolder {
    WalkFolder* parent = nullptr; ///< null for the scan's root
    std::uint64_t nameOffset = 0; ///< where its name stands in the parent's names
    std::size_t slot = 0;         ///< which of the parent's children it is

    /// The package that this is, or lies in; null outside packages. Folders
    /// inside a package have no nodes: they add to the package's bytes.
    WalkFolder* package = nullptr;
    std::atomic<std::int64_t> packageBytes{0};

    /// Whether something in it, or in this package, is known to be missing.
    std::atomic<bool> hasGap{false};

    std::size_t depth = 0; ///< how many components its path has
    HogTrail trail = HogTrail::ofNoFolder();
    host::MountBarriers::Place mounts;

    SharedRef<NameBlock> names;
    SharedRef<ChildBlock> children;

    /// Subfolders whose own subtrees are not finished.
    std::atomic<std::size_t> unfinished{0};

    /// What OpenFolders knows of it; guarded by that.
    struct Access {
        std::shared_ptr<const host::OpenFolder> handle;
        std::optional<ItemIdentity> identity;   ///< once the handle was given up
        std::size_t unopened = 0;               ///< subfolders still to be opened
        std::list<WalkFolder*>::iterator place; ///< valid while there is a handle
    } access;

    const char* name() const noexcept { return parent->names->name(nameOffset); }
};

} // namespace brisalon::detail
