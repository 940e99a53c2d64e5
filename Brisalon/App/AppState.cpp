#include "Brisalon/App/AppStateFields.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/App/ScanTargets.h"
#include "Brisalon/Platform/DefaultsStore.h"
#include "Brisalon/Platform/FolderPanel.h"
#include "Brisalon/Services/FullDiskAccess.h"
#include "BrisalonCore/ByteFormat.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace brisalon {

namespace {

constexpr std::size_t largeFileLimit = 50;

/// The node without what lies below it; but that something does, one child still says.
FileNode withoutItsTree(const FileNode& node)
{
    if (!node.canZoom())
        return node;
    const FileURL url(node.url().path());
    FileNode child = FileNodeBuilder::make(url.appendingPathComponent("…"), 0, NodeKind::file);
    return {url,
            node.name(),
            node.allocatedSize(),
            node.kind(),
            node.hogKind(),
            node.risk(),
            {std::move(child)},
            {}};
}

QString text(std::string_view bytes)
{
    return displayText(bytes);
}

} // namespace

AppState::AppState(AppServices services, QObject* parent)
    : QObject(parent),
      hasFullDiskAccess_(FullDiskAccess::isGranted(services.fileAccess)),
      scanRoot_(ScanTargets::home()),
      preferredWelcomeTarget_(ScanTargetPreference::load(services.defaults)),
      services_(std::move(services)),
      preferences_(services_.defaults),
      trash_(services_.workspace)
{
    if (!services_.scan)
        services_.scan = [](const FileURL& root, const DiskScanner::ProgressCallback& progress,
                            std::stop_token cancellation, ScanOmissions& omissions) {
            return scanner.scan(root, progress, std::move(cancellation), &omissions);
        };
    connect(this, &AppState::hasFullDiskAccessChanged, this, &AppState::shouldShowFDABannerChanged);
    connect(this, &AppState::fdaJustGrantedChanged, this, &AppState::shouldShowFDABannerChanged);
    connect(this, &AppState::selectedChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::selectedLargeFileIDsChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::largeFilesChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::treeChanged, this, &AppState::shouldShowMapHintChanged);
}

void AppState::setSelected(const FileNodeValue& node)
{
    assign(selected_, node.hold(), &AppState::selectedChanged);
}

void AppState::setStatus(const QString& message)
{
    assign(statusMessage_, message, &AppState::statusMessageChanged);
}

void AppState::countWork(int change)
{
    const bool wasWorking = isWorking();
    works_ += change;
    if (wasWorking != isWorking())
        emit isWorkingChanged();
}

std::stop_source AppState::startWork(BackgroundTasks::Work work, BackgroundTasks::LastStep last)
{
    countWork(+1);
    return tasks_.start(
        std::move(work),
        [this, last = std::move(last)](const std::stop_token& stop) {
            countWork(-1);
            last(stop);
        },
        BackgroundTasks::noTime);
}

void AppState::setSidebarTab(SidebarTab tab)
{
    assign(sidebarTab_, tab, &AppState::sidebarTabChanged);
}

void AppState::setSelectedLargeFileIDs(std::set<std::string> ids)
{
    assign(selectedLargeFileIDs_, std::move(ids), &AppState::selectedLargeFileIDsChanged);
}

WelcomeTarget AppState::lastUsedTarget() const
{
    if (!ScanTargetPreference::isSaved(services_.defaults))
        return WelcomeTarget::None;
    switch (preferredWelcomeTarget_.kind) {
    case ScanTargetPreference::Kind::home:
        return WelcomeTarget::Home;
    case ScanTargetPreference::Kind::thisMac:
        return WelcomeTarget::ThisMac;
    case ScanTargetPreference::Kind::customFolder:
        break;
    }
    return WelcomeTarget::ChooseFolder;
}

bool AppState::shouldShowMapHint() const
{
    return tree_ && !preferences_.hasSeenMapInteractionHint();
}

void AppState::startScan(const FileURL& root)
{
    const bool isRescan = root.resolvingSymbolicLinks() == scanRoot_.resolvingSymbolicLinks();
    scan_.request_stop();

    assign(scanRoot_, root, &AppState::scanRootChanged);
    ScanTargetPreference::save(root, services_.defaults);
    assign(preferredWelcomeTarget_, ScanTargetPreference::load(services_.defaults),
           &AppState::preferredWelcomeTargetChanged);
    emit lastUsedTargetChanged();
    announceScan(root);
    if (!isRescan)
        clearMap();
    setLastClean(std::nullopt);
    runScan(services_.scan, {root, tree_, selected_, omissions_, largeFileLimit, false});
}

void AppState::rescan(const FileURL& folder)
{
    if (!tree_)
        return;
    scan_.request_stop();
    announceScan(folder);
    setLastClean(std::nullopt);
    runScan(
        [tree = tree_](const FileURL& part, const DiskScanner::ProgressCallback& progress,
                       std::stop_token cancellation, ScanOmissions& omissions) {
            return scanner.rescan(*tree, part, progress, std::move(cancellation), &omissions);
        },
        {folder, tree_, selected_, omissions_, largeFileLimit, true});
}

void AppState::announceScan(const FileURL& folder)
{
    assign(isScanning_, true, &AppState::isScanningChanged);
    assign(scanError_, QString(), &AppState::scanErrorChanged);
    const std::string path = folder.path();
    setStatus("Scanning " + displayPath(path) + "…");
    assign(progress_, ScanProgressValue(ScanProgress{0, path, 0}), &AppState::progressChanged);
    assign(volume_, VolumeStatsValue(VolumeStats::read(scanRoot_)), &AppState::volumeChanged);
}

void AppState::runScan(ScanTask::Scan scan, ScanTask::Request request)
{
    const auto outcome = std::make_shared<ScanTask::Outcome>(BackgroundTasks::noMemory());
    scan_ = tasks_.start(
        [this, scan = std::move(scan), request = std::move(request),
         outcome](const BackgroundTasks::Task& task) {
            const auto report = [this, &task](const ScanProgress& progress) {
                task.report([this, progress] {
                    assign(progress_, ScanProgressValue(progress), &AppState::progressChanged);
                });
            };
            *outcome = ScanTask::run(scan, request, report, task.stop);
        },
        [this, outcome](const std::stop_token& stop) { endScan(stop, std::move(*outcome)); });
}

void AppState::clearMap()
{
    // Until all who show it have let go.
    const FileNodeHold old = tree_;
    assign(tree_, {}, &AppState::treeChanged);
    assign(omissions_, {}, &AppState::omissionsChanged);
    assign(current_, {}, &AppState::currentChanged);
    assign(breadcrumbs_, {}, &AppState::breadcrumbsChanged);
    assign(selected_, {}, &AppState::selectedChanged);
    assign(largeFiles_, {}, &AppState::largeFilesChanged);
    assign(selectedLargeFileIDs_, {}, &AppState::selectedLargeFileIDsChanged);
}

void AppState::cancelScan()
{
    scan_.request_stop();
    assign(isScanning_, false, &AppState::isScanningChanged);
    setStatus(QStringLiteral("Scan cancelled."));
}

void AppState::endScan(const std::stop_token& scan, ScanTask::Outcome outcome)
{
    // A scan that a newer one has replaced must not touch what that one shows, whether
    // it still runs or has ended before.
    if (scan != scan_.get_token())
        return;
    if (ScanTask::Finished* const finished = std::get_if<ScanTask::Finished>(&outcome)) {
        if (!scan.stop_requested())
            showTree(std::move(*finished));
    } else {
        showFailure(outcome);
    }
}

void AppState::showTree(ScanTask::Finished finished)
{
    // The task has found out whether the tree equals the one on screen, and hands
    // over that one itself if so. Comparing the values, not the nodes, is then
    // exact, and does not hold up a frame: the root is either the same or differs.
    const FileNodeHold& root = finished.tree;
    const FileNodeValue node = root;
    const auto crumbs = finished.isOfPart ? breadcrumbsIn(root) : QList<FileNodeValue>{node};
    const FileNodeHold level = crumbs.last().hold();
    const FileNodeHold old = tree_;
    const bool isNewTree = !(tree() == node);
    const bool isNewLevel = !(current() == crumbs.last());
    const bool areNewCrumbs = breadcrumbs_ != crumbs;
    if (isNewTree) {
        tree_ = root;
        emit treeChanged();
    }
    if (isNewLevel) {
        current_ = level;
        emit currentChanged();
    }
    if (areNewCrumbs) {
        breadcrumbs_ = crumbs;
        emit breadcrumbsChanged();
    }
    if (isNewTree)
        carrySelection(finished);
    assign(largeFiles_, std::move(finished.largeFiles), &AppState::largeFilesChanged);
    assign(isScanning_, false, &AppState::isScanningChanged);
    setStatus("Mapped " + node.sizeText() + " in " + node.name());
    refreshPermission();
    assign(volume_, VolumeStatsValue(VolumeStats::read(scanRoot_)), &AppState::volumeChanged);
    listSnapshotsAnew();
    // Last: who explains what is missing reads all of the above.
    assign(omissions_, std::move(finished.omissions), &AppState::omissionsChanged);
}

void AppState::carrySelection(const ScanTask::Finished& finished)
{
    if (!selected_)
        return;
    // What is selected stays so, but must not keep the old tree: the node of the new one
    // takes its place when it is equal, and otherwise what the inspector tells of it.
    const bool isEqual = finished.selectedNow && finished.selectedBefore == selected_;
    selected_ = isEqual ? finished.selectedNow : heldTree(withoutItsTree(*selected_));
    emit selectionChanged();
}

void AppState::showFailure(const ScanTask::Outcome& outcome)
{
    assign(isScanning_, false, &AppState::isScanningChanged);
    QString message;
    bool isError = true;
    if (const ScanError* const error = std::get_if<ScanError>(&outcome)) {
        message = text(description(*error));
        isError = *error != ScanError::cancelled;
    } else if (const std::string* const unexpected = std::get_if<std::string>(&outcome)) {
        message = text(*unexpected);
    } else {
        message = QStringLiteral("Scan cancelled.");
        isError = false;
    }
    if (isError)
        assign(scanError_, message, &AppState::scanErrorChanged);
    setStatus(message);
}

void AppState::dismissScanError()
{
    assign(scanError_, QString(), &AppState::scanErrorChanged);
}

void AppState::pickFolderAndScan()
{
    services_.folderPanel.open("Scan", [model = QPointer<AppState>(this)](const FileURL& folder) {
        if (model)
            model->startScan(folder);
    });
}

void AppState::listDisks()
{
    const auto list = std::make_shared<QList<LocalVolume>>(disks_);
    tasks_.start(
        [list, disks = services_.disks](const BackgroundTasks::Task&) {
            const std::vector<LocalVolume> found = disks();
            *list = QList<LocalVolume>(found.begin(), found.end());
        },
        [this, list](const std::stop_token&) { assign(disks_, *list, &AppState::disksChanged); },
        BackgroundTasks::noTime);
}

void AppState::refreshVolume()
{
    assign(volume_, VolumeStatsValue(VolumeStats::read(tree_ ? scanRoot_ : ScanTargets::thisMac())),
           &AppState::volumeChanged);
}

void AppState::appear()
{
    refreshPermission();
    refreshVolume();
    listSnapshotsAnew();
}

} // namespace brisalon
