#pragma once

#include "Brisalon/Platform/Workspace.h"

#include <QObject>

#include <deque>
#include <set>
#include <string>
#include <vector>

namespace brisalon {

/// A workspace that writes down what it is asked for and touches nothing, for
/// tools and tests.
class MemoryWorkspace final : public Workspace {
public:
    // What to answer; may be set at any time before the answer is due.

    /// Paths of items that the Trash refuses, and what it says then.
    std::set<std::string> refusedPaths;
    std::string error;
    /// Addresses that do not open.
    std::set<std::string> refusedAddresses;
    /// Whether there is a file manager, and a terminal.
    bool startsPrograms = true;
    /// Moves stay under way until released; otherwise they end by themselves, soon
    /// after they were asked for.
    bool holdsMoves = false;

    // What was asked for.

    std::vector<std::vector<TrashItem>> requests;
    std::vector<FileURL> revealed;
    std::vector<FileURL> terminals;
    std::vector<std::string> addresses;

    /// Ends the oldest move that is under way, and calls its completion at once.
    /// False when there is none.
    bool releaseMove();

    void recycle(std::vector<TrashItem> items, Completion completion) override;
    void reveal(const FileURL& item, Started started) override;
    void openTerminal(const FileURL& folder, Started started) override;
    bool openAddress(std::string_view address) override;

private:
    struct Move {
        std::vector<TrashItem> items;
        Completion completion;
    };

    std::deque<Move> moves_;
    QObject context_;
};

} // namespace brisalon
