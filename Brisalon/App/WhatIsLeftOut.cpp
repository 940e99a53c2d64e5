#include "Brisalon/App/WhatIsLeftOut.h"

#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/AccountName.h"
#include "BrisalonCore/ByteFormat.h"
#include "BrisalonCore/ScanOmissions.h"

#include <QLocale>

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace brisalon {

namespace {

using Rank = WhatIsLeftOut::Rank;
using Row = WhatIsLeftOut::Row;
using Answer = WhatIsLeftOut::Answer;
using Reason = MountReport::Reason;

/// What an answer is worked out from.
struct Question {
    FileNodeHold tree;
    std::shared_ptr<const ScanOmissions> omissions;
    VolumeStatsValue volume;
    qsizetype snapshotCount;
};

QString sizeText(std::int64_t bytes)
{
    return bytes < 0 ? QChar(0x2212) + sizeText(-bytes) : displayText(ByteFormat::string(bytes));
}

QString countText(std::size_t count)
{
    return count == 0 ? QStringLiteral("None") : QLocale().toString(static_cast<qulonglong>(count));
}

/// As a listing of a folder shows it: "root · drwx------".
QString rightsText(const ScanOmissions::Folder& folder)
{
    if (folder.mode == 0)
        return QStringLiteral("not even its owner can be told");
    QString rights = QStringLiteral("d");
    for (int bit = 8; bit >= 0; --bit)
        rights += folder.mode >> bit & 1U ? QChar(u"xwr"[bit % 3]) : QChar(u'-');
    return displayText(accountName(folder.owner)) + QStringLiteral(" · ") + rights;
}

QString reasonText(const MountReport::Place& place)
{
    switch (place.reason) {
    case Reason::mayHang:
        return QStringLiteral("reached over a network or through a program, which may hang");
    case Reason::onDemand:
        return QStringLiteral("mounted only when somebody enters it");
    case Reason::elsewhere:
        return QStringLiteral("counted at ") + displayPath(place.elsewhere);
    case Reason::behind:
        return QStringLiteral("lies in a place that was not entered");
    case Reason::kernel:
        break;
    }
    return QStringLiteral("the kernel's own data, which takes no space");
}

Row mountRow(const MountReport::Place& place)
{
    const QString type = place.type.empty() ? QStringLiteral("folder") : displayText(place.type);
    Row row{Rank::Item, displayPath(place.path), type + QStringLiteral(" · ") + reasonText(place)};
    if (place.isLocalVolume) {
        const FileURL url(place.path);
        if (const auto stats = VolumeStats::read(url))
            row.value = sizeText(stats->used() - VolumeStats::reserved(url)) + " used";
    }
    return row;
}

/// A cause with the places that are known of it.
void append(std::vector<Row>& rows, const char* title, std::size_t count, std::vector<Row> items)
{
    rows.push_back({Rank::Cause, title, {}, countText(count)});
    const std::size_t listed = items.size();
    std::ranges::move(items, std::back_inserter(rows));
    if (count > listed)
        rows.push_back({Rank::Item, "and " + countText(count - listed) + " more"});
}

void appendCauses(std::vector<Row>& rows, const ScanOmissions& omissions)
{
    std::vector<Row> items;
    for (const ScanOmissions::Folder& folder : omissions.unreadable)
        items.push_back({Rank::Item, displayPath(folder.url.path()), rightsText(folder)});
    std::ranges::sort(items, {}, &Row::title);
    append(rows, "Folders that could not be read", omissions.unreadableCount, std::move(items));

    items.clear();
    for (const MountReport::Place& place : omissions.mounts.omitted)
        items.push_back(mountRow(place));
    append(rows, "Mounts that were not entered", omissions.mounts.omittedCount, std::move(items));

    items.clear();
    for (const FileURL& area : omissions.systemAreas)
        items.push_back({Rank::Item, displayPath(area.path())});
    append(rows, "System areas that were skipped", omissions.systemAreas.size(), std::move(items));

    rows.push_back({Rank::Cause,
                    "Items that vanished while they were read",
                    {},
                    countText(omissions.vanishedCount)});
}

Answer answerTo(const Question& question)
{
    const FileNode& tree = *question.tree;
    const ScanOmissions& omissions = *question.omissions;
    Answer answer;
    if (!omissions.mounts.isWholeVolume || !question.volume) {
        answer.explanation =
            omissions.mounts.isWholeVolume
                ? QStringLiteral("The volume does not tell how much it has in use.")
                : displayText(tree.name()) + " is not a whole volume.\n"
                                             "It is not compared with what its volume has in use.";
        answer.rows.push_back({Rank::Sum, "On the map", {}, sizeText(tree.allocatedSize())});
        appendCauses(answer.rows, omissions);
        return answer;
    }
    answer.explanation = QStringLiteral("What the volume has in use and the map does not show.");
    const std::int64_t used = question.volume->used();
    const std::int64_t mapped = omissions.bytesOnRootVolume(tree);
    const std::int64_t reserved = VolumeStats::reserved(tree.url());
    const std::int64_t unexplained = used - mapped - reserved;
    answer.missingText = used > mapped ? sizeText(used - mapped) : QString();

    std::vector<Row>& rows = answer.rows;
    rows.push_back({Rank::Sum, "In use on the volume", {}, sizeText(used)});
    rows.push_back({Rank::Sum, "On the map", {}, sizeText(mapped)});
    if (const std::int64_t others = tree.allocatedSize() - mapped; others > 0)
        rows.back().detail = "beside " + sizeText(others) + " on other volumes";
    if (reserved > 0)
        rows.push_back({Rank::Sum, "Kept back for the system",
                        "Free, but not for every user, and so counted as in use.",
                        sizeText(reserved)});
    appendCauses(rows, omissions);
    if (tree.url().path() == "/")
        rows.push_back(
            {Rank::Cause, "Local snapshots",
             question.snapshotCount > 0 ? "What they alone hold is not known." : QString(),
             question.snapshotCount > 0
                 ? countText(static_cast<std::size_t>(question.snapshotCount))
                 : QStringLiteral("None known")});
    rows.push_back(
        {Rank::Sum, "Not explained",
         unexplained < 0
             ? "More is mapped than is in use: a file of several names counts once for each, "
               "and so does what files share."
             : "What the above hold without saying how much, the file system's own records, and "
               "deleted files that are still in use.",
         sizeText(unexplained)});
    return answer;
}

} // namespace

void WhatIsLeftOut::follow(AppState& state)
{
    connect(&state, &AppState::omissionsChanged, this, &WhatIsLeftOut::workOut);
    workOut();
}

void WhatIsLeftOut::workOut()
{
    task_.cancel();
    Question question{appState()->tree().hold(), appState()->omissions(), appState()->volume(),
                      appState()->snapshots().size()};
    if (!question.tree || !question.omissions)
        return setAnswer({"Scan a folder first."});
    setAnswer({"Adding up…"});
    const auto answer = std::make_shared<Answer>(Answer{displayText(BackgroundTasks::noMemory())});
    task_.start([question = std::move(question), answer] { *answer = answerTo(question); },
                [this, answer] { setAnswer(std::move(*answer)); });
}

void WhatIsLeftOut::setAnswer(Answer answer)
{
    beginResetModel();
    answer_ = std::move(answer);
    endResetModel();
    emit workedOut();
}

int WhatIsLeftOut::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(answer_.rows.size());
}

QVariant WhatIsLeftOut::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& row = answer_.rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case rank:
        return QVariant::fromValue(row.rank);
    case title:
        return row.title;
    case detail:
        return row.detail;
    case value:
        return row.value;
    default:
        return {};
    }
}

QHash<int, QByteArray> WhatIsLeftOut::roleNames() const
{
    return {{rank, "rank"}, {title, "title"}, {detail, "detail"}, {value, "value"}};
}

} // namespace brisalon
