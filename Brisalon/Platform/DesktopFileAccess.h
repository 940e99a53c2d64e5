#pragma once

#include "Brisalon/Platform/FileAccess.h"

namespace brisalon {

/// File access on the desktop that the program runs on.
class DesktopFileAccess final : public FileAccess {
public:
    bool hidesPrivatePlaces() const override;
    bool isReadable(const FileURL& url) const override;
    bool exists(const FileURL& url) const override;
};

} // namespace brisalon
