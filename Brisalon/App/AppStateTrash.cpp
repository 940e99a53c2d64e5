#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/App/DisplayText.h"
#include "Brisalon/Platform/Disposal.h"
#include "BrisalonCore/ByteFormat.h"

namespace brisalon {

void AppState::requestTrashSelected()
{
    // What is asked for next takes the place of what is still being looked at.
    trashRequest_.request_stop();
    struct Question {
        TrashRequest request;
        QString refusal;
    };
    const auto question =
        std::make_shared<Question>(Question{{}, displayText(BackgroundTasks::noMemory())});
    trashRequest_ = startWork(
        [question, chosen = selection(), held = selected_](const BackgroundTasks::Task& task) {
            auto request = TrashRequest::make(chosen.urls(), chosen.bytes(), task.stop);
            question->refusal = chosen.trashRefusal(request.blockedCount);
            question->request = std::move(request);
        },
        [this, question](const std::stop_token& stop) {
            if (stop.stop_requested())
                return;
            if (question->request.urls.empty())
                setStatus(question->refusal);
            else
                setConfirmTrash(std::move(question->request));
        });
}

void AppState::confirmPendingTrash()
{
    if (!confirmTrash_)
        return;
    std::vector<TrashItem> items = std::move(confirmTrash_->items);
    dismissTrash();
    countWork(+1);
    trash_.moveToTrash(std::move(items), [this](CleanReport report) {
        countWork(-1);
        setLastClean(std::move(report));
        noteTrash();
    });
}

void AppState::noteTrash()
{
    if (lastClean_->movedCount == 0) {
        if (!lastClean_->failures.empty())
            setStatus(displayText(lastClean_->failures.front()));
        return;
    }
    setStatus(displayText("Moved " + std::to_string(lastClean_->movedCount) + " item(s) (" +
                          ByteFormat::string(lastClean_->movedBytes) + ") to Trash."));
    startScan(FileURL(scanRoot_));
}

void AppState::dismissTrash()
{
    setConfirmTrash(std::nullopt);
}

void AppState::setConfirmTrash(std::optional<TrashRequest> request)
{
    // Stored even when equal: it has recorded the items anew.
    const bool isEqual = confirmTrash_ == request;
    if (auto old = std::exchange(confirmTrash_, std::move(request)))
        disposeOf(std::move(old));
    if (!isEqual)
        emit confirmTrashChanged();
}

void AppState::setLastClean(std::optional<CleanReport> report)
{
    const bool isEqual = lastClean_ == report;
    if (auto old = std::exchange(lastClean_, std::move(report)))
        disposeOf(std::move(old));
    if (!isEqual)
        emit lastCleanChanged();
}

QString AppState::failureText() const
{
    // Of ten thousand failures a line shows no more than the first few.
    constexpr qsizetype enough = 2'000;
    QString text;
    if (!lastClean_)
        return text;
    for (const std::string& failure : lastClean_->failures) {
        if (text.size() > enough)
            break;
        if (!text.isEmpty())
            text += QStringLiteral(" · ");
        text += displayText(failure);
    }
    return text;
}

} // namespace brisalon
