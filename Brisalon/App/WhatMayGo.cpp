#include "Brisalon/App/WhatMayGo.h"

#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

#include <QLocale>
#include <QStringList>

#include <chrono>
#include <utility>

namespace brisalon {

namespace {

/// Of each kind; who wants to see them all has the map.
constexpr std::size_t placeLimit = 5;

QString sizeTextOf(std::int64_t bytes)
{
    return displayText(ByteFormat::string(bytes));
}

} // namespace

QString HogSumValue::sizeText() const
{
    return sizeTextOf(sum_.allocatedSize);
}

QString HogSumValue::placesText() const
{
    return sum_.placeCount == 1
               ? QStringLiteral("1 place")
               : QLocale().toString(static_cast<qulonglong>(sum_.placeCount)) + " places";
}

QString HogSumValue::spokenText() const
{
    const Risk risk = brisalon::risk(sum_.kind);
    return QStringList{displayText(title(sum_.kind)), sizeText(), displayText(title(risk)),
                       displayText(summary(risk)), placesText()}
        .join(", ");
}

void WhatMayGo::setAppState(AppState* state)
{
    if (state == state_)
        return;
    if (state_)
        state_->disconnect(this);
    state_ = state;
    connect(state_, &AppState::treeChanged, this, &WhatMayGo::sumUp);
    sumUp();
    emit appStateChanged();
}

void WhatMayGo::sumUp()
{
    work_.request_stop();
    work_ = std::stop_source(std::nostopstate);
    setSums(std::nullopt);
    const FileNodeHold tree = state_->tree().hold();
    if (!tree)
        return;
    // A tree of everyday size is summed up before the first frame.
    constexpr std::chrono::milliseconds noTime(30);
    const auto sums = std::make_shared<std::optional<std::vector<HogSum>>>();
    work_ = tasks_.start(
        [tree, sums](const BackgroundTasks::Task&) {
            sums->emplace(HogSummary::of(*tree, placeLimit));
            // Of their own: a URL of the tree keeps the names of all items of its folder.
            for (HogSum& each : **sums)
                for (LargeFileEntry& found : each.places)
                    found.url = FileURL(found.url.path());
        },
        [this, sums](const std::stop_token& stop) {
            if (!stop.stop_requested())
                setSums(std::move(*sums));
        },
        noTime);
}

void WhatMayGo::setSums(std::optional<std::vector<HogSum>> sums)
{
    beginResetModel();
    sums_ = std::move(sums);
    rows_.clear();
    for (std::size_t kind = 0; sums_ && kind < sums_->size(); ++kind)
        for (std::size_t i = 0; i < (*sums_)[kind].places.size(); ++i)
            rows_.push_back({kind, i});
    endResetModel();
    emit summedUp();
}

QString WhatMayGo::safeText() const
{
    const std::int64_t bytes = sums_ ? HogSummary::safeBytes(*sums_) : 0;
    return bytes > 0 ? sizeTextOf(bytes) : QString();
}

QString WhatMayGo::explanation() const
{
    if (!state_ || !state_->tree().isPresent())
        return QStringLiteral("Scan a folder first.");
    if (!sums_)
        return QStringLiteral("Adding up…");
    const QString root = state_->tree().name();
    if (sums_->empty())
        return QStringLiteral("Nothing in %1 is of a kind that is known to pile up.").arg(root);
    std::int64_t bytes = 0;
    for (const HogSum& each : *sums_)
        bytes += each.allocatedSize;
    return QStringLiteral("What is known to pile up in %1 takes %2.\n"
                          "Click a place to see it on the map.")
        .arg(root, sizeTextOf(bytes));
}

const LargeFileEntry& WhatMayGo::place(int row) const
{
    const Row& at = rows_[static_cast<std::size_t>(row)];
    return (*sums_)[at.sum].places[at.place];
}

int WhatMayGo::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant WhatMayGo::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& at = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case entry:
        return QVariant::fromValue(place(index.row()));
    case folder:
        return displayPath(place(index.row()).url.deletingLastPathComponent().path());
    case sum:
        return QVariant::fromValue((*sums_)[at.sum]);
    case isFirst:
        return at.place == 0;
    default:
        return {};
    }
}

QHash<int, QByteArray> WhatMayGo::roleNames() const
{
    return {{entry, "entry"}, {folder, "folder"}, {sum, "sum"}, {isFirst, "isFirst"}};
}

void WhatMayGo::show(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    // A copy, because the list may change under what is announced meanwhile.
    const LargeFileEntry shown = place(row);
    state_->setSelectedLargeFileIDs({});
    if (shown.id() == state_->tree()->id())
        state_->jumpToBreadcrumb(state_->tree());
    else
        state_->revealLargeFile(shown);
}

} // namespace brisalon
