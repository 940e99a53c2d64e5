#include "BrisalonCore/NodeKind.h"

#include <array>

namespace brisalon {

std::string_view NodeKind::title() const noexcept
{
    static constexpr std::array<std::string_view, 4> titles{"Small files", "File", "Folder",
                                                            "Package"};
    return titles[static_cast<std::size_t>(case_)];
}

} // namespace brisalon
