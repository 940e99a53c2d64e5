#include "TrashProbe.h"

#include "BrisalonCore/ItemStatus.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <filesystem>

namespace brisalon::tests {

namespace {

int hexDigit(char digit)
{
    return static_cast<int>(std::string("0123456789ABCDEF").find(digit));
}

/// Nothing for what is not plain characters and escapes.
std::optional<std::string> decoded(const std::string& text)
{
    const std::string plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                              "-_.!~*'()/";
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (plain.find(text[i]) != std::string::npos) {
            result += text[i];
            continue;
        }
        if (text[i] != '%' || i + 2 >= text.size() || hexDigit(text[i + 1]) < 0 ||
            hexDigit(text[i + 2]) < 0)
            return std::nullopt;
        result += static_cast<char>(hexDigit(text[i + 1]) * 16 + hexDigit(text[i + 2]));
        i += 2;
    }
    return result;
}

} // namespace

std::optional<RestoreInfo> restoreInfo(const FileURL& trashed)
{
    const std::string root = trashed.deletingLastPathComponent().deletingLastPathComponent().path();
    const std::string text =
        contents(root + "/info/" + std::string(trashed.lastPathComponent()) + ".trashinfo");
    const std::string head = "[Trash Info]\nPath=";
    const std::string middle = "\nDeletionDate=";
    const auto pathEnd = text.find(middle);
    if (!text.starts_with(head) || pathEnd == std::string::npos || !text.ends_with('\n'))
        return std::nullopt;
    const auto path = decoded(text.substr(head.size(), pathEnd - head.size()));
    const std::string rest = text.substr(pathEnd + middle.size());
    if (!path || rest.find('\n') != rest.size() - 1)
        return std::nullopt;
    return RestoreInfo{*path, rest.substr(0, rest.size() - 1)};
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
