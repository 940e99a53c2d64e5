#pragma once

#include <QString>

#include <string_view>

namespace brisalon {

/// Bytes of a file name or path as text to show: decoded as UTF-8, with U+FFFD for
/// what is not. For people only; the text must never be used to reach a file.
QString displayText(std::string_view bytes);

/// The same of a path, with the middle of a very long one replaced by "…": laying
/// out text of some hundred thousand characters would hold up the window for
/// seconds, and nobody could read it.
QString displayPath(std::string_view path);

} // namespace brisalon
