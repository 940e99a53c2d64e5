#include "Brisalon/App/ScanTask.h"

#include "BrisalonCore/LargeFiles.h"

#include <exception>
#include <utility>

namespace brisalon {

namespace {

FileNodeHold selectedIn(const FileNodeHold& tree, const ScanTask::Request& request)
{
    const FileNodeHold& before = request.selected;
    const FileNode* const found = before ? LargeFiles::find(before->id(), *tree) : nullptr;
    const bool isKept = found && (request.isOfPart || *found == *before);
    return isKept ? FileNodeHold(tree, found) : nullptr;
}

ScanTask::Finished finish(const FileNodeHold& tree, const ScanTask::Request& request)
{
    ScanTask::Finished finished;
    for (LargeFileEntry entry : LargeFiles::topFiles(*tree, request.largeFileLimit)) {
        // Of its own: a URL of the tree keeps the names of all items of its folder.
        entry.url = FileURL(entry.url.path());
        finished.largeFiles.append(std::move(entry));
    }
    const bool isSame = request.previous && *request.previous == *tree;
    finished.tree = isSame ? request.previous : tree;
    finished.selectedBefore = request.selected;
    finished.selectedNow = selectedIn(finished.tree, request);
    finished.isOfPart = request.isOfPart;
    return finished;
}

} // namespace

ScanTask::Outcome ScanTask::run(const Scan& scan, const Request& request,
                                const DiskScanner::ProgressCallback& progress,
                                std::stop_token cancellation)
{
    try {
        const auto omissions = request.omissions
                                   ? std::make_shared<ScanOmissions>(*request.omissions)
                                   : std::make_shared<ScanOmissions>();
        ScanResult result = scan(request.root, progress, std::move(cancellation), *omissions);
        if (const ScanError* const error = std::get_if<ScanError>(&result))
            return *error;
        if (FileNode* const tree = std::get_if<FileNode>(&result)) {
            Finished finished = finish(heldTree(std::move(*tree)), request);
            finished.omissions = omissions;
            return finished;
        }
        return TaskCancelled{};
    } catch (const std::exception& error) {
        return std::string(error.what());
    }
}

} // namespace brisalon
