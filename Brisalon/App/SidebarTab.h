#pragma once

#include <QObject>
#include <QtQml/qqml.h>

namespace brisalon {

/// The vocabulary of the lists that the right-hand column can show, for C++ and,
/// as `SidebarTab`, for QML.
namespace sidebar {
Q_NAMESPACE
QML_NAMED_ELEMENT(SidebarTab)

/// In the order of the column's segments. With capitals, because QML sees no other
/// names.
enum class SidebarTab { LargeFiles, Snapshots };
Q_ENUM_NS(SidebarTab)
} // namespace sidebar

using sidebar::SidebarTab;

} // namespace brisalon
