#include "Brisalon/Platform/linux/TrashFolder.h"

#include "Brisalon/Platform/linux/ReachedFolder.h"
#include "Brisalon/Platform/linux/TrashRecord.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <random>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

namespace {

constexpr std::string_view infoSuffix = ".trashinfo";

/// The number for the n-th try to find a free name: small ones first, since people
/// see them; then any, since so many equal names would take for ever to count
/// through.
std::uint64_t numberOfTry(unsigned attempt)
{
    constexpr unsigned counted = 10;
    if (attempt < counted)
        return attempt == 0 ? 0 : attempt + 1;
    thread_local std::mt19937_64 random{std::random_device{}()};
    return random();
}

/// Renames without replacing anything; 0, or why it cannot.
int renameExclusively(int from, const char* name, int to, const char* newName)
{
    if (::renameat2(from, name, to, newName, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Network and user-space file systems without exclusive renaming. The name is
    // reserved by its information file, so all that can lie there is what some
    // program left without one.
    struct stat status;
    if (::fstatat(to, newName, &status, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return ::renameat(from, name, to, newName) == 0 ? 0 : errno;
}

bool writeAll(int handle, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = ::write(handle, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

} // namespace

std::optional<TrashFolder> TrashFolder::open(Descriptor root, const FileURL& path)
{
    TrashFolder trash;
    trash.files_ = openOrMakeFolder(root.get(), "files");
    trash.info_ = openOrMakeFolder(root.get(), "info");
    const auto files = ItemStatus::read(trash.files_, "");
    const auto info = ItemStatus::read(trash.info_, "");
    if (!files || !info)
        return std::nullopt;
    trash.filesURL_ = path.appendingPathComponent("files");
    trash.mount_ = files->mount;
    trash.filesIdentity_ = files->identity;
    trash.infoIdentity_ = info->identity;
    // Some file systems count characters and allow more bytes, none forbids these.
    trash.longestName_ = NAME_MAX - infoSuffix.size();
    return trash;
}

std::variant<FileURL, TrashFailure> TrashFolder::take(const Source& source) const
{
    using Reason = TrashFailure::Reason;
    // Without the folder of information nothing here could be restored; nor could an
    // item that is here already, or that loses its information, if it moved again.
    const auto folder = ItemStatus::read(source.folder, "");
    if (!folder || source.wanted == infoIdentity_ || folder->identity == filesIdentity_ ||
        folder->identity == infoIdentity_)
        return TrashFailure{Reason::refused, EBUSY};

    constexpr unsigned mostTries = 100;
    const std::string text = trashInfo(source.path, std::time(nullptr));
    for (unsigned attempt = 0; attempt < mostTries; ++attempt) {
        const std::string name = trashName(source.name, numberOfTry(attempt), longestName_);
        const std::string infoName = name + std::string(infoSuffix);
        const int error = reserve(infoName, text);
        if (error == EEXIST)
            continue;
        if (error != 0)
            return TrashFailure{Reason::noTrash, error};
        const auto failure = move(source, name);
        if (!failure)
            return filesURL_.appendingPathComponent(name);
        takeBack(infoName);
        if (*failure != TrashFailure{Reason::refused, EEXIST})
            return *failure;
    }
    return TrashFailure{Reason::noTrash, EEXIST};
}

int TrashFolder::reserve(const std::string& infoName, const std::string& text) const
{
    Descriptor file = Descriptor::open(info_.get(), infoName.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!file.isValid())
        return errno;
    const bool isWritten = writeAll(file.get(), text);
    const int error = isWritten ? 0 : errno;
    if (file.close() && isWritten)
        return 0;
    takeBack(infoName);
    return error != 0 ? error : EIO;
}

void TrashFolder::takeBack(const std::string& infoName) const
{
    ::unlinkat(info_.get(), infoName.c_str(), 0);
}

std::optional<TrashFailure> TrashFolder::move(const Source& source, const std::string& name) const
{
    // As late as can be, in the very folder that is renamed from.
    const auto status = ItemStatus::read(source.folder, source.name.c_str());
    if (!status || status->identity != source.wanted)
        return TrashFailure{TrashFailure::Reason::changed};
    const int error =
        renameExclusively(source.folder.get(), source.name.c_str(), files_.get(), name.c_str());
    if (error == 0)
        return std::nullopt;
    // A part of a volume that renames no further than itself.
    if (error == EXDEV)
        return TrashFailure{TrashFailure::Reason::noTrash, error};
    return TrashFailure{TrashFailure::Reason::refused, error};
}

} // namespace brisalon
