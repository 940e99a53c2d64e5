// Any bytes as a path: what is taken apart fits together again, and what is made
// absolute is so.

#include "BrisalonCore/FileURL.h"

#include "Require.h"

#include <cstdint>
#include <string_view>

using brisalon::FileURL;
using brisalon::tests::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const FileURL url(text);
    const std::string path = url.path();
    require(path == "/" || !path.ends_with('/'));
    require(text.starts_with(path) || path == "/");
    require(url.pathEquals(path) && FileURL(path) == url);

    const std::string name(url.lastPathComponent());
    require(name.find('/') == std::string::npos && path.ends_with(name));
    if (!name.empty() && path.find('/') != std::string::npos) {
        const FileURL again = url.deletingLastPathComponent().appendingPathComponent(name);
        require(again.standardized() == url.standardized());
        require(again.lastPathComponent() == name);
    }

    const FileURL standard = url.standardized();
    const std::string whole = standard.path() + '/';
    require(whole.starts_with('/') && standard.standardized() == standard);
    if (standard.path() != "/") {
        for (const char* const piece : {"//", "/./", "/../"})
            require(whole.find(piece) == std::string::npos);
    }
    return 0;
}
