#pragma once

#include "Brisalon/App/AppServices.h"
#include "Brisalon/App/CoreValues.h"
#include "Brisalon/App/Field.h"
#include "Brisalon/App/ScanTask.h"
#include "Brisalon/App/Selection.h"
#include "Brisalon/App/SidebarTab.h"
#include "Brisalon/App/TrashQuestion.h"
#include "Brisalon/App/WelcomeTarget.h"
#include "Brisalon/Platform/BackgroundTasks.h"
#include "Brisalon/Platform/Workspace.h"
#include "Brisalon/Services/CleanReport.h"
#include "Brisalon/Services/ScanTargetPreference.h"
#include "Brisalon/Services/TrashRequest.h"
#include "Brisalon/Services/TrashService.h"
#include "Brisalon/Services/UIPreferences.h"
#include "BrisalonCore/LargeFileEntry.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqml.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brisalon {

/// The model alone holds its trees; who reads the fields does not.
template <>
struct FieldOf<FileNodeValue> {
    using Stored = FileNodeHold;
    using Read = FileNodeValue;
};

/// The one model of the application: all that the window shows, and the operations
/// that change it. Views read it and call its operations, and keep no copies.
///
/// Every field is a notifying property. Storing an equal value is silent (equality
/// of whole trees for nodes); a different one is announced once, on the main
/// thread, after it was stored. No setter does anything else. An absent text is
/// the empty one.
///
/// Confined to the main thread. What takes long (a scan, a move to the Trash …) works
/// elsewhere, and reaches the model through calls queued to the main thread. May be
/// destroyed meanwhile, which stops a scan and waits for the rest.
///
/// Kept by every operation: `current`, when present, is the last of `breadcrumbs`,
/// and `breadcrumbs` starts with `tree`.
class AppState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application creates the one model.")

    /// The root of the last successful scan, and the node whose children the map shows.
    BRISALON_FIELD(brisalon::FileNodeValue, tree);
    BRISALON_FIELD(brisalon::FileNodeValue, current);
    /// What the scan left out of `tree`; null without a tree.
    BRISALON_INNER_FIELD(std::shared_ptr<const ScanOmissions>, omissions);
    /// From `tree` to `current`.
    BRISALON_FIELD(QList<brisalon::FileNodeValue>, breadcrumbs);
    BRISALON_WRITABLE_FIELD(brisalon::FileNodeValue, selected, setSelected);
    /// The 50 largest files of `tree`, largest first, and the paths of those that are
    /// ticked: while there are any, they and not `selected` are what the selection means.
    BRISALON_FIELD(QList<brisalon::LargeFileEntry>, largeFiles);
    BRISALON_INNER_FIELD(std::set<std::string>, selectedLargeFileIDs);

    /// `progress` is the latest report of the running or last scan; `scanError` why the last
    /// one failed, absent while one runs and after one that succeeded or was cancelled.
    BRISALON_FIELD(bool, isScanning);
    BRISALON_FIELD(brisalon::ScanProgressValue, progress);
    BRISALON_FIELD(QString, scanError);
    /// The one line of feedback, until the next.
    BRISALON_FIELD(QString, statusMessage);
    BRISALON_FIELD(bool, hasFullDiskAccess);
    /// Of the startup volume, in the order of the listing, and what that complained of.
    BRISALON_FIELD(QList<brisalon::LocalSnapshotValue>, snapshots);
    BRISALON_FIELD(QString, snapshotError);

    /// A move to the Trash, and the deletion of a snapshot, that wait for the user's
    /// confirmation; while there is one, the window asks.
    BRISALON_INNER_FIELD(std::optional<TrashRequest>, confirmTrash);
    BRISALON_WRITABLE_FIELD(brisalon::LocalSnapshotValue, confirmSnapshot, setConfirmSnapshot);
    /// How the last move to the Trash went; absent once a scan has started.
    BRISALON_INNER_FIELD(std::optional<CleanReport>, lastClean);

    /// What the last scan was started on, as given (the home folder before any), and the
    /// volume that holds it.
    BRISALON_FIELD(brisalon::FileURL, scanRoot);
    BRISALON_FIELD(brisalon::VolumeStatsValue, volume);
    /// The local disks, when they were last listed.
    BRISALON_FIELD(QList<brisalon::LocalVolume>, disks);
    BRISALON_WRITABLE_FIELD(brisalon::sidebar::SidebarTab, sidebarTab, setSidebarTab);
    BRISALON_INNER_FIELD(ScanTargetPreference, preferredWelcomeTarget);
    /// Full Disk Access was granted while the program ran.
    BRISALON_WRITABLE_FIELD(bool, fdaJustGranted, setFDAJustGranted);

    // Derived from the fields on every read.
    Q_PROPERTY(brisalon::Selection selection READ selection NOTIFY selectionChanged)
    Q_PROPERTY(brisalon::TrashQuestion confirmTrash READ trashQuestion NOTIFY confirmTrashChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY lastCleanChanged)
    Q_PROPERTY(brisalon::welcome::WelcomeTarget lastUsedTarget READ lastUsedTarget NOTIFY
                   lastUsedTargetChanged)
    Q_PROPERTY(bool canZoomOut READ canZoomOut NOTIFY breadcrumbsChanged)
    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged)
    Q_PROPERTY(bool shouldShowFDABanner READ shouldShowFDABanner NOTIFY shouldShowFDABannerChanged)
    Q_PROPERTY(bool shouldShowMapHint READ shouldShowMapHint NOTIFY shouldShowMapHintChanged)

public:
    /// A scan folds files below 256 KiB and reports every 400 items.
    static constexpr DiskScanner scanner{.smallFileThreshold = 262'144, .progressEvery = 400};

    explicit AppState(AppServices services, QObject* parent = nullptr);

    void setSelected(const FileNodeValue& node);
    void setSelectedLargeFileIDs(std::set<std::string> ids);
    void setConfirmSnapshot(const LocalSnapshotValue& snapshot);
    void setSidebarTab(SidebarTab tab);
    void setFDAJustGranted(bool isGranted);

    Selection selection() const { return {selected_, largeFiles_, selectedLargeFileIDs_}; }
    std::int64_t selectedBytes() const { return selection().bytes(); }
    QList<LargeFileEntry> selectedLargeFileEntries() const { return selection().files(); }
    TrashQuestion trashQuestion() const { return TrashQuestion(confirmTrash_); }
    /// The failures of `lastClean` on one line; of very many the first.
    QString failureText() const;
    /// What preferredWelcomeTarget is, or None when no target was ever remembered.
    WelcomeTarget lastUsedTarget() const;
    bool canZoomOut() const { return breadcrumbs_.size() >= 2; }
    /// Whether the user waits for something else than a scan: a question about very many
    /// items, a move to the Trash, the deletion of a snapshot.
    bool isWorking() const { return works_ > 0; }
    bool shouldShowFDABanner() const;
    /// Whether there is a map and the user has never zoomed into one.
    bool shouldShowMapHint() const;

    /// Scans `root`, replacing a scan that runs. Another folder than the last one
    /// clears the map at once; the same one (links resolved) keeps it until the
    /// new tree is there. A failure ends up in scanError and statusMessage.
    Q_INVOKABLE void startScan(const brisalon::FileURL& root);
    /// Scans a folder of `tree` alone, and shows the whole tree with what is there now, at
    /// the level that is shown or the nearest one that is left above it.
    void rescan(const FileURL& folder);
    Q_INVOKABLE void cancelScan();
    /// The user has read scanError.
    Q_INVOKABLE void dismissScanError();
    /// Asks for a folder, and scans it if the user picks one.
    Q_INVOKABLE void pickFolderAndScan();

    /// Reads `disks`, which are there when this returns unless one is slow to answer.
    Q_INVOKABLE void listDisks();

    /// Shows the node's children if it is a folder that has any; selects it. In place of
    /// a node of an older tree the one that now has its path.
    Q_INVOKABLE void zoom(const brisalon::FileNodeValue& asked);
    Q_INVOKABLE void zoomUpOneLevel();
    /// Goes back to a node of `breadcrumbs`; anything else is ignored.
    Q_INVOKABLE void jumpToBreadcrumb(const brisalon::FileNodeValue& node);
    /// A click on the map: selects the node and ends a selection of large files.
    Q_INVOKABLE void select(const brisalon::FileNodeValue& node);

    /// Shows the folder that holds the file, and selects the file. Nothing happens
    /// when the folder is not part of the tree.
    Q_INVOKABLE void revealLargeFile(const brisalon::LargeFileEntry& entry);
    /// Shows the item in the file manager; a protected one only if it exists.
    Q_INVOKABLE void requestReveal(const brisalon::FileURL& url);
    /// Opens a terminal in the folder.
    void requestTerminal(const FileURL& folder);

    /// Asks for the ticked large files or else the selected node to be moved to the
    /// Trash: stores confirmTrash, or says in statusMessage why there is nothing to
    /// ask. Protected items are left out. Of few items that is so when this returns,
    /// of many it comes later.
    Q_INVOKABLE void requestTrashSelected();
    /// Begins the move that was asked for, and returns; at its end the outcome is in
    /// lastClean and statusMessage, and if anything moved the folder is scanned anew.
    Q_INVOKABLE void confirmPendingTrash();
    Q_INVOKABLE void dismissTrash();

    /// Lists the local snapshots. Like their deletion it holds up the main thread
    /// while the tool runs, which the service bounds. A tool that did not answer is
    /// asked again by this operation alone, not after scans and deletions.
    Q_INVOKABLE void listSnapshots();
    /// Begins the deletion of the snapshot that was asked for, and returns; the outcome is
    /// in statusMessage at its end.
    Q_INVOKABLE void confirmPendingSnapshot();
    Q_INVOKABLE void dismissSnapshot() { setConfirmSnapshot({}); }

    /// Asks again whether Full Disk Access is granted. The first time that it is
    /// after it was not, fdaJustGranted says so.
    Q_INVOKABLE void refreshPermission();
    /// Leads the user to where the permission is given: opens the system's page of
    /// it, and shows the program in the file manager to be dragged there.
    Q_INVOKABLE void openSettings();
    Q_INVOKABLE void revealAppInFinder();
    /// Keeps the request for Full Disk Access away for seven calendar days.
    Q_INVOKABLE void dismissFDABanner();

    /// Reads the volume of the scanned folder, or the startup volume without a map.
    Q_INVOKABLE void refreshVolume();

    /// What the window does when it first appears: asks for the permission, reads
    /// the volume and lists the snapshots, in this order. Starts no scan.
    Q_INVOKABLE void appear();

signals:
    // Of the derived values: sent whenever a field that they read has changed.
    void selectionChanged();
    void isWorkingChanged();
    void lastUsedTargetChanged();
    void shouldShowFDABannerChanged();
    void shouldShowMapHintChanged();

private:
    template <typename T>
    void assign(T& field, T value, void (AppState::*changed)());
    void clearMap();
    void announceScan(const FileURL& folder);
    void runScan(ScanTask::Scan scan, ScanTask::Request request);
    void endScan(const std::stop_token& scan, ScanTask::Outcome outcome);
    void showTree(ScanTask::Finished finished);
    void carrySelection(const ScanTask::Finished& finished);
    void showFailure(const ScanTask::Outcome& outcome);
    FileNodeValue inTree(const FileNodeValue& node) const;
    QList<FileNodeValue> breadcrumbsIn(const FileNodeHold& tree) const;
    void rebuildBreadcrumbs(const FileNodeValue& target);
    void listSnapshotsAnew();
    void setStatus(const QString& message);
    Workspace::Started complaining(const char* complaint);
    void countWork(int change);
    std::stop_source startWork(BackgroundTasks::Work work, BackgroundTasks::LastStep last);
    void setConfirmTrash(std::optional<TrashRequest> request);
    void setLastClean(std::optional<CleanReport> report);
    void noteTrash();

    AppServices services_;
    UIPreferences preferences_;
    TrashService trash_;

    /// Whether the tool of the snapshots answered when it was last asked.
    bool doSnapshotsAnswer_ = true;
    int works_ = 0;

    /// The newest scan and the newest question about the Trash. Those before were
    /// replaced, and may say nothing any more when they end.
    std::stop_source scan_{std::nostopstate};
    std::stop_source trashRequest_{std::nostopstate};
    /// Last, so that all of it has ended before what it hands over to goes.
    BackgroundTasks tasks_;
};

} // namespace brisalon
