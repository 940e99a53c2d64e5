#include "Brisalon/App/ScanTask.h"

#include "BrisalonCore/LargeFiles.h"

#include <QCoreApplication>
#include <QEvent>

#include <exception>
#include <utility>

namespace brisalon {

namespace {

ScanTask::Finished finish(FileNode tree, const ScanTask::Request& request)
{
    const auto found = LargeFiles::topFiles(tree, request.largeFileLimit);
    QList<LargeFileEntry> largeFiles(found.begin(), found.end());
    if (request.previous && *request.previous == tree)
        return {request.previous, std::move(largeFiles)};
    return {FileNodeValue(std::move(tree)), std::move(largeFiles)};
}

ScanTask::Outcome run(const ScanTask::Scan& scan, const ScanTask::Request& request,
                      const DiskScanner::ProgressCallback& progress, std::stop_token cancellation)
{
    try {
        ScanResult result = scan(request.root, progress, std::move(cancellation));
        if (const ScanError* const error = std::get_if<ScanError>(&result))
            return *error;
        if (FileNode* const tree = std::get_if<FileNode>(&result))
            return finish(std::move(*tree), request);
        return TaskCancelled{};
    } catch (const std::exception& error) {
        return std::string(error.what());
    }
}

} // namespace

ScanTask::ScanTask(Scan scan, Request request, Handlers handlers)
    : handlers_(std::move(handlers)),
      thread_([this, scan = std::move(scan),
               request = std::move(request)](std::stop_token cancellation) {
          const auto report = [this](const ScanProgress& progress) { post(progress); };
          post(run(scan, request, report, std::move(cancellation)));
      })
{
}

void ScanTask::post(Report report)
{
    {
        const std::lock_guard lock(mutex_);
        reports_.push_back(std::move(report));
    }
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
}

void ScanTask::customEvent(QEvent*)
{
    std::unique_lock lock(mutex_);
    Report report = std::move(reports_.front());
    reports_.pop_front();
    lock.unlock();

    if (const ScanProgress* const progress = std::get_if<ScanProgress>(&report))
        return handlers_.progressed(*progress);
    // A copy, because the handler may destroy the task and with it the original.
    const auto ended = handlers_.ended;
    ended(*this, std::get<Outcome>(std::move(report)));
}

} // namespace brisalon
