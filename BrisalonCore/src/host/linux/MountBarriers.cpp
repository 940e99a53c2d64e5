#include "host/MountBarriers.h"

#include "BrisalonCore/MountTable.h"
#include "BrisalonCore/Paths.h"

#include "host/FileSystemNature.h"
#include "host/Folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
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

/// What a scan comes to see: the mounts at and below its root, and what each of them
/// shows there. Finds out which of them must not be entered.
class Sight {
public:
    Sight(const MountTable& table, std::string_view root);

    /// The paths that the scan must not enter.
    std::vector<std::string> barriers();

private:
    struct View {
        const Mount* mount; ///< null when it is out of reach
        std::string path;   ///< where the scan meets it
        StoredPlace place;
        bool isCut = false;
        bool isNeeded = false; ///< something else was cut because this shows it
    };

    /// Where the scan meets what is stored in that place, without the view; nothing when
    /// it does not.
    std::optional<std::string> meeting(const StoredPlace& place, const View& without) const;
    bool isReached(std::string_view path) const;
    std::optional<StoredPlace> layerPlace(const std::string& path, const View& view) const;
    /// Cuts the view if the scan meets all of these places without it.
    void cutIfMet(View& view, const std::vector<std::optional<StoredPlace>>& places);

    const MountTable& table_;
    std::vector<View> views_; ///< the root's first
    std::vector<std::string> cutPaths_;
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
        view.isCut = nature == Nature::kernel || (nature == Nature::remote && !isRemote) ||
                     (rootMount && views_.front().place.isWithin(view.place));
        views_.push_back(std::move(view));
    }
}

std::vector<std::string> Sight::barriers()
{
    // What was mounted later shows again what was there before.
    for (std::size_t i = views_.size(); i-- > 1;) {
        View& view = views_[i];
        cutIfMet(view, {view.place});
        std::vector<std::optional<StoredPlace>> layers;
        for (const std::string& layer : layersOf(*view.mount))
            layers.push_back(layerPlace(layer, view));
        cutIfMet(view, layers);
    }
    for (const View& view : views_) {
        if (view.isCut)
            cutPaths_.push_back(view.path);
        // All that lies in a union's upper layer is seen in the union.
        else if (const auto upper = view.mount ? view.mount->superOption("upperdir") : std::nullopt)
            if (const auto place = layerPlace(std::string(*upper), view))
                if (auto path = meeting(*place, view))
                    cutPaths_.push_back(std::move(*path));
    }
    return std::move(cutPaths_);
}

void Sight::cutIfMet(View& view, const std::vector<std::optional<StoredPlace>>& places)
{
    if (view.isCut || view.isNeeded || places.empty())
        return;
    std::vector<std::string> paths;
    for (const auto& place : places) {
        auto path = place ? meeting(*place, view) : std::nullopt;
        if (!path)
            return;
        paths.push_back(std::move(*path));
    }
    const auto holdsOthers = [this](std::string_view path) {
        return std::ranges::any_of(views_, [path](const View& other) {
            return !other.isCut && paths::isBelow(other.path, path);
        });
    };
    // What is mounted in it is seen nowhere else: then rather leave out the other.
    if (paths.size() == 1 && holdsOthers(view.path) && !holdsOthers(paths.front())) {
        view.isNeeded = true;
        cutPaths_.push_back(std::move(paths.front()));
        return;
    }
    view.isCut = true;
    for (const std::string& path : paths)
        for (View& other : views_)
            if (paths::isWithin(path, other.path))
                other.isNeeded = true;
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
        if (paths::isWithin(path, without.path) || table_.at(path) != view.mount ||
            !isReached(path))
            continue;
        widest = &view;
        result = std::move(path);
    }
    return widest ? std::optional(std::move(result)) : std::nullopt;
}

bool Sight::isReached(std::string_view path) const
{
    return std::ranges::none_of(views_,
                                [path](const View& view) {
                                    return view.isCut && paths::isWithin(path, view.path);
                                }) &&
           std::ranges::none_of(
               cutPaths_, [path](std::string_view cut) { return paths::isWithin(path, cut); });
}

/// A union may lie over one of its own layers, which was seen there before.
std::optional<StoredPlace> Sight::layerPlace(const std::string& path, const View& view) const
{
    if (!path.starts_with('/'))
        return std::nullopt;
    // What may hang is not asked where its links lead.
    const bool isLocal = std::ranges::all_of(table_.way(path), [](const Mount* mount) {
        const Nature nature = natureOf(mount->type);
        return nature != Nature::remote && nature != Nature::kernel;
    });
    const std::string resolved = isLocal ? resolveSymbolicLinks(path) : path;
    const auto way = table_.way(resolved, view.mount);
    return way.empty() ? std::nullopt : std::optional(way.back()->place(resolved));
}

} // namespace

bool MountBarriers::Place::isBarrier() const noexcept
{
    return !barriers_.empty() && barriers_.front().size() == length_;
}

MountBarriers::Place MountBarriers::Place::child(std::string_view name) const noexcept
{
    Place place;
    if (barriers_.empty())
        return place;
    const auto nameOf = [this](const std::string& barrier) -> std::string_view {
        return barrier.c_str() + length_;
    };
    place.barriers_ = std::ranges::equal_range(barriers_, name, {}, nameOf);
    place.length_ = length_ + name.size() + 1;
    return place;
}

MountBarriers::MountBarriers(const MountTable& table, std::string_view root)
    : barriers_(Sight(table, root).barriers())
{
    for (std::string& barrier : barriers_) {
        barrier.erase(0, root == "/" ? 1 : root.size() + 1);
        std::ranges::replace(barrier, '/', '\0');
        barrier += '\0';
    }
    std::ranges::sort(barriers_);
}

MountBarriers::Place MountBarriers::root() const noexcept
{
    Place place;
    place.barriers_ = barriers_;
    return place;
}

} // namespace brisalon::host
