#include "Brisalon/App/AppStateFields.h"
#include "Brisalon/Platform/FileAccess.h"
#include "Brisalon/Platform/Workspace.h"
#include "BrisalonCore/LargeFiles.h"
#include "BrisalonCore/Paths.h"
#include "BrisalonCore/SkipRules.h"

#include <QPointer>

#include <string_view>

namespace brisalon {

namespace {

/// The crumb of a node of the same tree; by its place in memory, since paths that are
/// alike for thousands of levels take long to compare.
QList<FileNodeValue>::iterator crumbOf(QList<FileNodeValue>& crumbs, const FileNodeValue& node)
{
    return std::find(crumbs.begin(), crumbs.end(), node);
}

/// By the last component of its path alone: composing paths on the way down would take the
/// square of a tree's depth. Null when there is none.
const FileNode* childNamed(const FileNode& folder, std::string_view name)
{
    const auto children = folder.children();
    const auto found = std::ranges::find(
        children, name, [](const FileNode& node) { return node.url().lastPathComponent(); });
    return found == children.end() ? nullptr : &*found;
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
    const FileNodeValue target = inTree(node);
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
    for (auto i = std::min(rootPieces.size(), targetPieces.size()); i < targetPieces.size(); ++i) {
        const FileNode* const found = childNamed(*crumbs.last(), targetPieces[i]);
        if (!found)
            break;
        crumbs.append(tree().at(*found));
    }
    assign(breadcrumbs_, std::move(crumbs), &AppState::breadcrumbsChanged);
}

/// The way to the level that is shown, as far as the tree, which is to replace the one on
/// screen, still has it.
QList<FileNodeValue> AppState::breadcrumbsIn(const FileNodeHold& tree) const
{
    QList<FileNodeValue> crumbs{tree};
    for (qsizetype i = 1; i < breadcrumbs_.size(); ++i) {
        const std::string_view name = breadcrumbs_.at(i)->url().lastPathComponent();
        const FileNode* const found = childNamed(*crumbs.last(), name);
        if (!found || found->kind() != NodeKind::directory)
            break;
        crumbs.append(crumbs.last().at(*found));
    }
    return crumbs;
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
