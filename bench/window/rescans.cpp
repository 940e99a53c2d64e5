// rescans DIR [COUNT]
//
// Opens the real window off-screen, scans DIR (as make_tree makes it) and scans it
// again COUNT times (25). A file in DIR grows before every scan, so that each tree is
// another, and the pointer crosses the map, so that QML reads its nodes. Prints, after
// each scan, the memory in use and the resident set in megabytes and how many of the
// trees are alive.

#include "Window.h"

#include "Brisalon/Platform/Workers.h"

#include <QThreadPool>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <malloc.h>
#include <unistd.h>

using namespace brisalon;

namespace {

constexpr double megabyte = 1024 * 1024;

double megabytesInUse()
{
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / megabyte;
}

double megabytesResident()
{
    std::ifstream file("/proc/self/statm");
    double size = 0;
    double resident = 0;
    file >> size >> resident;
    return resident * static_cast<double>(::sysconf(_SC_PAGESIZE)) / megabyte;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 3) {
        std::fprintf(stderr, "usage: rescans DIR [COUNT]\n");
        return 2;
    }
    const std::string root = argv[1];
    const int count = argc > 2 ? std::atoi(argv[2]) : 25;
    bench::Window window(argc, argv);

    std::vector<std::weak_ptr<const FileNode>> trees;
    std::printf("%5s %10s %10s %6s\n", "scan", "in use", "resident", "trees");
    for (int scan = 0; scan <= count; ++scan) {
        std::ofstream(root + "/grows", std::ios::app) << std::string(300'000, 'x');
        window.scan(FileURL(root));
        trees.push_back(window.state().tree().hold());
        for (int step = 0; step < 20; ++step) {
            window.driver().hover(QPoint(300 + 25 * step, 200 + 20 * step));
            window.driver().settle();
        }
        workers().waitForDone();
        const auto living =
            std::ranges::count_if(trees, [](const auto& tree) { return !tree.expired(); });
        std::printf("%5d %10.1f %10.1f %6td\n", scan, megabytesInUse(), megabytesResident(),
                    living);
    }
}
