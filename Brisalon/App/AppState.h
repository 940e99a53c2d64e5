#pragma once

#include "Brisalon/App/AppServices.h"
#include "Brisalon/App/CoreValues.h"
#include "Brisalon/App/ScanTask.h"
#include "Brisalon/App/Selection.h"
#include "Brisalon/App/SidebarTab.h"
#include "Brisalon/App/TrashQuestion.h"
#include "Brisalon/App/WelcomeTarget.h"
#include "Brisalon/Platform/BackgroundTasks.h"
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

/// The one model of the application: all that the window shows, and the operations
/// that change it. Views read it and call its operations, and keep no copies.
///
/// Every field is a notifying property. Storing an equal value is silent (equality
/// of whole trees for nodes); a different one is announced once, on the main
/// thread, after it was stored. No setter does anything else. An absent text is
/// the empty one.
///
/// Confined to the main thread. Only a scan works elsewhere, and it reaches the
/// model through calls queued to the main thread. May be destroyed while a scan
/// runs, which stops the scan.
///
/// Kept by every operation: `current`, when present, is the last of `breadcrumbs`,
/// and `breadcrumbs` starts with `tree`.
class AppState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The application creates the one model.")

    Q_PROPERTY(brisalon::FileNodeValue tree READ tree NOTIFY treeChanged)
    Q_PROPERTY(brisalon::FileNodeValue current READ current NOTIFY currentChanged)
    Q_PROPERTY(
        QList<brisalon::FileNodeValue> breadcrumbs READ breadcrumbs NOTIFY breadcrumbsChanged)
    Q_PROPERTY(
        brisalon::FileNodeValue selected READ selected WRITE setSelected NOTIFY selectedChanged)
    Q_PROPERTY(QList<brisalon::LargeFileEntry> largeFiles READ largeFiles NOTIFY largeFilesChanged)
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    Q_PROPERTY(brisalon::ScanProgressValue progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(QString scanError READ scanError NOTIFY scanErrorChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(bool hasFullDiskAccess READ hasFullDiskAccess NOTIFY hasFullDiskAccessChanged)
    Q_PROPERTY(QList<brisalon::LocalSnapshotValue> snapshots READ snapshots NOTIFY snapshotsChanged)
    Q_PROPERTY(QString snapshotError READ snapshotError NOTIFY snapshotErrorChanged)
    Q_PROPERTY(brisalon::TrashQuestion confirmTrash READ trashQuestion NOTIFY confirmTrashChanged)
    Q_PROPERTY(brisalon::LocalSnapshotValue confirmSnapshot READ confirmSnapshot WRITE
                   setConfirmSnapshot NOTIFY confirmSnapshotChanged)
    Q_PROPERTY(QString failureText READ failureText NOTIFY lastCleanChanged)
    Q_PROPERTY(brisalon::FileURL scanRoot READ scanRoot NOTIFY scanRootChanged)
    Q_PROPERTY(brisalon::VolumeStatsValue volume READ volume NOTIFY volumeChanged)
    Q_PROPERTY(brisalon::sidebar::SidebarTab sidebarTab READ sidebarTab WRITE setSidebarTab NOTIFY
                   sidebarTabChanged)
    Q_PROPERTY(bool fdaJustGranted READ fdaJustGranted WRITE setFDAJustGranted NOTIFY
                   fdaJustGrantedChanged)

    Q_PROPERTY(bool isWorking READ isWorking NOTIFY isWorkingChanged)
    Q_PROPERTY(brisalon::Selection selection READ selection NOTIFY selectionChanged)
    Q_PROPERTY(brisalon::welcome::WelcomeTarget lastUsedTarget READ lastUsedTarget NOTIFY
                   lastUsedTargetChanged)
    Q_PROPERTY(bool canZoomOut READ canZoomOut NOTIFY breadcrumbsChanged)
    Q_PROPERTY(bool shouldShowFDABanner READ shouldShowFDABanner NOTIFY shouldShowFDABannerChanged)
    Q_PROPERTY(bool shouldShowMapHint READ shouldShowMapHint NOTIFY shouldShowMapHintChanged)

public:
    /// A scan folds files below 256 KiB and reports every 400 items.
    static constexpr DiskScanner scanner{.smallFileThreshold = 262'144, .progressEvery = 400};

    explicit AppState(AppServices services, QObject* parent = nullptr);

    /// The root of the last successful scan.
    FileNodeValue tree() const { return tree_; }
    /// The node whose children the map shows.
    FileNodeValue current() const { return current_; }
    /// From the scan root to `current`.
    const QList<FileNodeValue>& breadcrumbs() const { return breadcrumbs_; }
    FileNodeValue selected() const { return selected_; }
    void setSelected(const FileNodeValue& node);
    /// The 50 largest files of `tree`, largest first.
    const QList<LargeFileEntry>& largeFiles() const { return largeFiles_; }
    /// The paths ticked in the list of largest files; while there are any, they
    /// and not `selected` are what the selection means.
    const std::set<std::string>& selectedLargeFileIDs() const { return selectedLargeFileIDs_; }
    void setSelectedLargeFileIDs(std::set<std::string> ids);
    bool isScanning() const { return isScanning_; }
    /// The latest report of the running or last scan.
    const ScanProgressValue& progress() const { return progress_; }
    /// Why the last scan failed; absent while one runs and after one that
    /// succeeded or was cancelled.
    const QString& scanError() const { return scanError_; }
    /// The one line of feedback, until the next.
    const QString& statusMessage() const { return statusMessage_; }
    bool hasFullDiskAccess() const { return hasFullDiskAccess_; }
    /// Of the startup volume, in the order of the listing.
    const QList<LocalSnapshotValue>& snapshots() const { return snapshots_; }
    /// What the last listing complained of.
    const QString& snapshotError() const { return snapshotError_; }
    /// A move to the Trash, and the deletion of a snapshot, that wait for the user's
    /// confirmation; while there is one, the window asks.
    const std::optional<TrashRequest>& confirmTrash() const { return confirmTrash_; }
    const LocalSnapshotValue& confirmSnapshot() const { return confirmSnapshot_; }
    void setConfirmSnapshot(const LocalSnapshotValue& snapshot);
    /// How the last move to the Trash went; absent once a scan has started.
    const std::optional<CleanReport>& lastClean() const { return lastClean_; }
    /// What the last scan was started on, as given; the home folder before any.
    const FileURL& scanRoot() const { return scanRoot_; }
    const VolumeStatsValue& volume() const { return volume_; }
    SidebarTab sidebarTab() const { return sidebarTab_; }
    void setSidebarTab(SidebarTab tab);
    const ScanTargetPreference& preferredWelcomeTarget() const { return preferredWelcomeTarget_; }
    /// Full Disk Access was granted while the program ran.
    bool fdaJustGranted() const { return fdaJustGranted_; }
    void setFDAJustGranted(bool isGranted);

    /// Whether the user waits for something else than a scan: a question about very many
    /// items, a move to the Trash, the deletion of a snapshot.
    bool isWorking() const { return works_ > 0; }

    // Derived from the fields on every read.

    Selection selection() const { return {selected_, largeFiles_, selectedLargeFileIDs_}; }
    std::int64_t selectedBytes() const { return selection().bytes(); }
    QList<LargeFileEntry> selectedLargeFileEntries() const { return selection().files(); }
    TrashQuestion trashQuestion() const { return TrashQuestion(confirmTrash_); }
    /// The failures of `lastClean` on one line; of very many the first.
    QString failureText() const;
    /// What preferredWelcomeTarget is, or None when no target was ever remembered.
    WelcomeTarget lastUsedTarget() const;
    bool canZoomOut() const { return breadcrumbs_.size() >= 2; }
    bool shouldShowFDABanner() const;
    /// Whether there is a map and the user has never zoomed into one.
    bool shouldShowMapHint() const;

    /// Scans `root`, replacing a scan that runs. Another folder than the last one
    /// clears the map at once; the same one (links resolved) keeps it until the
    /// new tree is there. A failure ends up in scanError and statusMessage.
    Q_INVOKABLE void startScan(const brisalon::FileURL& root);
    Q_INVOKABLE void cancelScan();
    /// The user has read scanError.
    Q_INVOKABLE void dismissScanError();
    /// Asks for a folder, and scans it if the user picks one.
    Q_INVOKABLE void pickFolderAndScan();

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
    void treeChanged();
    void currentChanged();
    void breadcrumbsChanged();
    void selectedChanged();
    void largeFilesChanged();
    void selectedLargeFileIDsChanged();
    void isScanningChanged();
    void progressChanged();
    void scanErrorChanged();
    void statusMessageChanged();
    void hasFullDiskAccessChanged();
    void snapshotsChanged();
    void snapshotErrorChanged();
    void confirmTrashChanged();
    void confirmSnapshotChanged();
    void lastCleanChanged();
    void scanRootChanged();
    void volumeChanged();
    void sidebarTabChanged();
    void preferredWelcomeTargetChanged();
    void fdaJustGrantedChanged();

    void isWorkingChanged();

    // Of the derived values: sent whenever a field that they read has changed.
    void selectionChanged();
    void lastUsedTargetChanged();
    void shouldShowFDABannerChanged();
    void shouldShowMapHintChanged();

private:
    template <typename T>
    void assign(T& field, T value, void (AppState::*changed)());
    void clearMap();
    void endScan(const std::stop_token& scan, ScanTask::Outcome outcome);
    void showTree(ScanTask::Finished finished);
    void carrySelection(const ScanTask::Finished& finished);
    void showFailure(const ScanTask::Outcome& outcome);
    FileNodeValue inTree(const FileNodeValue& node) const;
    void rebuildBreadcrumbs(const FileNodeValue& target);
    void listSnapshotsAnew();
    void setStatus(const QString& message);
    void countWork(int change);
    std::stop_source startWork(BackgroundTasks::Work work);
    void setConfirmTrash(std::optional<TrashRequest> request);
    void setLastClean(std::optional<CleanReport> report);
    void noteTrash();

    AppServices services_;
    UIPreferences preferences_;
    TrashService trash_;

    // These hold their trees; all who read them, the views and the breadcrumbs too, do not.
    FileNodeHold tree_;
    FileNodeHold current_;
    QList<FileNodeValue> breadcrumbs_;
    FileNodeHold selected_;
    QList<LargeFileEntry> largeFiles_;
    std::set<std::string> selectedLargeFileIDs_;
    bool isScanning_ = false;
    ScanProgressValue progress_;
    QString scanError_;
    QString statusMessage_;
    bool hasFullDiskAccess_;
    QList<LocalSnapshotValue> snapshots_;
    QString snapshotError_;
    bool doSnapshotsAnswer_ = true;
    std::optional<TrashRequest> confirmTrash_;
    LocalSnapshotValue confirmSnapshot_;
    std::optional<CleanReport> lastClean_;
    FileURL scanRoot_;
    VolumeStatsValue volume_;
    SidebarTab sidebarTab_ = SidebarTab::LargeFiles;
    ScanTargetPreference preferredWelcomeTarget_;
    bool fdaJustGranted_ = false;
    int works_ = 0;

    /// The newest scan and the newest question about the Trash. Those before were
    /// replaced, and may say nothing any more when they end.
    std::stop_source scan_{std::nostopstate};
    std::stop_source trashRequest_{std::nostopstate};
    /// Last, so that all of it has ended before what it hands over to goes.
    BackgroundTasks tasks_;
};

} // namespace brisalon
