#pragma once

#include "BrisalonCore/FileNode.h"
#include "BrisalonCore/LargeFileEntry.h"
#include "BrisalonCore/LocalSnapshot.h"
#include "BrisalonCore/LocalVolume.h"
#include "BrisalonCore/ScanProgress.h"
#include "BrisalonCore/VolumeStats.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QtQml/qqml.h>

#include <memory>
#include <optional>

namespace brisalon {

/// A whole tree, or one node of it, kept alive.
using FileNodeHold = std::shared_ptr<const FileNode>;

/// The root of a tree that lives as long as it or a node of it is held.
///
/// Who drops it last (a view, the model) may be on the main thread, and taking a large
/// tree apart takes longer than a frame; so a thread of the global pool does that, and
/// gives the memory back to the system.
FileNodeHold heldTree(FileNode root);

/// A node of a scan result, or none, as the application and its views pass it
/// around, with properties for QML (value type `fileNode`; test `isPresent`, the rest
/// reads as empty without it).
///
/// It keeps nothing alive: QML's engine holds on to the values that it has read until
/// its garbage is collected, and would hold every tree that was ever shown. Once nobody
/// holds its tree any more, a value is none. Copies may be made, read and dropped on
/// any thread; on another one than the tree's owner's hold the node first.
class FileNodeValue {
    Q_GADGET
    QML_VALUE_TYPE(fileNode)

    Q_PROPERTY(bool isPresent READ isPresent CONSTANT)
    Q_PROPERTY(QByteArray id READ id CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString path READ path CONSTANT)
    Q_PROPERTY(brisalon::FileURL url READ url CONSTANT)
    Q_PROPERTY(qint64 allocatedSize READ allocatedSize CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(QString kindTitle READ kindTitle CONSTANT)
    Q_PROPERTY(brisalon::HogKind hogKind READ hogKind CONSTANT)
    Q_PROPERTY(bool isHog READ isHog CONSTANT)
    Q_PROPERTY(QString hogTitle READ hogTitle CONSTANT)
    Q_PROPERTY(brisalon::Risk risk READ risk CONSTANT)
    Q_PROPERTY(QString riskTitle READ riskTitle CONSTANT)
    Q_PROPERTY(QString riskSummary READ riskSummary CONSTANT)
    Q_PROPERTY(bool isAggregate READ isAggregate CONSTANT)
    Q_PROPERTY(qint64 smallFileCount READ smallFileCount CONSTANT)
    Q_PROPERTY(bool canZoom READ canZoom CONSTANT)
    Q_PROPERTY(int childCount READ childCount CONSTANT)

public:
    /// No node.
    FileNodeValue() = default;
    /// That node, as long as its tree is held.
    FileNodeValue(const FileNodeHold& node) : node_(node) {}

    explicit operator bool() const { return isPresent(); }
    /// The node; there must be one. Valid while its tree is held.
    const FileNode& operator*() const { return *hold(); }
    const FileNode* operator->() const { return hold().get(); }
    /// Keeps the node's whole tree alive; null for none.
    FileNodeHold hold() const { return node_.lock(); }
    /// Another node of the same tree; there must be one.
    FileNodeValue at(const FileNode& node) const { return FileNodeHold(hold(), &node); }

    bool isPresent() const { return hold() != nullptr; }
    /// The node's identity: its path as bytes, empty for none.
    QByteArray id() const;
    /// Name and path, decoded for people.
    QString name() const;
    QString path() const;
    FileURL url() const;
    qint64 allocatedSize() const;
    QString sizeText() const;
    QString kindTitle() const;
    HogKind hogKind() const;
    bool isHog() const { return hogKind() != HogKind::none; }
    QString hogTitle() const;
    Risk risk() const;
    QString riskTitle() const;
    /// What to consider before removing it.
    QString riskSummary() const;
    /// Whether it stands for the small files of a folder, and for how many.
    bool isAggregate() const;
    qint64 smallFileCount() const;
    bool canZoom() const;
    int childCount() const;

    /// Whether both are none, or nodes of the same path, of one tree or of two.
    Q_INVOKABLE bool isSameItem(const brisalon::FileNodeValue& other) const;

    /// Whether both are none, or the same node of the same tree. Never visits what
    /// lies below, so equal folders of two scans differ: views that compare values
    /// on every change stay fast. For equality of trees compare the nodes.
    friend bool operator==(const FileNodeValue& a, const FileNodeValue& b);

private:
    std::weak_ptr<const FileNode> node_;
};

/// What QML sees of LargeFileEntry: one row of the list of largest files, with the
/// same texts as the file's node.
class LargeFileEntryValue {
    Q_GADGET
    QML_VALUE_TYPE(largeFileEntry)
    QML_FOREIGN(brisalon::LargeFileEntry)
    QML_EXTENDED(brisalon::LargeFileEntryValue)

    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString folderName READ folderName CONSTANT)
    Q_PROPERTY(QString folderPath READ folderPath CONSTANT)
    Q_PROPERTY(QString path READ path CONSTANT)
    Q_PROPERTY(brisalon::FileURL url READ url CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(QString spokenText READ spokenText CONSTANT)
    Q_PROPERTY(brisalon::HogKind hogKind READ hogKind CONSTANT)
    Q_PROPERTY(bool isHog READ isHog CONSTANT)
    Q_PROPERTY(QString hogTitle READ hogTitle CONSTANT)
    Q_PROPERTY(brisalon::Risk risk READ risk CONSTANT)
    Q_PROPERTY(QString riskTitle READ riskTitle CONSTANT)
    Q_PROPERTY(QString riskSummary READ riskSummary CONSTANT)

public:
    QString name() const;
    /// The name of the folder that holds the file.
    QString folderName() const;
    QString folderPath() const;
    QString path() const;
    const FileURL& url() const { return entry_.url; }
    QString sizeText() const;
    /// The row in one line, for those who hear it.
    QString spokenText() const;
    HogKind hogKind() const { return entry_.hogKind; }
    bool isHog() const { return entry_.hogKind != HogKind::none; }
    QString hogTitle() const;
    Risk risk() const { return entry_.risk; }
    QString riskTitle() const;
    QString riskSummary() const;

private:
    LargeFileEntry entry_;
};

/// Lets QML index and walk the lists of them.
class LargeFileEntryList {
    Q_GADGET
    QML_ANONYMOUS
    QML_FOREIGN(QList<brisalon::LargeFileEntry>)
    QML_SEQUENTIAL_CONTAINER(brisalon::LargeFileEntry)
};

/// A report of a scan, or none, for QML (value type `scanProgress`).
class ScanProgressValue {
    Q_GADGET
    QML_VALUE_TYPE(scanProgress)

    Q_PROPERTY(bool isPresent READ isPresent CONSTANT)
    Q_PROPERTY(QString currentPath READ currentPath CONSTANT)
    Q_PROPERTY(QString itemsText READ itemsText CONSTANT)
    Q_PROPERTY(QString bytesText READ bytesText CONSTANT)

public:
    ScanProgressValue() = default;
    ScanProgressValue(ScanProgress progress) : progress_(std::move(progress)) {}

    explicit operator bool() const { return progress_.has_value(); }
    const ScanProgress& operator*() const { return *progress_; }
    const ScanProgress* operator->() const { return &*progress_; }

    bool isPresent() const { return progress_.has_value(); }
    /// Decoded for people.
    QString currentPath() const;
    /// "12,345 items": those visited, with the digit grouping of the user's locale.
    QString itemsText() const;
    QString bytesText() const;

    friend bool operator==(const ScanProgressValue&, const ScanProgressValue&) = default;

private:
    std::optional<ScanProgress> progress_;
};

/// The figures of a volume, or none, for QML (value type `volumeStats`).
class VolumeStatsValue {
    Q_GADGET
    QML_VALUE_TYPE(volumeStats)

    Q_PROPERTY(bool isPresent READ isPresent CONSTANT)
    Q_PROPERTY(double usedFraction READ usedFraction CONSTANT)
    Q_PROPERTY(int usedPercent READ usedPercent CONSTANT)
    Q_PROPERTY(QString freeText READ freeText CONSTANT)
    Q_PROPERTY(QString usedText READ usedText CONSTANT)

public:
    VolumeStatsValue() = default;
    VolumeStatsValue(std::optional<VolumeStats> stats) : stats_(stats) {}

    explicit operator bool() const { return stats_.has_value(); }
    const VolumeStats& operator*() const { return *stats_; }
    const VolumeStats* operator->() const { return &*stats_; }

    bool isPresent() const { return stats_.has_value(); }
    double usedFraction() const { return stats_ ? stats_->usedFraction() : 0; }
    /// The used fraction in whole percent, rounded down.
    int usedPercent() const { return static_cast<int>(usedFraction() * 100); }
    /// "12 GB free", "34 GB used".
    QString freeText() const;
    QString usedText() const;

    friend bool operator==(const VolumeStatsValue&, const VolumeStatsValue&) = default;

private:
    std::optional<VolumeStats> stats_;
};

/// What QML sees of LocalVolume: one entry of the menu of disks.
class LocalVolumeValue {
    Q_GADGET
    QML_VALUE_TYPE(localVolume)
    QML_FOREIGN(brisalon::LocalVolume)
    QML_EXTENDED(brisalon::LocalVolumeValue)

    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(brisalon::FileURL mountPoint READ mountPoint CONSTANT)

public:
    QString name() const;
    /// "12 GB free of 40 GB"; empty for one that was not asked.
    QString sizeText() const;
    const FileURL& mountPoint() const { return volume_.mountPoint; }

private:
    LocalVolume volume_;
};

/// Lets QML walk the lists of them.
class LocalVolumeList {
    Q_GADGET
    QML_ANONYMOUS
    QML_FOREIGN(QList<brisalon::LocalVolume>)
    QML_SEQUENTIAL_CONTAINER(brisalon::LocalVolume)
};

/// A local snapshot, or none, for QML (value type `localSnapshot`).
class LocalSnapshotValue {
    Q_GADGET
    QML_VALUE_TYPE(localSnapshot)

    Q_PROPERTY(bool isPresent READ isPresent CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)

public:
    LocalSnapshotValue() = default;
    LocalSnapshotValue(LocalSnapshot snapshot) : snapshot_(std::move(snapshot)) {}

    explicit operator bool() const { return snapshot_.has_value(); }
    const LocalSnapshot* operator->() const { return &*snapshot_; }

    bool isPresent() const { return snapshot_.has_value(); }
    /// When it was made, to the minute.
    QString title() const;

    friend bool operator==(const LocalSnapshotValue&, const LocalSnapshotValue&) = default;

private:
    std::optional<LocalSnapshot> snapshot_;
};

/// FileURL in QML: a value that views hand back to operations unseen.
class FileURLValue {
    Q_GADGET
    QML_VALUE_TYPE(fileURL)
    QML_FOREIGN(brisalon::FileURL)
    QML_EXTENDED(brisalon::FileURLValue)

    Q_PROPERTY(QString path READ path CONSTANT)

public:
    /// Decoded for people.
    QString path() const;

private:
    FileURL url_;
};

} // namespace brisalon
