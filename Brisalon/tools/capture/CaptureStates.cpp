#include "CaptureStates.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <optional>

namespace brisalon::capture {

namespace {

bool welcome(Stage& stage)
{
    return WindowDriver::waitFor([&] { return stage.driver.find("scanHomeCard") != nullptr; });
}

bool welcomeHover(Stage& stage)
{
    if (!welcome(stage))
        return false;
    stage.driver.hover(stage.driver.centre("scanThisMacCard"));
    return true;
}

bool scanning(Stage& stage)
{
    stage.gate.holdAfter(12'000);
    stage.state.startScan(stage.folder);
    return stage.gate.waitForScan();
}

bool map(Stage& stage)
{
    stage.state.startScan(stage.folder);
    return WindowDriver::waitFor([&] { return !stage.state.isScanning(); }) &&
           stage.driver.waitForMap();
}

using Accepts = bool (*)(const FileNode&);

bool isFolder(const FileNode& node)
{
    return node.canZoom();
}

bool isHog(const FileNode& node)
{
    return node.hogKind() != HogKind::none;
}

std::optional<QPoint> blockOfMap(Stage& stage, Accepts accepts)
{
    return map(stage) ? stage.driver.block(accepts) : std::nullopt;
}

bool hover(Stage& stage)
{
    const auto block = blockOfMap(stage, isFolder);
    if (block)
        stage.driver.hover(*block);
    return block.has_value();
}

bool tooltip(Stage& stage)
{
    const auto block = blockOfMap(stage, isHog);
    if (block)
        stage.driver.hover(*block);
    return block.has_value();
}

bool selected(Stage& stage)
{
    const auto block = blockOfMap(stage, isFolder);
    if (block)
        stage.driver.click(*block);
    return block.has_value();
}

bool inspectorHog(Stage& stage)
{
    const auto block = blockOfMap(stage, isHog);
    if (block)
        stage.driver.click(*block);
    return block.has_value();
}

bool largeFiles(Stage& stage)
{
    if (!map(stage) || !stage.driver.find("largeFile0"))
        return false;
    stage.driver.click(stage.driver.centre("largeFile0"));
    return stage.driver.waitForMap();
}

bool multiSelection(Stage& stage)
{
    if (!map(stage))
        return false;
    for (const char* const row : {"largeFile0", "largeFile2", "largeFile3"}) {
        // The first tick changes what stands above the list.
        if (!stage.driver.find(row) || !stage.driver.settle())
            return false;
        stage.driver.click(stage.driver.centre(row), Qt::ControlModifier);
    }
    return true;
}

/// The list of snapshots, as a tool that runs these lines of the shell prints it.
bool snapshotsOf(Stage& stage, const char* lines)
{
    if (!map(stage))
        return false;
    QFile tool(QString::fromStdString(stage.snapshotTool));
    if (!tool.open(QFile::WriteOnly) || tool.write("#!/bin/sh\n") < 0 || tool.write(lines) < 0 ||
        !tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner))
        return false;
    tool.close();
    stage.state.listSnapshots();
    stage.driver.click(stage.driver.centre("segmentSnapshots"));
    return stage.driver.find("snapshotPanel") != nullptr;
}

bool noSnapshots(Stage& stage)
{
    return snapshotsOf(stage, "true\n");
}

bool snapshots(Stage& stage)
{
    return snapshotsOf(stage, "echo 2026-03-14-091500\n"
                              "echo 2026-03-14-101502\n"
                              "echo 2026-03-15-000000\n");
}

bool zoomed(Stage& stage)
{
    const auto block = blockOfMap(stage, isFolder);
    if (block)
        stage.driver.doubleClick(*block);
    // Away from the map, so that the new level is seen without a hover.
    stage.driver.hover(QPoint(1, 1));
    return block && stage.driver.waitForMap();
}

bool updating(Stage& stage)
{
    if (!map(stage))
        return false;
    stage.gate.holdAfter(12'000);
    stage.state.startScan(stage.folder);
    return stage.gate.waitForScan();
}

bool emptyFolder(Stage& stage)
{
    const QTemporaryDir folder;
    stage.state.startScan(FileURL(folder.path().toStdString()));
    return WindowDriver::waitFor([&] { return !stage.state.isScanning(); });
}

bool failure(Stage& stage)
{
    stage.state.startScan(stage.folder.appendingPathComponent("There is no such folder"));
    return WindowDriver::waitFor([&] { return !stage.state.isScanning(); });
}

bool menu(Stage& stage)
{
    stage.driver.click(stage.driver.centre("menuButton"));
    return true;
}

bool confirmTrash(Stage& stage)
{
    if (!selected(stage))
        return false;
    stage.state.requestTrashSelected();
    return WindowDriver::waitFor([&] { return stage.driver.find("confirmButton") != nullptr; });
}

bool confirmTrashItems(Stage& stage)
{
    if (!multiSelection(stage))
        return false;
    stage.state.requestTrashSelected();
    if (!WindowDriver::waitFor([&] { return stage.driver.find("itemsButton") != nullptr; }))
        return false;
    stage.driver.click(stage.driver.centre("itemsButton"));
    return stage.driver.find("trashItem0") != nullptr;
}

bool confirmSnapshot(Stage& stage)
{
    if (!map(stage))
        return false;
    stage.state.setConfirmSnapshot(LocalSnapshot{"2026-03-14-091500", {}});
    return WindowDriver::waitFor([&] { return stage.driver.find("confirmButton") != nullptr; });
}

/// What an entry of the menu opens.
bool openFromMenu(Stage& stage, const char* entry, const char* view)
{
    if (!menu(stage) || !WindowDriver::waitFor([&] { return stage.driver.find(entry) != nullptr; }))
        return false;
    stage.driver.click(stage.driver.centre(entry));
    return WindowDriver::waitFor([&] { return stage.driver.find(view) != nullptr; });
}

bool about(Stage& stage)
{
    return openFromMenu(stage, "aboutEntry", "aboutView");
}

bool whatMayGo(Stage& stage)
{
    return map(stage) && openFromMenu(stage, "whatMayGoEntry", "whatMayGoView");
}

bool aboutHelp(Stage& stage)
{
    if (!about(stage))
        return false;
    stage.driver.click(stage.driver.centre("aboutHelpButton"));
    return stage.driver.find("aboutCallout") != nullptr;
}

void setPermission(Stage& stage, bool isGranted)
{
    stage.fileAccess.isHiding = !isGranted;
    stage.state.refreshPermission();
}

bool banner(Stage& stage)
{
    setPermission(stage, false);
    return welcome(stage);
}

bool bannerGranted(Stage& stage)
{
    setPermission(stage, false);
    setPermission(stage, true);
    return map(stage);
}

bool welcomeFDA(Stage& stage)
{
    setPermission(stage, false);
    stage.state.dismissFDABanner();
    // The card moves when the banner goes.
    return WindowDriver::waitFor([&] {
        stage.driver.hover(stage.driver.centre("scanThisMacCard"));
        return stage.driver.find("fdaSection") != nullptr;
    });
}

bool whatIsLeftOut(Stage& stage)
{
    return map(stage) && openFromMenu(stage, "whatIsLeftOutEntry", "whatIsLeftOutView");
}

constexpr std::array states{
    CaptureState{"welcome", "the start", welcome},
    CaptureState{"welcome-hover", "the pointer on the second card", welcomeHover},
    CaptureState{"menu", "the menu of commands", menu},
    CaptureState{"scanning", "the first scan, part of the way", scanning},
    CaptureState{"map", "the scanned folder", map},
    CaptureState{"hover", "the pointer on the largest folder", hover},
    CaptureState{"tooltip", "the pointer on the largest hog", tooltip},
    CaptureState{"selected", "the largest folder clicked", selected},
    CaptureState{"inspector-hog", "the largest hog clicked", inspectorHog},
    CaptureState{"large-files", "the largest file clicked in the list", largeFiles},
    CaptureState{"multi-selection", "three large files ticked", multiSelection},
    CaptureState{"no-snapshots", "the list of snapshots, of which there are none", noSnapshots},
    CaptureState{"snapshots", "the list of snapshots", snapshots},
    CaptureState{"zoomed", "the largest folder double-clicked", zoomed},
    CaptureState{"updating", "a rescan, part of the way", updating},
    CaptureState{"empty", "an empty folder", emptyFolder},
    CaptureState{"confirm-trash", "asking before a move to the Trash", confirmTrash},
    CaptureState{"confirm-trash-items", "the same of three files, which are listed",
                 confirmTrashItems},
    CaptureState{"confirm-snapshot", "asking before a snapshot is deleted", confirmSnapshot},
    CaptureState{"what-may-go", "the sums of what may be cleared", whatMayGo},
    CaptureState{"what-is-left-out", "what the map leaves out", whatIsLeftOut},
    CaptureState{"about", "the About panel", about},
    CaptureState{"about-help", "the About panel with its help open", aboutHelp},
    CaptureState{"banner", "the request for Full Disk Access", banner},
    CaptureState{"banner-granted", "Full Disk Access was just granted", bannerGranted},
    CaptureState{"welcome-fda", "the second card without Full Disk Access", welcomeFDA},
    CaptureState{"failure", "a folder that does not exist", failure},
};

} // namespace

std::span<const CaptureState> captureStates()
{
    return states;
}

} // namespace brisalon::capture
