#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/App/DisplayText.h"

namespace brisalon {

void AppState::listSnapshots()
{
    const SnapshotListResult result = services_.snapshots.listLocalSnapshots();
    QList<LocalSnapshotValue> snapshots;
    for (const LocalSnapshot& snapshot : result.snapshots)
        snapshots.append(LocalSnapshotValue(snapshot));
    assign(snapshots_, std::move(snapshots), &AppState::snapshotsChanged);
    doSnapshotsAnswer_ = result.hasAnswered;
    assign(snapshotError_, displayText(result.errorText.value_or("")),
           &AppState::snapshotErrorChanged);
}

/// After something else, for which the user should not wait again and again.
void AppState::listSnapshotsAnew()
{
    if (doSnapshotsAnswer_)
        listSnapshots();
}

void AppState::setConfirmSnapshot(const LocalSnapshotValue& snapshot)
{
    assign(confirmSnapshot_, snapshot, &AppState::confirmSnapshotChanged);
}

void AppState::confirmPendingSnapshot()
{
    if (!confirmSnapshot_)
        return;
    const std::string token = confirmSnapshot_->dateToken;
    setConfirmSnapshot({});
    const auto failure = std::make_shared<std::optional<std::string>>(BackgroundTasks::noMemory());
    startWork([failure, token, service = services_.snapshots](
                  const BackgroundTasks::Task&) { *failure = service.deleteLocalSnapshot(token); },
              [this, failure, token](const std::stop_token&) {
                  if (*failure)
                      return setStatus(displayText(**failure));
                  setStatus(displayText("Deleted local snapshot " + token + "."));
                  listSnapshotsAnew();
              });
}

} // namespace brisalon
