// Any path in the file that tells where an item in the Trash came from: a reader that
// knows only the rules for such files gets the same bytes back.

#include "Brisalon/Platform/linux/TrashRecord.h"

#include "Require.h"
#include "support/RestoreInfo.h"

#include <cstdint>
#include <string_view>

using namespace brisalon::tests;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view path(reinterpret_cast<const char*>(data), size);
    const auto info = RestoreInfo::parse(brisalon::trashInfo(path, 1'700'000'000));
    require(info && info->path == path);
    require(info->date.size() == std::string_view("YYYY-MM-DDThh:mm:ss").size());
    return 0;
}
