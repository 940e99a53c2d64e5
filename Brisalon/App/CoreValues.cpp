#include "Brisalon/App/CoreValues.h"

#include "Brisalon/App/DisplayText.h"
#include "Brisalon/Platform/Disposal.h"
#include "BrisalonCore/ByteFormat.h"

#include <QLocale>

#include <utility>

namespace brisalon {

namespace {

QString ascii(std::string_view text)
{
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

FileNodeHold heldTree(FileNode root)
{
    return {new FileNode(std::move(root)),
            [](const FileNode* tree) { destroyElsewhere([tree] { delete tree; }); }};
}

QByteArray FileNodeValue::id() const
{
    const FileNodeHold node = hold();
    return node ? QByteArray::fromStdString(node->id()) : QByteArray();
}

QString FileNodeValue::name() const
{
    const FileNodeHold node = hold();
    return node ? displayText(node->name()) : QString();
}

FileURL FileNodeValue::url() const
{
    // Of its own: a URL of the tree keeps the names of all items of its folder.
    const FileNodeHold node = hold();
    return node ? FileURL(node->url().path()) : FileURL();
}

QString FileNodeValue::path() const
{
    const FileNodeHold node = hold();
    return node ? displayPath(node->url().path()) : QString();
}

qint64 FileNodeValue::allocatedSize() const
{
    const FileNodeHold node = hold();
    return node ? node->allocatedSize() : 0;
}

QString FileNodeValue::sizeText() const
{
    return isPresent() ? ascii(ByteFormat::string(allocatedSize())) : QString();
}

QString FileNodeValue::kindTitle() const
{
    const FileNodeHold node = hold();
    return node ? ascii(node->kind().title()) : QString();
}

HogKind FileNodeValue::hogKind() const
{
    const FileNodeHold node = hold();
    return node ? node->hogKind() : HogKind::none;
}

QString FileNodeValue::hogTitle() const
{
    return isPresent() ? ascii(title(hogKind())) : QString();
}

Risk FileNodeValue::risk() const
{
    const FileNodeHold node = hold();
    return node ? node->risk() : Risk::unknown;
}

QString FileNodeValue::riskTitle() const
{
    return isPresent() ? ascii(title(risk())) : QString();
}

QString FileNodeValue::riskSummary() const
{
    return ascii(summary(risk()));
}

bool FileNodeValue::isAggregate() const
{
    const FileNodeHold node = hold();
    return node && node->kind().isAggregate();
}

qint64 FileNodeValue::smallFileCount() const
{
    const FileNodeHold node = hold();
    return node ? node->kind().count() : 0;
}

bool FileNodeValue::canZoom() const
{
    const FileNodeHold node = hold();
    return node && node->canZoom();
}

int FileNodeValue::childCount() const
{
    const FileNodeHold node = hold();
    return node ? static_cast<int>(node->children().size()) : 0;
}

bool FileNodeValue::isSameItem(const FileNodeValue& other) const
{
    const FileNodeHold node = hold();
    const FileNodeHold otherNode = other.hold();
    return node && otherNode ? node->url() == otherNode->url() : node == otherNode;
}

bool operator==(const FileNodeValue& a, const FileNodeValue& b)
{
    const FileNodeHold x = a.hold();
    const FileNodeHold y = b.hold();
    if (x == y)
        return true;
    // Nodes that share their children compare in constant time.
    return x && y && x->children().data() == y->children().data() && *x == *y;
}

QString LargeFileEntryValue::name() const
{
    return displayText(entry_.name);
}

QString LargeFileEntryValue::folderName() const
{
    return displayText(entry_.url.deletingLastPathComponent().lastPathComponent());
}

QString LargeFileEntryValue::folderPath() const
{
    return displayPath(entry_.url.deletingLastPathComponent().path());
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

QString LocalVolumeValue::name() const
{
    return displayText(volume_.name);
}

QString LocalVolumeValue::sizeText() const
{
    const VolumeStatsValue stats = volume_.stats;
    return stats ? stats.freeText() + " of " + ascii(ByteFormat::string(stats->total)) : QString();
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
