// stalls [ROW...]
//
// Prints the longest time for which the program's main thread was busy, in milliseconds,
// while each of these was done in the real window, off-screen. A heartbeat on that
// thread measures it: by the clock, in which other threads and programs have their
// share, and by the thread's own processor time. Takes about four gigabytes.

#include "Window.h"

#include "Brisalon/Platform/Workers.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <time.h>
#include <unistd.h>

using namespace brisalon;

namespace {

/// Looks at the clocks every millisecond that the main thread is free.
class Heartbeat {
public:
    Heartbeat()
    {
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { beat(); });
        timer_.start(1);
    }
    /// Begins anew, in time that counts.
    void start()
    {
        longest_ = longestOwn_ = 0;
        begin_ = last_ = now(CLOCK_MONOTONIC);
        lastOwn_ = now(CLOCK_THREAD_CPUTIME_ID);
    }
    void print(const char* row)
    {
        beat();
        std::printf("%-52s %8.1f %8.1f %9.0f\n", row, longest_, longestOwn_, last_ - begin_);
        std::fflush(stdout);
    }

private:
    static double now(clockid_t clock)
    {
        timespec time{};
        ::clock_gettime(clock, &time);
        return 1e3 * static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_nsec);
    }
    void beat()
    {
        const double time = now(CLOCK_MONOTONIC);
        const double own = now(CLOCK_THREAD_CPUTIME_ID);
        longest_ = std::max(longest_, time - std::exchange(last_, time));
        longestOwn_ = std::max(longestOwn_, own - std::exchange(lastOwn_, own));
    }

    QTimer timer_;
    double begin_ = 0;
    double last_ = 0;
    double lastOwn_ = 0;
    double longest_ = 0;
    double longestOwn_ = 0;
};

/// Says that every second item is in the Trash, and touches none.
class PretendedTrash final : public Workspace {
public:
    void recycle(std::vector<TrashItem> items, Completion completion) override
    {
        const auto recycled = std::make_shared<Recycled>();
        tasks_.start(
            [items = std::move(items), recycled](const BackgroundTasks::Task&) {
                for (std::size_t i = 0; i < items.size(); i += 2)
                    recycled->moved.push_back({items[i].url, items[i].url});
            },
            [completion = std::move(completion), recycled](const std::stop_token&) {
                completion(std::move(*recycled));
            });
    }
    void reveal(const FileURL&, Started) override {}
    void openTerminal(const FileURL&, Started) override {}
    bool openAddress(std::string_view) override { return true; }

private:
    BackgroundTasks tasks_;
};

/// "/wide": that many files in folders of that many.
FileNode wideTree(std::size_t files, std::size_t inEach, std::int64_t largest)
{
    const FileURL root("/wide");
    std::vector<FileNode> folders;
    for (std::size_t made = 0; made < files; made += inEach) {
        const FileURL folder = root.appendingPathComponent("folder " + std::to_string(made));
        std::vector<FileNode> nodes;
        for (std::size_t i = 0; i < inEach; ++i)
            nodes.push_back(
                FileNodeBuilder::make(folder.appendingPathComponent("file " + std::to_string(i)),
                                      largest - static_cast<std::int64_t>(i), NodeKind::file));
        folders.push_back(
            FileNodeBuilder::make(folder, largest, NodeKind::directory, std::move(nodes)));
    }
    return FileNodeBuilder::make(root, largest, NodeKind::directory, std::move(folders));
}

/// "/deep": that many folders in each other, all of one name, and a file in the last.
FileNode deepTree(int levels)
{
    std::vector<FileURL> folders{FileURL("/deep")};
    for (int level = 1; level < levels; ++level)
        folders.push_back(folders.back().appendingPathComponent("folder"));
    FileNode node = FileNodeBuilder::make(folders.back().appendingPathComponent("file"), 1'000'000,
                                          NodeKind::file);
    for (; !folders.empty(); folders.pop_back())
        node = FileNodeBuilder::make(folders.back(), 1'000'000, NodeKind::directory,
                                     {std::move(node)});
    return node;
}

/// The trees that need no disk, by their root; the scanner's for all others.
ScanResult scanned(const FileURL& root, const DiskScanner::ProgressCallback& progress,
                   std::stop_token stop, ScanOmissions& omissions)
{
    static std::int64_t largest = 1'000'000;
    if (root == FileURL("/wide"))
        return wideTree(5'000'000, 1'000, ++largest);
    if (root == FileURL("/wide/level"))
        return wideTree(100'000, 100'000, ++largest);
    if (root == FileURL("/deep"))
        return deepTree(10'000);
    return AppState::scanner.scan(root, progress, std::move(stop), &omissions);
}

void makeFiles(const QString& folder, int count)
{
    const int place = ::open(folder.toLocal8Bit().constData(), O_PATH | O_DIRECTORY);
    for (int i = 0; i < count; ++i)
        ::close(::openat(place, std::to_string(i).c_str(), O_CREAT | O_WRONLY, 0600));
    ::close(place);
}

void waitFor(const std::function<bool()>& condition)
{
    while (!condition())
        QTest::qWait(1);
}

} // namespace

int main(int argc, char** argv)
{
    PretendedTrash trash;
    bench::Window window(argc, argv, scanned, &trash);
    AppState& state = window.state();
    const std::vector<std::string> wanted(argv + 1, argv + argc);
    Heartbeat heart;
    const auto isWanted = [&](const char* row) {
        return wanted.empty() || std::ranges::find(wanted, row) != wanted.end();
    };
    const auto measure = [&](const char* row, const std::function<void()>& act,
                             const std::function<bool()>& isDone) {
        waitFor([] { return workers().activeThreadCount() == 0; });
        heart.start();
        act();
        waitFor(isDone);
        // What is destroyed afterwards, and the frames that show the new state.
        QTest::qWait(300);
        waitFor([] { return workers().activeThreadCount() == 0; });
        heart.print(row);
    };
    const auto isMapped = [&] { return !state.isScanning() && window.driver().waitForMap(); };
    const auto scan = [&](const char* root) { state.startScan(FileURL(root)); };

    std::printf("%-52s %8s %8s %9s\n", "", "longest", "its own", "all of it");
    if (isWanted("level")) {
        scan("/wide/level");
        waitFor(isMapped);
        measure(
            "a level of 100,000 blocks, shown for the first time",
            [&] { state.zoom(state.tree().at(state.tree()->children()[0])); }, isMapped);
        measure("the level above it again", [&] { state.zoomUpOneLevel(); }, isMapped);
    }
    if (isWanted("path")) {
        scan("/deep");
        waitFor(isMapped);
        measure(
            "a file below 10,000 folders revealed",
            [&] { state.revealLargeFile(state.largeFiles().front()); }, isMapped);
        measure("the level above it", [&] { state.zoomUpOneLevel(); }, isMapped);
        measure(
            "the level below that again",
            [&] { state.zoom(state.current().at(state.current()->children()[0])); }, isMapped);
        measure(
            "the first of the 10,000 crumbs",
            [&] { state.jumpToBreadcrumb(state.breadcrumbs().first()); }, isMapped);
    }
    if (isWanted("trash")) {
        const QTemporaryDir folder;
        makeFiles(folder.path(), 1'000'000);
        scan(folder.path().toLocal8Bit().constData());
        waitFor(isMapped);
        state.setSelected(state.tree().at(state.tree()->children()[0]));
        const auto isAsked = [&] { return state.confirmTrash().has_value(); };
        const auto request = [&] { state.requestTrashSelected(); };
        measure("the question whether 1,000,000 items may go", request, isAsked);
        measure("its answer: no", [&] { state.dismissTrash(); }, [&] { return !isAsked(); });
        request();
        waitFor(isAsked);
        measure(
            "its answer: yes, the move, and its report", [&] { state.confirmPendingTrash(); },
            [&] { return !state.isWorking() && !state.isScanning(); });
    }
    if (isWanted("scan")) {
        scan("/wide");
        waitFor(isMapped);
        measure("a scan of 5,000,000 items, and its end", [&] { scan("/wide"); }, isMapped);
        measure("that map gone for another's", [&] { scan("/deep"); }, isMapped);
    }
}
