#include "Brisalon/App/CoreValues.h"

#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

#include <QLocale>
#include <QThreadPool>

#include <utility>

namespace brisalon {

namespace {

void destroyOffMainThread(const FileNode* node)
{
    // Without children there is nothing to take apart. The pool is gone when
    // statics are destroyed at exit.
    QThreadPool* const pool = node->canZoom() ? QThreadPool::globalInstance() : nullptr;
    if (pool)
        pool->start([node] { delete node; });
    else
        delete node;
}

QString ascii(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

FileNodeValue::FileNodeValue(FileNode node)
    : node_(new FileNode(std::move(node)), destroyOffMainThread)
{
}

QByteArray FileNodeValue::id() const
{
    return node_ ? QByteArray::fromStdString(node_->id()) : QByteArray();
}

QString FileNodeValue::name() const
{
    return node_ ? displayText(node_->name()) : QString();
}

QString FileNodeValue::path() const
{
    return node_ ? displayPath(node_->url().path()) : QString();
}

QString FileNodeValue::sizeText() const
{
    return node_ ? ascii(ByteFormat::string(node_->allocatedSize())) : QString();
}

QString FileNodeValue::kindTitle() const
{
    return node_ ? ascii(node_->kind().title()) : QString();
}

QString FileNodeValue::hogTitle() const
{
    return node_ ? ascii(title(node_->hogKind())) : QString();
}

QString FileNodeValue::riskTitle() const
{
    return node_ ? ascii(title(node_->risk())) : QString();
}

QString FileNodeValue::riskSummary() const
{
    return ascii(summary(risk()));
}

int FileNodeValue::childCount() const
{
    return node_ ? static_cast<int>(node_->children().size()) : 0;
}

bool FileNodeValue::isSameItem(const FileNodeValue& other) const
{
    return node_ && other.node_ ? node_->url() == other.node_->url() : node_ == other.node_;
}

bool operator==(const FileNodeValue& a, const FileNodeValue& b)
{
    if (a.node_ == b.node_)
        return true;
    // Nodes that share their children compare in constant time.
    return a.node_ && b.node_ && a.node_->children().data() == b.node_->children().data() &&
           *a.node_ == *b.node_;
}

QString LargeFileEntryValue::name() const
{
    return displayText(entry_.name);
}

QString LargeFileEntryValue::folderName() const
{
    return displayText(entry_.url.deletingLastPathComponent().lastPathComponent());
}

QString LargeFileEntryValue::path() const
{
    return displayPath(entry_.url.path());
}

QString LargeFileEntryValue::sizeText() const
{
    return ascii(ByteFormat::string(entry_.allocatedSize));
}

QString LargeFileEntryValue::spokenText() const
{
    return name() + ", " + folderName() + ", " + sizeText();
}

QString LargeFileEntryValue::hogTitle() const
{
    return ascii(title(entry_.hogKind));
}

QString LargeFileEntryValue::riskTitle() const
{
    return ascii(title(entry_.risk));
}

QString LargeFileEntryValue::riskSummary() const
{
    return ascii(summary(entry_.risk));
}

QString ScanProgressValue::currentPath() const
{
    return progress_ ? displayPath(progress_->currentPath) : QString();
}

QString ScanProgressValue::itemsText() const
{
    return progress_ ? QLocale().toString(qlonglong{progress_->visitedCount}) + " items"
                     : QString();
}

QString ScanProgressValue::bytesText() const
{
    return progress_ ? ascii(ByteFormat::string(progress_->bytesFound)) : QString();
}

QString VolumeStatsValue::freeText() const
{
    return stats_ ? ascii(ByteFormat::string(stats_->free)) + " free" : QString();
}

QString VolumeStatsValue::usedText() const
{
    return stats_ ? ascii(ByteFormat::string(stats_->used())) + " used" : QString();
}

QString LocalSnapshotValue::title() const
{
    return snapshot_ ? displayText(LocalSnapshot::formattedDate(snapshot_->dateToken)) : QString();
}

QString FileURLValue::path() const
{
    return displayPath(url_.path());
}

} // namespace brisalon
