#pragma once

#include <chrono>
#include <optional>

namespace brisalon {

class DefaultsStore;

/// Small things that the interface remembers between runs. Every access reads or
/// writes the store. Main thread.
class UIPreferences {
public:
    using Date = std::chrono::system_clock::time_point;

    /// The store outlives this.
    explicit UIPreferences(DefaultsStore& store) : store_(store) {}

    /// Until when the request for Full Disk Access stays away; absent when it was
    /// never dismissed. Stored as seconds since 1970 (UTC), so exact to a double.
    std::optional<Date> fdaBannerDismissedUntil() const;
    /// Nothing removes the stored date.
    void setFDABannerDismissedUntil(std::optional<Date> date);

    /// Whether the user has zoomed into the map once, and needs no hint any more.
    bool hasSeenMapInteractionHint() const;
    void setHasSeenMapInteractionHint();

private:
    DefaultsStore& store_;
};

} // namespace brisalon
