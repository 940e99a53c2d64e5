// Any text as a table of mounts is read without harm; one that is written as the system
// writes it comes back byte for byte.

#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"

#include "Require.h"

#include <algorithm>
#include <tuple>

#include <fuzzer/FuzzedDataProvider.h>

using brisalon::Mount;
using brisalon::MountTable;
using brisalon::tests::require;

namespace {

/// As the kernel's seq_file writes a field (fs/proc_namespace.c): these bytes in octal.
std::string escaped(const std::string& text)
{
    std::string result;
    for (const char c : text) {
        if (std::string_view(" \t\n\\#").find(c) == std::string_view::npos) {
            result += c;
            continue;
        }
        result += '\\';
        for (const int shift : {6, 3, 0})
            result += static_cast<char>('0' + ((static_cast<unsigned char>(c) >> shift) & 7));
    }
    return result;
}

/// Of any bytes but NUL, which no field of the table can hold.
std::string field(FuzzedDataProvider& input)
{
    std::string text = input.ConsumeRandomLengthString(40);
    std::erase(text, '\0');
    return text;
}

void readsWhatTheSystemWrites(FuzzedDataProvider& input)
{
    std::string text;
    std::vector<Mount> written(3);
    for (Mount& mount : written) {
        mount.id = 3 * input.ConsumeIntegralInRange<std::uint64_t>(1, 1000) +
                   static_cast<std::uint64_t>(&mount - written.data());
        mount.parent = input.ConsumeIntegral<std::uint32_t>();
        mount.root = '/' + field(input);
        mount.point = '/' + field(input);
        mount.type = 't' + field(input);
        mount.source = field(input);
        text += std::to_string(mount.id) + ' ' + std::to_string(mount.parent) + " 8:1 " +
                escaped(mount.root) + ' ' + escaped(mount.point) +
                (input.ConsumeBool() ? " rw,relatime shared:1 master:2 - " : " rw - ") +
                escaped(mount.type) + ' ' + escaped(mount.source) + " rw\n";
    }
    const auto fields = [](const Mount& mount) {
        return std::tie(mount.id, mount.parent, mount.root, mount.point, mount.type, mount.source);
    };
    require(std::ranges::equal(MountTable(text).mounts(), written, {}, fields, fields));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzedDataProvider input(data, size);
    if (input.ConsumeBool()) {
        readsWhatTheSystemWrites(input);
        return 0;
    }
    const std::string path = '/' + input.ConsumeRandomLengthString(20);
    const MountTable table(input.ConsumeRemainingBytesAsString());
    for (const Mount& mount : table.mounts()) {
        require(mount.point.starts_with('/') && !mount.type.empty());
        const auto place = table.place(mount.point);
        require(place.has_value() == (table.at(mount.point) != nullptr));
    }
    for (const Mount* const passed : table.way(path))
        require(brisalon::paths::isWithin(path, passed->point));
    return 0;
}
