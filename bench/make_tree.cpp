// make_tree DIR ITEMS
//
// Makes DIR, which must not exist, and fills it with that many items: about a ninth
// of them folders, a fiftieth symbolic links, the rest files. Folders lie nine deep
// on average in a tree of 100,000 and hold a few files each, now and then thousands;
// most files fit one block, a few are large. The same ITEMS always give the same
// tree. Files have real blocks, reserved but not written, so that a large tree is
// made in seconds; they take about 6 KB of disk each.

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

/// SplitMix64 (Steele, Lea, Flood 2014): the same numbers with every library.
class Random {
public:
    std::uint64_t next() noexcept
    {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
        return z ^ (z >> 31);
    }
    std::uint64_t below(std::uint64_t limit) noexcept { return next() % limit; }
    /// Uniform in (0, 1].
    double unit() noexcept { return static_cast<double>((next() >> 11) + 1) * 0x1p-53; }

private:
    std::uint64_t state_ = 1;
};

[[noreturn]] void fail(const std::string& path)
{
    std::perror(path.c_str());
    std::exit(1);
}

std::string child(std::string folder, const char* prefix, long long number)
{
    return folder.append(prefix).append(std::to_string(number));
}

void makeFile(const std::string& path, off_t size)
{
    const int handle = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (handle < 0)
        fail(path);
    if (const int error = size > 0 ? ::posix_fallocate(handle, 0, size) : 0) {
        errno = error;
        fail(path);
    }
    ::close(handle);
}

/// A Pareto tail: most files fit one block, one in some ten thousand has a megabyte.
off_t fileSize(Random& random)
{
    constexpr double smallest = 700;
    constexpr double largest = 64.0 * 1024 * 1024;
    return static_cast<off_t>(std::min(smallest * std::pow(random.unit(), -1 / 1.3), largest));
}

/// How many files go into the next folder: median 4, mean about 9, now and then thousands.
std::uint64_t filesOfFolder(Random& random)
{
    return static_cast<std::uint64_t>(std::min(2.5 * std::pow(random.unit(), -1 / 1.35), 20'000.0));
}

} // namespace

int main(int argc, char** argv)
{
    const long long wanted = argc == 3 ? std::atoll(argv[2]) : 0;
    if (wanted < 1) {
        std::fprintf(stderr, "usage: make_tree DIR ITEMS\n");
        return 2;
    }
    const std::string top = argv[1];
    if (::mkdir(top.c_str(), 0755) != 0)
        fail(top);

    Random random;
    std::vector<std::string> folders{top};
    std::string current = top;
    auto filesLeft = filesOfFolder(random);
    for (long long made = 0; made < wanted; ++made) {
        if (filesLeft == 0) {
            current = child(folders[random.below(folders.size())], "/folder", made);
            if (::mkdir(current.c_str(), 0755) != 0)
                fail(current);
            folders.push_back(current);
            filesLeft = filesOfFolder(random);
            continue;
        }
        --filesLeft;
        const std::string path = child(current, "/item-", made);
        if (random.below(45) != 0)
            makeFile(path, fileSize(random));
        else if (::symlink("somewhere", path.c_str()) != 0)
            fail(path);
    }
}
