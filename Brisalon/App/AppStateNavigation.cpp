#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/Platform/FileAccess.h"
#include "Brisalon/Platform/Workspace.h"
#include "BrisalonCore/LargeFiles.h"
#include "BrisalonCore/Paths.h"
#include "BrisalonCore/SkipRules.h"

#include <QPointer>

#include <span>
#include <string_view>

namespace brisalon {

namespace {

QList<FileNodeValue>::iterator crumbOf(QList<FileNodeValue>& crumbs, const FileNodeValue& node)
{
    return std::find_if(crumbs.begin(), crumbs.end(),
                        [&](const FileNodeValue& other) { return other->url() == node->url(); });
}

} // namespace

FileNodeValue AppState::inTree(const FileNodeValue& node) const
{
    const FileNodeHold held = node.hold();
    const bool isOfTree = !tree_.owner_before(held) && !held.owner_before(tree_);
    if (!tree_ || !held || isOfTree)
        return node;
    const FileNode* const found = LargeFiles::find(held->id(), *tree_);
    return found ? tree().at(*found) : node;
}

void AppState::zoom(const FileNodeValue& asked)
{
    // What was selected before a rescan is no part of the tree any more.
    const FileNodeValue node = inTree(asked);
    if (!node.canZoom()) {
        setSelected(node);
        return;
    }
    assign(current_, node.hold(), &AppState::currentChanged);
    QList<FileNodeValue> crumbs = breadcrumbs_;
    const auto crumb = crumbOf(crumbs, node);
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
    if (canZoomOut())
        jumpToBreadcrumb(FileNodeValue(breadcrumbs_.at(breadcrumbs_.size() - 2)));
}

void AppState::jumpToBreadcrumb(const FileNodeValue& node)
{
    if (!node)
        return;
    // Kept here, because the caller's value may be one of the list that is cut.
    const FileNodeValue target = node;
    QList<FileNodeValue> crumbs = breadcrumbs_;
    const auto crumb = crumbOf(crumbs, target);
    if (crumb == crumbs.end())
        return;
    crumbs.erase(crumb + 1, crumbs.end());
    assign(breadcrumbs_, std::move(crumbs), &AppState::breadcrumbsChanged);
    assign(current_, target.hold(), &AppState::currentChanged);
    setSelected(target);
}

void AppState::select(const FileNodeValue& node)
{
    setSelected(node);
    setSelectedLargeFileIDs({});
}

void AppState::revealLargeFile(const LargeFileEntry& entry)
{
    if (!tree_)
        return;
    const std::string folderPath = entry.url.deletingLastPathComponent().path();
    const FileNode* const folder = LargeFiles::find(folderPath, *tree_);
    if (!folder)
        return;
    const FileNodeValue target = tree().at(*folder);
    rebuildBreadcrumbs(target);
    assign(current_, target.hold(), &AppState::currentChanged);
    const FileNode* const file = LargeFiles::find(entry.id(), *tree_);
    setSelected(file ? tree().at(*file) : target);
}

void AppState::rebuildBreadcrumbs(const FileNodeValue& target)
{
    QList<FileNodeValue> crumbs{tree_};
    const std::string rootPath = tree_->url().path();
    const std::string targetPath = target->url().path();
    const auto rootPieces = paths::components(rootPath);
    const auto targetPieces = paths::components(targetPath);
    // Node by node and by the last components alone: no path is composed on the way,
    // which would take the square of a tree's depth.
    std::span<const FileNode> level = tree_->children();
    for (auto i = std::min(rootPieces.size(), targetPieces.size()); i < targetPieces.size(); ++i) {
        const auto found = std::ranges::find(level, targetPieces[i], [](const FileNode& node) {
            return node.url().lastPathComponent();
        });
        if (found == level.end())
            break;
        crumbs.append(tree().at(*found));
        level = found->children();
    }
    assign(breadcrumbs_, std::move(crumbs), &AppState::breadcrumbsChanged);
}

void AppState::requestReveal(const FileURL& url)
{
    if (SkipRules::shouldAllowDelete(url) || services_.fileAccess.exists(url))
        services_.workspace.reveal(url, complaining("No file manager could be opened."));
    else
        setStatus(QStringLiteral("That path is not available."));
}

void AppState::requestTerminal(const FileURL& folder)
{
    services_.workspace.openTerminal(folder, complaining("No terminal could be opened there."));
}

/// Says so when nothing could be started; what was started shows itself.
Workspace::Started AppState::complaining(const char* complaint)
{
    return [model = QPointer<AppState>(this), complaint](bool hasStarted) {
        if (model && !hasStarted)
            model->setStatus(QString::fromLatin1(complaint));
    };
}

} // namespace brisalon
