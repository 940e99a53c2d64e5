#include "Brisalon/Platform/linux/MadeFolders.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brisalon {

MadeFolders::~MadeFolders()
{
    // The system removes none that holds something.
    for (; !made_.empty(); made_.pop_back())
        ::unlinkat(made_.back().base.get(), made_.back().name.c_str(), AT_REMOVEDIR);
}

Descriptor MadeFolders::openOrMake(const Descriptor& base, const std::string& name, int flags)
{
    const auto open = [&] {
        return Descriptor::open(base.get(), name.c_str(), flags | O_DIRECTORY);
    };
    Descriptor folder = open();
    if (folder.isValid() || errno != ENOENT)
        return folder;
    // Noted first, since there may be no memory for it afterwards.
    made_.push_back({base.duplicate(), name});
    if (::mkdirat(base.get(), name.c_str(), 0700) == 0)
        return open();
    const int obstacle = errno;
    made_.pop_back();
    // Another program may have been quicker.
    folder = open();
    if (!folder.isValid() && errno == ENOENT)
        errno = obstacle;
    return folder;
}

} // namespace brisalon
