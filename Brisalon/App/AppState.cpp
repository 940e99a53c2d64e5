#include "Brisalon/App/AppStateFields.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/App/ScanTargets.h"
#include "Brisalon/Platform/DefaultsStore.h"
#include "Brisalon/Platform/FolderPanel.h"
#include "Brisalon/Services/FullDiskAccess.h"
#include "BrisalonCore/ByteFormat.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace brisalon {

namespace {

constexpr std::size_t largeFileLimit = 50;

QString text(std::string_view bytes)
{
    return displayText(bytes);
}

} // namespace

AppState::AppState(AppServices services, QObject* parent)
    : QObject(parent),
      services_(std::move(services)),
      preferences_(services_.defaults),
      trash_(services_.workspace),
      hasFullDiskAccess_(FullDiskAccess::isGranted(services_.fileAccess)),
      scanRoot_(ScanTargets::home()),
      preferredWelcomeTarget_(ScanTargetPreference::load(services_.defaults))
{
    if (!services_.scan)
        services_.scan = [](const FileURL& root, const DiskScanner::ProgressCallback& progress,
                            std::stop_token cancellation) {
            return scanner.scan(root, progress, std::move(cancellation));
        };
    connect(this, &AppState::hasFullDiskAccessChanged, this, &AppState::shouldShowFDABannerChanged);
    connect(this, &AppState::fdaJustGrantedChanged, this, &AppState::shouldShowFDABannerChanged);
    connect(this, &AppState::selectedChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::selectedLargeFileIDsChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::largeFilesChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::treeChanged, this, &AppState::shouldShowMapHintChanged);
}

AppState::~AppState()
{
    // All at once, so that their threads stop side by side, before each is waited for.
    for (const auto& task : tasks_)
        task->cancel();
    tasks_.clear();
}

void AppState::setSelected(const FileNodeValue& node)
{
    assign(selected_, node, &AppState::selectedChanged);
}

void AppState::setStatus(const QString& message)
{
    assign(statusMessage_, message, &AppState::statusMessageChanged);
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
    return tree_.isPresent() && !preferences_.hasSeenMapInteractionHint();
}

void AppState::startScan(const FileURL& root)
{
    const bool isRescan = root.resolvingSymbolicLinks() == scanRoot_.resolvingSymbolicLinks();
    for (const auto& task : tasks_)
        task->cancel();

    assign(scanRoot_, root, &AppState::scanRootChanged);
    ScanTargetPreference::save(root, services_.defaults);
    assign(preferredWelcomeTarget_, ScanTargetPreference::load(services_.defaults),
           &AppState::preferredWelcomeTargetChanged);
    emit lastUsedTargetChanged();
    assign(isScanning_, true, &AppState::isScanningChanged);
    assign(scanError_, QString(), &AppState::scanErrorChanged);
    const std::string path = root.path();
    setStatus("Scanning " + displayPath(path) + "…");
    assign(progress_, ScanProgressValue(ScanProgress{0, path, 0}), &AppState::progressChanged);
    assign(volume_, VolumeStatsValue(VolumeStats::read(scanRoot_)), &AppState::volumeChanged);
    if (!isRescan)
        clearMap();
    assign(lastClean_, {}, &AppState::lastCleanChanged);

    tasks_.push_back(std::make_unique<ScanTask>(
        services_.scan, ScanTask::Request{root, tree_, largeFileLimit},
        ScanTask::Handlers{
            [this](const ScanProgress& progress) {
                assign(progress_, ScanProgressValue(progress), &AppState::progressChanged);
            },
            [this](ScanTask& task, ScanTask::Outcome outcome) {
                endScan(task, std::move(outcome));
            },
        }));
    newestTask_ = tasks_.back().get();
}

void AppState::clearMap()
{
    assign(tree_, {}, &AppState::treeChanged);
    assign(current_, {}, &AppState::currentChanged);
    assign(breadcrumbs_, {}, &AppState::breadcrumbsChanged);
    assign(selected_, {}, &AppState::selectedChanged);
    assign(largeFiles_, {}, &AppState::largeFilesChanged);
    assign(selectedLargeFileIDs_, {}, &AppState::selectedLargeFileIDsChanged);
}

void AppState::cancelScan()
{
    for (const auto& task : tasks_)
        task->cancel();
    assign(isScanning_, false, &AppState::isScanningChanged);
    setStatus(QStringLiteral("Scan cancelled."));
}

void AppState::endScan(ScanTask& task, ScanTask::Outcome outcome)
{
    const bool isReplaced = &task != newestTask_;
    const bool isCancelled = task.isCancelled();
    std::erase_if(tasks_, [&](const auto& other) { return other.get() == &task; });

    // A task that a newer scan has replaced must not touch what that one shows,
    // whether it still runs or has ended before.
    if (isReplaced)
        return;
    if (ScanTask::Finished* const finished = std::get_if<ScanTask::Finished>(&outcome)) {
        if (!isCancelled)
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
    const FileNodeValue& node = finished.tree;
    const QList<FileNodeValue> crumbs{node};
    const bool isNewTree = !(tree_ == node);
    const bool isNewLevel = !(current_ == node);
    const bool areNewCrumbs = breadcrumbs_ != crumbs;
    if (isNewTree) {
        tree_ = node;
        emit treeChanged();
    }
    if (isNewLevel) {
        current_ = node;
        emit currentChanged();
    }
    if (areNewCrumbs) {
        breadcrumbs_ = crumbs;
        emit breadcrumbsChanged();
    }
    assign(largeFiles_, std::move(finished.largeFiles), &AppState::largeFilesChanged);
    assign(isScanning_, false, &AppState::isScanningChanged);
    setStatus("Mapped " + node.sizeText() + " in " + node.name());
    refreshPermission();
    assign(volume_, VolumeStatsValue(VolumeStats::read(scanRoot_)), &AppState::volumeChanged);
    listSnapshotsAnew();
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
