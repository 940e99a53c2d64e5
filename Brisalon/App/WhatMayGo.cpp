#include "Brisalon/App/WhatMayGo.h"

#include "Brisalon/App/DisplayText.h"
#include "BrisalonCore/ByteFormat.h"

#include <QLocale>
#include <QStringList>

#include <memory>
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

void WhatMayGo::follow(AppState& state)
{
    connect(&state, &AppState::treeChanged, this, &WhatMayGo::sumUp);
    sumUp();
}

void WhatMayGo::sumUp()
{
    task_.cancel();
    setSums(std::nullopt);
    const FileNodeHold tree = appState()->tree().hold();
    if (!tree)
        return;
    const auto sums = std::make_shared<std::optional<std::vector<HogSum>>>();
    task_.start(
        [tree, sums] {
            sums->emplace(HogSummary::of(*tree, placeLimit));
            // Of their own: a URL of the tree keeps the names of all items of its folder.
            for (HogSum& each : **sums)
                for (LargeFileEntry& found : each.places)
                    found.url = FileURL(found.url.path());
        },
        [this, sums] { setSums(std::move(*sums)); });
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
    if (!appState() || !appState()->tree().isPresent())
        return QStringLiteral("Scan a folder first.");
    if (!sums_)
        return QStringLiteral("Adding up…");
    const QString root = appState()->tree().name();
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
    return {{entry, "entry"}, {sum, "sum"}, {isFirst, "isFirst"}};
}

void WhatMayGo::show(int row)
{
    if (row < 0 || row >= rowCount())
        return;
    // A copy, because the list may change under what is announced meanwhile.
    const LargeFileEntry shown = place(row);
    appState()->setSelectedLargeFileIDs({});
    if (shown.id() == appState()->tree()->id())
        appState()->jumpToBreadcrumb(appState()->tree());
    else
        appState()->revealLargeFile(shown);
}

} // namespace brisalon
