#include "Brisalon/App/AppState.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/Platform/DefaultsStore.h"
#include "Brisalon/Platform/DesktopFileAccess.h"
#include "Brisalon/Platform/FolderPanel.h"
#include "Brisalon/Platform/HomeFolder.h"
#include "Brisalon/Services/FullDiskAccess.h"
#include "BrisalonCore/ByteFormat.h"

#include <QPointer>

#include <algorithm>
#include <utility>

namespace brisalon {

namespace {

constexpr std::size_t largeFileLimit = 50;

template <typename T>
bool areEqual(const T& a, const T& b)
{
    return a == b;
}

// A FileNodeValue tells nodes of two trees apart; a field is only announced when
// the nodes themselves differ. Nodes of one tree share what lies below them, so
// this visits a subtree only when a node of an older tree is replaced.
bool areEqual(const FileNodeValue& a, const FileNodeValue& b)
{
    return a == b || (a && b && *a == *b);
}

bool areEqual(const QList<FileNodeValue>& a, const QList<FileNodeValue>& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const FileNodeValue& x, const FileNodeValue& y) { return areEqual(x, y); });
}

QString text(std::string_view bytes)
{
    return displayText(bytes);
}

} // namespace

AppState::AppState(DefaultsStore& store, FolderPanel& folderPanel, ScanTask::Scan scan,
                   QObject* parent)
    : QObject(parent), store_(store), folderPanel_(folderPanel), scan_(std::move(scan)),
      preferences_(store), hasFullDiskAccess_(FullDiskAccess::isGranted(DesktopFileAccess())),
      scanRoot_(brisalon::homeFolder()), preferredWelcomeTarget_(ScanTargetPreference::load(store))
{
    if (!scan_)
        scan_ = [](const FileURL& root, const DiskScanner::ProgressCallback& progress,
                   std::stop_token cancellation) {
            return scanner.scan(root, progress, std::move(cancellation));
        };
    connect(this, &AppState::selectedChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::selectedLargeFileIDsChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::largeFilesChanged, this, &AppState::selectionChanged);
    connect(this, &AppState::treeChanged, this, &AppState::shouldShowMapHintChanged);
    connect(this, &AppState::treeChanged, this, &AppState::scannedTargetChanged);
    connect(this, &AppState::isScanningChanged, this, &AppState::scannedTargetChanged);
    connect(this, &AppState::scanRootChanged, this, &AppState::scannedTargetChanged);
}

AppState::~AppState()
{
    // All at once, so that their threads stop side by side, before each is waited for.
    for (const auto& task : tasks_)
        task->cancel();
    tasks_.clear();
}

template <typename T>
void AppState::assign(T& field, T value, void (AppState::*changed)())
{
    if (areEqual(field, value))
        return;
    field = std::move(value);
    emit(this->*changed)();
}

void AppState::setSelected(const FileNodeValue& node)
{
    assign(selected_, node, &AppState::selectedChanged);
}

void AppState::setSelectedLargeFileIDs(std::set<std::string> ids)
{
    assign(selectedLargeFileIDs_, std::move(ids), &AppState::selectedLargeFileIDsChanged);
}

QString AppState::lastUsedTarget() const
{
    if (!ScanTargetPreference::isSaved(store_))
        return {};
    switch (preferredWelcomeTarget_.kind) {
    case ScanTargetPreference::Kind::home:
        return QStringLiteral("home");
    case ScanTargetPreference::Kind::thisMac:
        return QStringLiteral("thisMac");
    case ScanTargetPreference::Kind::customFolder:
        break;
    }
    return QStringLiteral("custom");
}

std::vector<LargeFileEntry> AppState::selectedLargeFileEntries() const
{
    std::vector<LargeFileEntry> entries;
    std::copy_if(
        largeFiles_.begin(), largeFiles_.end(), std::back_inserter(entries),
        [this](const LargeFileEntry& entry) { return selectedLargeFileIDs_.contains(entry.id()); });
    return entries;
}

std::int64_t AppState::selectedBytes() const
{
    if (selectedLargeFileIDs_.empty())
        return selected_.allocatedSize();
    std::int64_t sum = 0;
    for (const LargeFileEntry& entry : selectedLargeFileEntries())
        sum += entry.allocatedSize;
    return sum;
}

QString AppState::selectedBytesText() const
{
    return text(ByteFormat::string(selectedBytes()));
}

bool AppState::hasSelection() const
{
    return selected_.isPresent() || !selectedLargeFileIDs_.empty();
}

bool AppState::shouldShowMapHint() const
{
    return tree_.isPresent() && !preferences_.hasSeenMapInteractionHint();
}

bool AppState::isScanned(const FileURL& root) const
{
    return !isScanning_ && tree_
           && scanRoot_.resolvingSymbolicLinks() == root.resolvingSymbolicLinks();
}

FileURL AppState::homeFolder() const
{
    return brisalon::homeFolder();
}

void AppState::startScan(const FileURL& root)
{
    const bool isRescan = root.resolvingSymbolicLinks() == scanRoot_.resolvingSymbolicLinks();
    for (const auto& task : tasks_)
        task->cancel();

    assign(scanRoot_, root, &AppState::scanRootChanged);
    ScanTargetPreference::save(root, store_);
    assign(preferredWelcomeTarget_, ScanTargetPreference::load(store_),
           &AppState::preferredWelcomeTargetChanged);
    emit lastUsedTargetChanged();
    assign(isScanning_, true, &AppState::isScanningChanged);
    assign(scanError_, QString(), &AppState::scanErrorChanged);
    const std::string path = root.path();
    assign(statusMessage_, "Scanning " + displayPath(path) + "…", &AppState::statusMessageChanged);
    assign(progress_, ScanProgressValue(ScanProgress{0, path, 0}), &AppState::progressChanged);
    assign(volume_, VolumeStatsValue(VolumeStats::read(scanRoot_)), &AppState::volumeChanged);
    if (!isRescan)
        clearMap();

    tasks_.push_back(std::make_unique<ScanTask>(
        scan_, ScanTask::Request{root, tree_, largeFileLimit}, *this,
        ScanTask::Handlers{
            [this](const ScanProgress& progress) {
                assign(progress_, ScanProgressValue(progress), &AppState::progressChanged);
            },
            [this](ScanTask& task, ScanTask::Outcome outcome) {
                endScan(task, std::move(outcome));
            },
        }));
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
    assign(statusMessage_, QStringLiteral("Scan cancelled."), &AppState::statusMessageChanged);
}

void AppState::endScan(ScanTask& task, ScanTask::Outcome outcome)
{
    const auto ended = std::find_if(tasks_.begin(), tasks_.end(),
                                    [&](const auto& other) { return other.get() == &task; });
    const bool isNewest = ended == tasks_.end() - 1;
    const bool isCancelled = task.isCancelled();
    tasks_.erase(ended);

    // A task that a newer scan has replaced must not make that one look ended.
    if (!isNewest)
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
    assign(statusMessage_, "Mapped " + node.sizeText() + " in " + node.name(),
           &AppState::statusMessageChanged);
    assign(volume_, VolumeStatsValue(VolumeStats::read(scanRoot_)), &AppState::volumeChanged);
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
    assign(statusMessage_, message, &AppState::statusMessageChanged);
}

void AppState::pickFolderAndScan()
{
    folderPanel_.open("Scan", [model = QPointer<AppState>(this)](const FileURL& folder) {
        if (model)
            model->startScan(folder);
    });
}

void AppState::zoom(const FileNodeValue& node)
{
    if (!node.canZoom()) {
        setSelected(node);
        return;
    }
    assign(current_, node, &AppState::currentChanged);
    QList<FileNodeValue> crumbs = breadcrumbs_;
    const auto crumb = std::find_if(crumbs.begin(), crumbs.end(), [&](const FileNodeValue& other) {
        return other->url() == node->url();
    });
    if (crumb == crumbs.end())
        crumbs.append(node);
    else
        crumbs.erase(crumb + 1, crumbs.end());
    assign(breadcrumbs_, std::move(crumbs), &AppState::breadcrumbsChanged);
    setSelected(node);
    preferences_.setHasSeenMapInteractionHint();
    emit shouldShowMapHintChanged();
}

void AppState::zoomUpOneLevel()
{
    if (breadcrumbs_.size() >= 2)
        jumpToBreadcrumb(FileNodeValue(breadcrumbs_.at(breadcrumbs_.size() - 2)));
}

void AppState::jumpToBreadcrumb(const FileNodeValue& node)
{
    if (!node)
        return;
    // Kept here, because the caller's value may be one of the list that is cut.
    const FileNodeValue target = node;
    QList<FileNodeValue> crumbs = breadcrumbs_;
    const auto crumb = std::find_if(crumbs.begin(), crumbs.end(), [&](const FileNodeValue& other) {
        return other->url() == target->url();
    });
    if (crumb == crumbs.end())
        return;
    crumbs.erase(crumb + 1, crumbs.end());
    assign(breadcrumbs_, std::move(crumbs), &AppState::breadcrumbsChanged);
    assign(current_, target, &AppState::currentChanged);
    setSelected(target);
}

void AppState::select(const FileNodeValue& node)
{
    setSelected(node);
    setSelectedLargeFileIDs({});
}

void AppState::refreshVolume()
{
    assign(volume_, VolumeStatsValue(VolumeStats::read(tree_ ? scanRoot_ : startupVolume())),
           &AppState::volumeChanged);
}

} // namespace brisalon
