#pragma once

#include <QString>

#include <string_view>

namespace brisalon {

/// Bytes of a file name or path as text to show: decoded as UTF-8, with U+FFFD for
/// what is not. A name is one line, whatever is in it: a line feed or another control
/// character becomes a space. For people only; the text must never be used to reach a
/// file.
QString displayText(std::string_view bytes);

/// A name to be shown on several lines, with invisible marks where lines may end: before
/// the extensions, and after hyphens and underscores. A number stays in one piece with its
/// dots ("6.1.0").
QString breakable(const QString& name);
/// Takes those marks out again.
QString withoutBreaks(QString text);

/// The same of a path, with the middle of a very long one replaced by "…": laying
/// out text of some hundred thousand characters would hold up the window for
/// seconds, and nobody could read it.
QString displayPath(std::string_view path);

} // namespace brisalon
