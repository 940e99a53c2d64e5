#include "host/MountBarriers.h"

#include "BrisalonCore/MountReport.h"
#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"

#include "host/FileSystemNature.h"
#include "host/Folder.h"

#include <algorithm>
#include <cerrno>
#include <deque>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <sys/sysmacros.h>

namespace brisalon::host {

namespace {

/// The file that the mount's block device reads from; empty when it is no such device,
/// or the file has no name any more.
std::string imageOf(const Mount& mount)
{
    constexpr unsigned loopDevices = 7;
    constexpr std::string_view prefix = "/dev/";
    std::string device;
    if (mount.source.starts_with("/dev/loop"))
        device = "/sys/class/block/" + mount.source.substr(prefix.size());
    else if (major(mount.device) == loopDevices)
        device = "/sys/dev/block/7:" + std::to_string(minor(mount.device));
    else
        return {};
    // A partition lies in the folder of its disk.
    for (const char* const disk : {"/loop/", "/../loop/"}) {
        std::ifstream file(device + disk + "backing_file", std::ios::binary);
        std::string image{std::istreambuf_iterator<char>(file), {}};
        if (image.ends_with('\n') && !image.ends_with(" (deleted)\n"))
            return image.substr(0, image.size() - 1);
    }
    return {};
}

/// The paths of an option that lists some: between colons, those in them behind
/// backslashes.
std::vector<std::string> listed(std::string_view value)
{
    std::vector<std::string> paths(1);
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\\' && i + 1 < value.size())
            paths.back() += value[++i];
        else if (value[i] == ':')
            paths.emplace_back();
        else
            paths.back() += value[i];
    }
    // Two colons begin a layer that holds data alone.
    std::erase(paths, "");
    return paths;
}

/// Where all that the mount shows is stored, by the paths that it was given: the folders
/// of a union, the file of an image. Empty for what is stored in the mount itself, and
/// where that cannot be told.
std::vector<std::string> layersOf(const Mount& mount)
{
    const Nature nature = natureOf(mount.type);
    std::vector<std::string> layers;
    if (nature == Nature::view)
        for (const std::string_view option : mount.superOptions)
            for (const std::string_view name :
                 {"upperdir=", "lowerdir=", "lowerdir+=", "datadir+="})
                if (option.starts_with(name))
                    for (std::string& layer : listed(option.substr(name.size())))
                        layers.push_back(std::move(layer));
    if (nature == Nature::disk || nature == Nature::image)
        if (std::string image = imageOf(mount); !image.empty())
            layers.push_back(std::move(image));
    // A number of its own, rather than one of a block device.
    const bool hasNoDevice = major(mount.device) == 0;
    if (layers.empty() && mount.source.starts_with('/') &&
        (nature == Nature::view || (nature == Nature::image && hasNoDevice)))
        layers.push_back(mount.source);
    return layers;
}

/// Whether anything is there to be counted: what something is mounted on is mostly an empty
/// folder.
bool holdsSomething(std::string_view path)
{
    const OpenFolder folder = OpenFolder::at(path);
    if (!folder.isValid())
        return errno == ENOTDIR;
    FolderReader reader;
    reader.start(folder);
    while (reader.readBatch())
        if (reader.next())
            return true;
    return false;
}

/// What a scan comes to see: the mounts at and below its root, and what each of them
/// shows there. Finds out which of them must not be entered.
class Sight {
public:
    Sight(const MountTable& table, std::string_view root);

    /// The paths that the scan must not enter, and those below them that it must.
    std::vector<MountBarriers::Way> ways() const;
    void report(MountReport& report) const;

private:
    struct View {
        const Mount* mount; ///< null when it is out of reach
        std::string path;   ///< where the scan meets it
        StoredPlace place;
        bool isCut = false;
        std::string elsewhere = {}; ///< where the scan meets it, when that is why it is cut
    };
    /// A folder that is not entered because the scan meets it elsewhere.
    struct Cut {
        std::string path;
        std::string elsewhere;
    };

    /// Where the scan meets what is stored in that place, without the view; nothing when
    /// it does not.
    std::optional<std::string> meeting(const StoredPlace& place, const View& without) const;
    bool isReached(std::string_view path) const;
    std::optional<StoredPlace> layerPlace(const std::string& path, const View& view) const;
    /// Cuts the view if the scan meets all of these places without it.
    void cutIfMet(View& view, const std::vector<std::optional<StoredPlace>>& places);
    /// Keeps views of what the cut view shows of a place that the scan meets elsewhere, but
    /// covered there: something is mounted over it.
    void keepCovered(const View& view, const StoredPlace& place);
    bool isBehindCut(std::string_view path) const;
    /// Whether nothing on the way to the path may hang.
    bool isLocal(std::string_view path) const;
    bool isOfRootVolume(const Mount* mount) const;
    MountReport::Place omission(const View& view) const;

    const MountTable& table_;
    std::deque<View> views_; ///< the root's first; those that are kept last
    std::vector<Cut> cuts_;
};

Sight::Sight(const MountTable& table, std::string_view root) : table_(table)
{
    const Mount* const rootMount = table.at(root);
    const bool isRemote = rootMount && natureOf(rootMount->type) == Nature::remote;
    views_.push_back(
        {rootMount, std::string(root), rootMount ? rootMount->place(root) : StoredPlace{}});
    for (const Mount& mount : table.mounts()) {
        if (!paths::isBelow(mount.point, root) || table.at(mount.point) != &mount)
            continue;
        const Nature nature = natureOf(mount.type);
        View view{&mount, mount.point, mount.shown()};
        if (rootMount && views_.front().place.isWithin(view.place))
            view.elsewhere = root;
        view.isCut = nature == Nature::kernel || (nature == Nature::remote && !isRemote) ||
                     !view.elsewhere.empty();
        views_.push_back(std::move(view));
    }
    const std::size_t count = views_.size();
    for (std::size_t i = 1; i < count; ++i)
        if (!views_[i].elsewhere.empty())
            keepCovered(views_[i], views_.front().place);
    // What was mounted later shows again what was there before.
    for (std::size_t i = views_.size(); i-- > 1;) {
        View& view = views_[i];
        cutIfMet(view, {view.place});
        std::vector<std::optional<StoredPlace>> layers;
        for (const std::string& layer : layersOf(*view.mount))
            layers.push_back(layerPlace(layer, view));
        cutIfMet(view, layers);
    }
    // All that lies in a union's upper layer is seen in the union.
    for (std::size_t i = 0; i < count; ++i) {
        const View& view = views_[i];
        if (const auto upper =
                view.mount && !view.isCut ? view.mount->superOption("upperdir") : std::nullopt)
            if (const auto place = layerPlace(std::string(*upper), view))
                if (auto path = meeting(*place, view))
                    cuts_.push_back({std::move(*path), view.path});
    }
}

std::vector<MountBarriers::Way> Sight::ways() const
{
    std::vector<MountBarriers::Way> ways;
    for (const View& view : views_)
        if (view.isCut || (isBehindCut(view.path) && isReached(view.path)))
            ways.push_back({view.path, !view.isCut});
    for (const Cut& cut : cuts_)
        ways.push_back({cut.path, false});
    return ways;
}

bool Sight::isBehindCut(std::string_view path) const
{
    const auto isAbove = [path](const auto& cut) { return paths::isBelow(path, cut.path); };
    return std::ranges::any_of(views_,
                               [&](const View& view) { return view.isCut && isAbove(view); }) ||
           std::ranges::any_of(cuts_, isAbove);
}

void Sight::report(MountReport& report) const
{
    const View& root = views_.front();
    report.isWholeVolume = root.mount && root.mount->point == root.path &&
                           root.mount->showsVolume() && natureOf(root.mount->type) != Nature::view;
    const auto above = [](const std::string& path) {
        return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
    };
    for (const Cut& cut : cuts_)
        report.omitted.push_back({cut.path, {}, MountReport::Reason::elsewhere, cut.elsewhere});
    for (std::size_t i = 1; i < views_.size(); ++i) {
        const View& view = views_[i];
        if (isReached(view.path)) {
            const bool isBack = isOfRootVolume(view.mount);
            if (isBack != isOfRootVolume(table_.at(above(view.path))))
                report.crossings.push_back({view.path, isBack});
            continue;
        }
        if (natureOf(view.mount->type) != Nature::kernel || isReached(above(view.path)))
            report.omitted.push_back(omission(view));
    }
    std::ranges::sort(report.omitted, {}, [](const MountReport::Place& place) {
        return std::tie(place.reason, place.path);
    });
    report.omittedCount = report.omitted.size();
    report.omitted.resize(std::min(report.omitted.size(), MountReport::limit));
}

MountReport::Place Sight::omission(const View& view) const
{
    using Reason = MountReport::Reason;
    const Nature nature = natureOf(view.mount->type);
    MountReport::Place place{view.path, view.mount->type, Reason::behind, view.elsewhere,
                             view.mount->showsVolume() && !isOfRootVolume(view.mount) &&
                                 isLocal(view.path)};
    if (!view.elsewhere.empty())
        place.reason = Reason::elsewhere;
    else if (nature == Nature::kernel)
        place.reason = place.type == "autofs" ? Reason::onDemand : Reason::kernel;
    else if (view.isCut)
        place.reason = Reason::mayHang;
    return place;
}

bool Sight::isOfRootVolume(const Mount* mount) const
{
    const Mount* const root = views_.front().mount;
    return root && mount && mount->device == root->device;
}

void Sight::cutIfMet(View& view, const std::vector<std::optional<StoredPlace>>& places)
{
    if (view.isCut || places.empty())
        return;
    std::string elsewhere;
    for (const auto& place : places) {
        auto path = place ? meeting(*place, view) : std::nullopt;
        if (!path)
            return;
        if (elsewhere.empty())
            elsewhere = std::move(*path);
    }
    view.isCut = true;
    view.elsewhere = std::move(elsewhere);
    keepCovered(view, view.place);
}

void Sight::keepCovered(const View& view, const StoredPlace& place)
{
    for (const Mount& mount : table_.mounts()) {
        if (!mount.under || !mount.under->isWithin(place) || !mount.under->isWithin(view.place))
            continue;
        std::string path =
            paths::joined(view.path, paths::relative(mount.under->path, view.place.path));
        if (path != view.path && table_.at(path) == view.mount && !meeting(*mount.under, view) &&
            isLocal(path) && holdsSomething(path))
            views_.push_back({view.mount, std::move(path), *mount.under});
    }
}

std::optional<std::string> Sight::meeting(const StoredPlace& place, const View& without) const
{
    const View* widest = nullptr;
    std::string result;
    for (const View& view : views_) {
        if (&view == &without || !view.mount || !place.isWithin(view.place) ||
            (widest && view.place.path.size() >= widest->place.path.size()))
            continue;
        std::string path = paths::joined(view.path, paths::relative(place.path, view.place.path));
        // What the view itself shows there is not seen without it.
        const bool isItself = view.mount == without.mount && paths::isWithin(path, without.path);
        if (isItself || table_.at(path) != view.mount || !isReached(path))
            continue;
        widest = &view;
        result = std::move(path);
    }
    return widest ? std::optional(std::move(result)) : std::nullopt;
}

bool Sight::isReached(std::string_view path) const
{
    // The innermost that holds it decides, but for what must not be entered at all.
    std::size_t open = 0;
    std::size_t cut = 0;
    const auto take = [path](std::size_t& longest, const std::string& holder) {
        if (paths::isWithin(path, holder))
            longest = std::max(longest, holder.size());
    };
    for (const View& view : views_) {
        if (view.isCut && view.elsewhere.empty() && paths::isWithin(path, view.path))
            return false;
        take(view.isCut ? cut : open, view.path);
    }
    for (const Cut& each : cuts_)
        take(cut, each.path);
    return open > cut;
}

/// A union may lie over one of its own layers, which was seen there before.
std::optional<StoredPlace> Sight::layerPlace(const std::string& path, const View& view) const
{
    if (!path.starts_with('/'))
        return std::nullopt;
    // What may hang is not asked where its links lead.
    const std::string resolved = isLocal(path) ? resolveSymbolicLinks(path) : path;
    const auto way = table_.way(resolved, view.mount);
    return way.empty() ? std::nullopt : std::optional(way.back()->place(resolved));
}

bool Sight::isLocal(std::string_view path) const
{
    return std::ranges::all_of(table_.way(path), [](const Mount* mount) {
        const Nature nature = natureOf(mount->type);
        return nature != Nature::remote && nature != Nature::kernel;
    });
}

} // namespace

bool MountBarriers::Place::isBarrier() const noexcept
{
    return isShut_ && std::ranges::none_of(ways_, &Way::isOpen);
}

MountBarriers::Place MountBarriers::Place::child(std::string_view name) const noexcept
{
    Place place;
    place.isShut_ = isShut_;
    if (ways_.empty())
        return place;
    const auto nameOf = [this](const Way& way) -> std::string_view {
        return way.path.c_str() + length_;
    };
    const auto first = std::ranges::lower_bound(ways_, name, {}, nameOf);
    place.ways_ = {first, std::ranges::upper_bound(first, ways_.end(), name, {}, nameOf)};
    place.length_ = length_ + name.size() + 1;
    if (!place.ways_.empty() && place.ways_.front().path.size() == place.length_)
        place.isShut_ = !place.ways_.front().isOpen;
    return place;
}

MountBarriers::MountBarriers(const MountTable& table, std::string_view root, MountReport* report)
{
    const Sight sight(table, root);
    if (report)
        sight.report(*report);
    ways_ = sight.ways();
    for (Way& way : ways_) {
        way.path.erase(0, root == "/" ? 1 : root.size() + 1);
        std::ranges::replace(way.path, '/', '\0');
        way.path += '\0';
    }
    std::ranges::sort(ways_, {}, &Way::path);
}

MountBarriers::Place MountBarriers::root() const noexcept
{
    Place place;
    place.ways_ = ways_;
    return place;
}

} // namespace brisalon::host
