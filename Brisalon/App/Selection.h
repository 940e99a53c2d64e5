#pragma once

#include "Brisalon/App/CoreValues.h"

#include <QList>
#include <QString>
#include <QtQml/qqml.h>

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brisalon {

/// One more thing to know of what is selected (value type `selectionFact`).
class SelectionFact {
    Q_GADGET
    QML_VALUE_TYPE(selectionFact)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString value MEMBER value)

public:
    QString label;
    QString value;

    friend bool operator==(const SelectionFact&, const SelectionFact&) = default;
};

/// What is selected, and what that means to all who show it or act on it: the large
/// files that are ticked, or else the node that was clicked, or else nothing.
///
/// While anything is ticked the node does not count, even when no listed file is
/// meant: such a selection is present and has nothing in it. A value that follows
/// nothing; the model makes it anew when asked (value type `selection`).
class Selection {
    Q_GADGET
    QML_VALUE_TYPE(selection)

    Q_PROPERTY(bool isPresent READ isPresent CONSTANT)
    Q_PROPERTY(bool isOfFiles READ isOfFiles CONSTANT)
    Q_PROPERTY(QString sizeText READ sizeText CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString subtitle READ subtitle CONSTANT)
    Q_PROPERTY(bool isOneItem READ isOneItem CONSTANT)
    Q_PROPERTY(brisalon::LargeFileEntry item READ item CONSTANT)
    Q_PROPERTY(QList<brisalon::SelectionFact> facts READ facts CONSTANT)
    Q_PROPERTY(bool canReveal READ canReveal CONSTANT)
    Q_PROPERTY(bool canZoom READ canZoom CONSTANT)

public:
    /// Nothing is selected.
    Selection() = default;
    /// `ticked` are the ids of files among `listed`, or of none.
    Selection(FileNodeValue node, const QList<LargeFileEntry>& listed,
              const std::set<std::string>& ticked);

    bool isPresent() const { return isOfFiles_ || node_; }
    /// Whether files are ticked, so that the node does not count.
    bool isOfFiles() const { return isOfFiles_; }
    /// The ticked files that are listed, in the order of the list.
    const QList<LargeFileEntry>& files() const { return files_; }

    /// What all of it occupies on disk; no more than the largest number.
    std::int64_t bytes() const;
    QString sizeText() const;

    /// What the inspector says of it: its name or how many files it is, and of what
    /// kind.
    QString title() const;
    QString subtitle() const;
    /// Whether it is one node or file, and what is known of that one; empty otherwise.
    bool isOneItem() const { return isOfFiles_ ? files_.size() == 1 : node_.isPresent(); }
    LargeFileEntry item() const;
    /// What else the inspector tells, line by line.
    QList<SelectionFact> facts() const;

    /// Whether it is one folder, though perhaps an empty one.
    bool isFolder() const;
    /// Whether the file manager can show it, and the map what is in it.
    bool canReveal() const { return isOneItem() && !isAggregate(); }
    bool canZoom() const { return !isOfFiles_ && node_.canZoom(); }

    /// The items that are meant: of a block that stands for small files, those files.
    std::vector<FileURL> urls() const;
    /// What to name of it: the items, or for a block that stands for small files the
    /// folder that they are in.
    std::vector<FileURL> places() const;
    /// Why none of `urls` can be moved to the Trash, `protectedCount` of which must not
    /// be.
    QString trashRefusal(std::int64_t protectedCount) const;

    friend bool operator==(const Selection&, const Selection&) = default;

private:
    bool isAggregate() const { return !isOfFiles_ && node_.isAggregate(); }

    FileNodeValue node_;
    QList<LargeFileEntry> files_;
    bool isOfFiles_ = false;
};

} // namespace brisalon
