#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace brisalon {

/// What the mounts at and below a scan's root mean for the map of it, as they were when
/// the scan began. Paths are those at which the scan meets them.
struct MountReport {
    /// How many places `omitted` lists at most.
    static constexpr std::size_t limit = 100;

    /// Why a place is not entered; what says most about missing bytes first.
    enum class Reason : std::uint8_t {
        mayHang,   ///< answered over a network or by a program
        onDemand,  ///< whatever it is, it would be mounted by being entered
        elsewhere, ///< what it shows is part of the map in another place
        behind,    ///< lies in a place that is not entered
        kernel,    ///< the kernel's own data, which takes no space
    };

    struct Place {
        std::string path;
        /// Of the file system; empty for a folder that is not a mount of its own.
        std::string type;
        Reason reason = Reason::kernel;
        /// Where the scan meets what it shows, or the first part of it.
        std::string elsewhere = {};
        /// Whether it shows a volume other than the root's, which can be asked without
        /// delay how full it is.
        bool isLocalVolume = false;

        friend bool operator==(const Place&, const Place&) = default;
    };
    /// In the order of the reasons, then of the paths. Of the kernel's mounts in one
    /// another only the outermost.
    std::vector<Place> omitted;
    std::size_t omittedCount = 0;

    /// Whether the root shows a volume from its top, so that the map can be compared with
    /// what the volume has in use.
    bool isWholeVolume = false;

    /// A mount that the scan enters, on another volume than the folder round it, when one
    /// of the two is the root's. No more than there are mounts.
    struct Crossing {
        std::string path;
        bool isBack = false; ///< to the root's volume

        friend bool operator==(const Crossing&, const Crossing&) = default;
    };
    std::vector<Crossing> crossings;
};

} // namespace brisalon
