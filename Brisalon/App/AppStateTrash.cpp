#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

namespace brisalon {

void AppState::requestTrashSelected()
{
    const Selection chosen = selection();
    TrashRequest request = TrashRequest::make(chosen.urls(), chosen.bytes());
    if (request.urls.empty())
        setStatus(chosen.trashRefusal(request.blockedCount));
    else
        setConfirmTrash(std::move(request));
}

void AppState::confirmPendingTrash()
{
    if (!confirmTrash_)
        return;
    std::vector<TrashItem> items = std::move(confirmTrash_->items);
    dismissTrash();
    trash_.moveToTrash(std::move(items), [this](const CleanReport& report) { endTrash(report); });
}

void AppState::endTrash(const CleanReport& report)
{
    assign(lastClean_, std::optional(report), &AppState::lastCleanChanged);
    if (report.movedCount == 0) {
        if (!report.failures.empty())
            setStatus(displayText(report.failures.front()));
        return;
    }
    setStatus(displayText("Moved " + std::to_string(report.movedCount) + " item(s) (" +
                          ByteFormat::string(report.movedBytes) + ") to Trash."));
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
    confirmTrash_ = std::move(request);
    if (!isEqual)
        emit confirmTrashChanged();
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
