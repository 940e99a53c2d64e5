#include "Brisalon/Platform/GraphicsProcessor.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace brisalon {

bool hasGraphicsDevice()
{
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/dri", error)) {
        if (entry.path().filename().native().starts_with("renderD"))
            return true;
    }
    // The one proprietary driver that may come without a render node.
    return std::filesystem::exists("/dev/nvidiactl", error);
}

} // namespace brisalon
