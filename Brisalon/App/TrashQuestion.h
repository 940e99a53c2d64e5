#pragma once

#include "Brisalon/Services/TrashRequest.h"

#include <QString>
#include <QtQml/qqml.h>

#include <optional>

namespace brisalon {

/// What the window asks before a move to the Trash, while one waits for the answer
/// (value type `trashQuestion`).
class TrashQuestion {
    Q_GADGET
    QML_VALUE_TYPE(trashQuestion)
    Q_PROPERTY(bool isPresent MEMBER isPresent)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString message MEMBER message)

public:
    TrashQuestion() = default;
    explicit TrashQuestion(const std::optional<TrashRequest>& request);

    bool isPresent = false;
    QString title;
    QString message;

    friend bool operator==(const TrashQuestion&, const TrashQuestion&) = default;
};

} // namespace brisalon
