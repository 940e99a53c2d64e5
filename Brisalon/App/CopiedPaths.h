#pragma once

#include "BrisalonCore/FileURL.h"

#include <QMimeData>

#include <memory>
#include <span>

namespace brisalon {

/// What the clipboard gets of items: their paths as text, one on each line, and the
/// items themselves as file managers take them to paste. A path that is no text, or of
/// several lines, stands there as a percent-encoded address of a file, so that nothing
/// of it is lost.
std::unique_ptr<QMimeData> copiedPaths(std::span<const FileURL> items);

} // namespace brisalon
