#pragma once

#include "BrisalonCore/Descriptor.h"

#include <string>
#include <string_view>

namespace brisalon {

/// What a move into a trash folder has begun, for whoever finds it cut short: a file
/// beside "files" and "info" that lists the information files that are about to be
/// made. It is locked for as long as its move lasts, and removed at its end; one that
/// nobody has locked was left by a program that did not come to that.
class TrashJournal {
public:
    TrashJournal() = default;
    TrashJournal(TrashJournal&&) noexcept = default;
    TrashJournal& operator=(TrashJournal&&) noexcept = default;
    ~TrashJournal();

    /// Starts one in the trash folder; 0, or why it cannot.
    int begin(const Descriptor& trash);

    /// Notes an information file of that name and text before it is made; 0, or why it
    /// cannot.
    int note(std::string_view infoName, std::string_view text);

    /// For flushing it.
    const Descriptor& file() const noexcept { return file_; }

    /// Ends the moves into this trash folder that were cut short: removes what they
    /// made in `info` for items that are not in `files`. The other items have arrived
    /// with all they need.
    static void recover(const Descriptor& trash, const Descriptor& files, const Descriptor& info);

private:
    Descriptor file_;
    Descriptor trash_;
    std::string name_;
};

} // namespace brisalon
