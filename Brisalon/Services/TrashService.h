#pragma once

#include "Brisalon/Platform/BackgroundTasks.h"
#include "Brisalon/Platform/TrashItem.h"
#include "Brisalon/Services/CleanReport.h"

#include <functional>
#include <memory>
#include <vector>

namespace brisalon {

class Workspace;

/// Moves items to the Trash and reports how it went. Main thread.
class TrashService {
public:
    using Completion = std::function<void(CleanReport)>;

    /// The workspace outlives the service.
    explicit TrashService(Workspace& workspace);

    /// Measures the items, lets the workspace move them, and reports. Returns at
    /// once, works elsewhere, and never fails. `completion` is called on the main
    /// thread, never before this returns, and not at all once the service is
    /// destroyed; a move that has begun by then goes on without it.
    ///
    /// Several moves may be under way at once; each ends with its own report.
    void moveToTrash(std::vector<TrashItem> items, Completion completion);

private:
    Workspace& workspace_;
    /// Lives as long as the service, for those who may outlive it to look at.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
    BackgroundTasks tasks_;
};

} // namespace brisalon
