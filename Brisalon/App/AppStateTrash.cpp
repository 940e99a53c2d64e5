#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

namespace brisalon {

void AppState::requestTrashSelected()
{
    std::vector<FileURL> urls;
    if (!selectedLargeFileIDs_.empty()) {
        for (const LargeFileEntry& entry : selectedLargeFileEntries())
            urls.push_back(entry.url);
    } else if (selected_) {
        if (selected_->kind().isAggregate()) {
            const FileURLList sources = selected_->aggregateSources();
            urls.assign(sources.begin(), sources.end());
            if (urls.empty())
                return setStatus(QStringLiteral("Zoom in to delete individual small files."));
        } else {
            urls.push_back(selected_->url());
        }
    }

    TrashRequest request = TrashRequest::make(urls, selectedBytes());
    if (!request.urls.empty())
        setConfirmTrash(std::move(request));
    else if (request.blockedCount > 0)
        setStatus(QStringLiteral("Those paths are protected and will not be deleted."));
    else
        setStatus(QStringLiteral("Select a file or folder first."));
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

QString AppState::trashTitle() const
{
    if (!confirmTrash_)
        return QStringLiteral("Move to Trash?");
    return QStringLiteral("Move %1 item(s) to Trash?").arg(confirmTrash_->urls.size());
}

QString AppState::trashMessage() const
{
    if (!confirmTrash_)
        return {};
    QString message = QStringLiteral("This will move %1 to Trash so you can restore it if needed.")
                          .arg(displayText(ByteFormat::string(confirmTrash_->bytes)));
    if (confirmTrash_->blockedCount >= 1)
        message +=
            QStringLiteral(" %1 protected path(s) were skipped.").arg(confirmTrash_->blockedCount);
    return message;
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
