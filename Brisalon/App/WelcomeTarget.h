#pragma once

#include <QObject>
#include <QtQml/qqml.h>

namespace brisalon {

/// The vocabulary of the welcome screen's cards, for C++ and, as `WelcomeTarget`, for
/// QML.
namespace welcome {
Q_NAMESPACE
QML_NAMED_ELEMENT(WelcomeTarget)

/// In the order of the cards. With capitals, because QML sees no other names.
enum class WelcomeTarget { None, Home, ThisMac, ChooseFolder };
Q_ENUM_NS(WelcomeTarget)
} // namespace welcome

using welcome::WelcomeTarget;

} // namespace brisalon
