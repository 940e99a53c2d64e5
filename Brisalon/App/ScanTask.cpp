#include "Brisalon/App/ScanTask.h"

#include "BrisalonCore/LargeFiles.h"

#include <QMetaObject>

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

ScanTask::ScanTask(Scan scan, Request request, QObject& receiver, Handlers handlers)
    : thread_([this, scan = std::move(scan), request = std::move(request), &receiver,
               handlers = std::move(handlers)](std::stop_token cancellation) {
          const auto post = [&receiver](auto call) {
              QMetaObject::invokeMethod(&receiver, std::move(call), Qt::QueuedConnection);
          };
          const auto report = [&](const ScanProgress& progress) {
              post([progressed = handlers.progressed, progress] { progressed(progress); });
          };
          Outcome outcome = run(scan, request, report, std::move(cancellation));
          post([this, ended = handlers.ended, outcome = std::move(outcome)]() mutable {
              ended(*this, std::move(outcome));
          });
      })
{
}

} // namespace brisalon
