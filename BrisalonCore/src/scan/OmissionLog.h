#pragma once

#include "BrisalonCore/ScanOmissions.h"

#include <mutex>

namespace brisalon::detail {

/// Writes down what a walk's workers pass over. Told only where something fails, so that
/// it costs nothing where nothing does. Thread-safe.
class OmissionLog {
public:
    /// Null when nobody wants to know.
    explicit OmissionLog(ScanOmissions* omissions) noexcept : omissions_(omissions) {}

    void noteVanished();
    /// Asks for owner and mode of those that are listed.
    void noteUnreadable(const FileURL& folder);
    void noteSystemArea(const FileURL& item);

private:
    ScanOmissions* const omissions_;
    std::mutex mutex_;
};

} // namespace brisalon::detail
