#include "Brisalon/Platform/linux/TrashJournal.h"

#include "Brisalon/Platform/linux/FileText.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <random>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

namespace {

constexpr std::string_view prefix = ".brisalon-move-";

/// Takes the lock that tells others that its move still lasts. Where files cannot be
/// locked nobody gets one, and nothing is taken for left behind.
bool lock(const Descriptor& file)
{
    return ::flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

bool hasName(const Descriptor& file)
{
    struct stat status;
    return ::fstat(file.get(), &status) == 0 && status.st_nlink > 0;
}

/// Takes the text up to the next NUL off the front of `rest`; what was cut off by the
/// end is no text.
std::string_view nextText(std::string_view& rest)
{
    const auto end = rest.find('\0');
    const std::string_view text = end == std::string_view::npos ? "" : rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return text;
}

/// Undoes what the journal notes and what has not come to an end.
void undo(std::string_view notes, const Descriptor& files, const Descriptor& info)
{
    while (!notes.empty()) {
        const std::string infoName(nextText(notes));
        const std::string_view text = nextText(notes);
        const std::string name = infoName.substr(0, infoName.rfind('.'));
        struct stat status;
        if (name.empty() || text.empty() || infoName.find('/') != std::string::npos ||
            ::fstatat(files.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 ||
            errno != ENOENT)
            continue;
        // A name that was taken already is another program's.
        if (const auto found = readText(info.get(), infoName.c_str());
            found && text.starts_with(*found))
            ::unlinkat(info.get(), infoName.c_str(), 0);
    }
}

std::vector<std::string> journalsIn(const Descriptor& trash)
{
    std::vector<std::string> names;
    const int folder = ::openat(trash.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(folder < 0 ? nullptr : ::fdopendir(folder),
                                                     &::closedir);
    while (const dirent* const entry = stream ? ::readdir(stream.get()) : nullptr)
        if (std::string_view(entry->d_name).starts_with(prefix))
            names.emplace_back(entry->d_name);
    return names;
}

} // namespace

TrashJournal::~TrashJournal()
{
    if (file_.isValid())
        ::unlinkat(trash_.get(), name_.c_str(), 0);
}

int TrashJournal::begin(const Descriptor& trash)
{
    constexpr unsigned mostTries = 100;
    std::random_device random;
    for (unsigned attempt = 0; attempt < mostTries; ++attempt) {
        std::string name = std::string(prefix) + std::to_string(random());
        Descriptor file = Descriptor::open(trash.get(), name.c_str(),
                                           O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (!file.isValid() && errno != EEXIST)
            return errno;
        // Before it was locked somebody may have taken it for left behind.
        const bool isMine = file.isValid() && (lock(file) || errno != EWOULDBLOCK) && hasName(file);
        if (!isMine)
            continue;
        trash_ = trash.duplicate();
        file_ = std::move(file);
        name_ = std::move(name);
        return 0;
    }
    return EEXIST;
}

int TrashJournal::note(std::string_view infoName, std::string_view text)
{
    std::string entry;
    entry.reserve(infoName.size() + text.size() + 2);
    ((entry += infoName) += '\0') += text;
    entry += '\0';
    return writeText(file_.get(), entry);
}

void TrashJournal::recover(const Descriptor& trash, const Descriptor& files, const Descriptor& info)
{
    for (const std::string& name : journalsIn(trash)) {
        const Descriptor file =
            Descriptor::open(trash.get(), name.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK);
        if (!file.isValid() || !lock(file))
            continue;
        if (const auto notes = readText(trash.get(), name.c_str()))
            undo(*notes, files, info);
        ::unlinkat(trash.get(), name.c_str(), 0);
    }
}

} // namespace brisalon
