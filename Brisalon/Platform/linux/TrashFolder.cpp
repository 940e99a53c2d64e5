#include "Brisalon/Platform/linux/TrashFolder.h"

#include "Brisalon/Platform/linux/FileText.h"
#include "Brisalon/Platform/linux/TrashRecord.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <random>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

namespace {

using Reason = TrashFailure::Reason;

constexpr std::string_view infoSuffix = ".trashinfo";
/// Some file systems count characters and allow more bytes, none forbids these.
constexpr std::size_t longestName = NAME_MAX - infoSuffix.size();
constexpr unsigned mostTries = 100;

std::string infoNameOf(const std::string& name)
{
    return name + std::string(infoSuffix);
}

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

bool isThere(const Descriptor& folder, const std::string& name)
{
    struct stat status;
    return ::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

/// Renames without replacing anything; 0, or why it cannot.
int renameExclusively(const Descriptor& from, const std::string& name, const Descriptor& to,
                      const std::string& newName)
{
    if (::renameat2(from.get(), name.c_str(), to.get(), newName.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // Network and user-space file systems without exclusive renaming. In the Trash the
    // name is reserved by its information file, so all that can lie there is what some
    // program left without one.
    if (isThere(to, newName))
        return EEXIST;
    return ::renameat(from.get(), name.c_str(), to.get(), newName.c_str()) == 0 ? 0 : errno;
}

/// Waits until the file or folder is on the disk; 0, or why it may not be.
int flushed(const Descriptor& item)
{
    if (::fsync(item.get()) == 0)
        return 0;
    // What cannot be flushed by itself is not kept back.
    return errno == EINVAL ? 0 : errno;
}

} // namespace

std::variant<TrashFailure, TrashFolder> TrashFolder::open(Descriptor root, const FileURL& path,
                                                          MadeFolders& made)
{
    // Not for their paths alone: they will be flushed.
    constexpr int flags = O_RDONLY | O_NOFOLLOW;
    TrashFolder trash;
    trash.files_ = made.openOrMake(root, "files", flags);
    if (!trash.files_.isValid())
        return TrashFailure{Reason::noTrash, errno};
    trash.info_ = made.openOrMake(root, "info", flags);
    if (!trash.info_.isValid())
        return TrashFailure{Reason::noTrash, errno};
    const auto files = ItemStatus::read(trash.files_, "");
    const auto info = ItemStatus::read(trash.info_, "");
    if (!files || !info)
        return TrashFailure{Reason::noTrash, errno};
    TrashJournal::recover(root, trash.files_, trash.info_);
    trash.root_ = std::move(root);
    trash.filesURL_ = path.appendingPathComponent("files");
    trash.filesIdentity_ = files->identity;
    trash.infoIdentity_ = info->identity;
    trash.isNew_ = made.any();
    return trash;
}

std::variant<std::string, TrashFailure> TrashFolder::reserve(const Source& source)
{
    if (!journal_.file().isValid())
        if (const int error = journal_.begin(root_))
            return TrashFailure{Reason::noTrash, error};
    const std::string text = trashInfo(source.path, std::time(nullptr));
    for (unsigned attempt = 0; attempt < mostTries; ++attempt) {
        std::string name = trashName(source.name, numberOfTry(attempt), longestName);
        // Noted first, since there may be no memory for it afterwards.
        unflushed_.push_back(name);
        const int error = isThere(files_, name) ? EEXIST : writeInfo(infoNameOf(name), text);
        if (error == 0)
            return name;
        unflushed_.pop_back();
        if (error != EEXIST)
            return TrashFailure{Reason::noTrash, error};
    }
    return TrashFailure{Reason::noTrash, EEXIST};
}

int TrashFolder::writeInfo(const std::string& infoName, const std::string& text)
{
    if (const int error = journal_.note(infoName, text))
        return error;
    Descriptor file = Descriptor::open(info_.get(), infoName.c_str(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!file.isValid())
        return errno;
    int error = writeText(file.get(), text);
    if (!file.close() && error == 0)
        error = errno;
    if (error != 0)
        ::unlinkat(info_.get(), infoName.c_str(), 0);
    return error;
}

void TrashFolder::release(const std::string& name) const noexcept
{
    // Without memory of its own: it may be for want of that that the name is given up.
    std::array<char, NAME_MAX + 1> infoName;
    const auto end =
        std::copy_n(name.begin(), std::min(name.size(), longestName), infoName.begin());
    *std::copy(infoSuffix.begin(), infoSuffix.end(), end) = '\0';
    ::unlinkat(info_.get(), infoName.data(), 0);
}

std::variant<FileURL, TrashFailure> TrashFolder::take(const Source& source, std::string name)
{
    try {
        return takeOrRename(source, name);
    } catch (...) {
        if (!name.empty())
            release(name);
        throw;
    }
}

/// `name` is the one that is reserved, empty while there is none.
std::variant<FileURL, TrashFailure> TrashFolder::takeOrRename(const Source& source,
                                                              std::string& name)
{
    for (unsigned attempt = 0; attempt < mostTries; ++attempt) {
        const int error = flush();
        // Before the move, since there may be no memory for it afterwards.
        FileURL destination = filesURL_.appendingPathComponent(name);
        const auto failure = error != 0 ? TrashFailure{Reason::noTrash, error} : move(source, name);
        if (!failure) {
            hasArrivals_ = true;
            return destination;
        }
        if (failure->reason != Reason::swapped)
            release(name);
        name.clear();
        if (*failure != TrashFailure{Reason::refused, EEXIST})
            return *failure;
        auto next = reserve(source);
        if (const TrashFailure* const none = std::get_if<TrashFailure>(&next))
            return *none;
        name = std::move(std::get<std::string>(next));
    }
    release(name);
    return TrashFailure{Reason::noTrash, EEXIST};
}

int TrashFolder::flush()
{
    if (flushError_ == 0 && !unflushed_.empty()) {
        flushError_ = flushReserved();
        unflushed_.clear();
        isNew_ = false;
    }
    return flushError_;
}

int TrashFolder::flushReserved() const
{
    // One after the other, many files would take minutes; for a few it would take long
    // to wait for all that other programs are writing.
    constexpr std::size_t few = 16;
    if (isNew_ || unflushed_.size() > few)
        return ::syncfs(info_.get()) == 0 ? 0 : errno;
    for (const std::string& name : unflushed_) {
        const Descriptor file = Descriptor::open(info_.get(), infoNameOf(name).c_str(),
                                                 O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
        if (const int error = file.isValid() ? flushed(file) : errno)
            return error;
    }
    if (const int error = flushed(journal_.file()))
        return error;
    return flushed(info_);
}

std::optional<TrashFailure> TrashFolder::move(const Source& source, const std::string& name) const
{
    // Without the folder of information nothing here could be restored; nor could an
    // item that is here already, or that loses its information, if it moved again.
    const auto folder = ItemStatus::read(source.folder, "");
    if (!folder || source.wanted == infoIdentity_ || folder->identity == filesIdentity_ ||
        folder->identity == infoIdentity_)
        return TrashFailure{Reason::refused, EBUSY};
    // As late as can be, in the very folder that is renamed from; and held, so that it
    // can be told apart afterwards also where the numbers of items go by their paths.
    const Descriptor item =
        Descriptor::open(source.folder.get(), source.name.c_str(), O_PATH | O_NOFOLLOW);
    const auto before = item.isValid() ? ItemStatus::read(item, "") : std::nullopt;
    if (!before)
        return TrashFailure::unreached(errno);
    if (before->identity != source.wanted)
        return TrashFailure{Reason::changed};
    if (const int error = renameExclusively(source.folder, source.name, files_, name))
        return TrashFailure{Reason::refused, error};
    // In the moment between another item may have taken the name.
    const auto wanted = ItemStatus::read(item, "");
    const auto arrived = wanted ? ItemStatus::read(files_, name.c_str()) : std::nullopt;
    const int unseen = arrived ? 0 : errno;
    if (arrived && arrived->identity == wanted->identity)
        return std::nullopt;
    if (const int error = renameExclusively(files_, name, source.folder, source.name))
        return TrashFailure{Reason::swapped, error};
    return unseen == 0 ? TrashFailure{Reason::changed} : TrashFailure{Reason::refused, unseen};
}

void TrashFolder::finish() noexcept
{
    // Should it fail, the items are back where they came from after a power failure.
    if (std::exchange(hasArrivals_, false))
        ::fsync(files_.get());
}

} // namespace brisalon
