#include "TrashProbe.h"

#include "BrisalonCore/ItemStatus.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <filesystem>

namespace brisalon::tests {

std::optional<RestoreInfo> restoreInfo(const FileURL& trashed)
{
    const FileURL trash = trashed.deletingLastPathComponent().deletingLastPathComponent();
    return RestoreInfo::parse(contents(trash.path() + "/info/" +
                                       std::string(trashed.lastPathComponent()) + ".trashinfo"));
}

std::string originOf(const FileURL& trashed)
{
    return restoreInfo(trashed).value_or(RestoreInfo()).path;
}

FileURL destinationOf(const DesktopTrash::Result& result)
{
    const FileURL* const destination = std::get_if<FileURL>(&result);
    EXPECT_TRUE(destination) << std::strerror(std::get<TrashFailure>(result).error);
    return destination ? *destination : FileURL();
}

DesktopTrash::Result putNow(const DesktopTrash& trash, const FileURL& url)
{
    return trash.put(TrashItem::record({&url, 1}).front());
}

bool isJustNow(const std::string& date)
{
    std::tm local{};
    const char* const end = ::strptime(date.c_str(), "%Y-%m-%dT%H:%M:%S", &local);
    local.tm_isdst = -1;
    const double age = std::difftime(std::time(nullptr), std::mktime(&local));
    return end && *end == '\0' && date.size() == 19 && age >= 0 && age < 60;
}

void waitForTheNextBirth(const std::string& folder)
{
    const auto birth = [probe = folder + "/probe"] {
        std::filesystem::remove(probe);
        writeText(probe, "");
        const auto status = ItemStatus::read(probe);
        return status ? status->identity.birth : 0;
    };
    const auto now = birth();
    while (now != 0 && birth() == now) {
    }
    std::filesystem::remove(folder + "/probe");
}

} // namespace brisalon::tests
