#include "BrisalonCore/MountTable.h"

#include "BrisalonCore/Descriptor.h"
#include "BrisalonCore/Paths.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>

#include <fcntl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace brisalon {

namespace {

/// Takes the text up to the next separator off the front of `rest`. Between two
/// separators there is an empty field: that of a file system without a source.
std::string_view nextField(std::string_view& rest, char separator)
{
    const auto end = std::min(rest.find(separator), rest.size());
    const std::string_view field = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return field;
}

/// The table writes white space, backslashes and "#" as a backslash and three
/// octal digits.
std::string unescaped(std::string_view text)
{
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string result;
    while (!text.empty()) {
        if (text.size() >= 4 && text[0] == '\\' && std::all_of(&text[1], &text[1] + 3, isOctal)) {
            result += static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + text[3] - '0');
            text.remove_prefix(4);
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

/// Commas inside an option are written like white space.
std::vector<std::string> optionsOf(std::string_view field)
{
    std::vector<std::string> options;
    while (!field.empty())
        options.push_back(unescaped(nextField(field, ',')));
    return options;
}

template <typename Number>
std::optional<Number> number(std::string_view text)
{
    Number value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

/// One line of /proc/PID/mountinfo (see proc(5)); nothing if it is not one.
std::optional<Mount> parsed(std::string_view line)
{
    const auto id = number<std::uint64_t>(nextField(line, ' '));
    const auto parent = number<std::uint64_t>(nextField(line, ' '));
    const auto majorNumber = number<unsigned>(nextField(line, ':'));
    const auto minorNumber = number<unsigned>(nextField(line, ' '));
    if (!id || !parent || !majorNumber || !minorNumber)
        return std::nullopt;
    Mount mount;
    mount.id = *id;
    mount.parent = *parent;
    mount.device = makedev(*majorNumber, *minorNumber);
    mount.root = unescaped(nextField(line, ' '));
    mount.point = unescaped(nextField(line, ' '));
    mount.options = optionsOf(nextField(line, ' '));
    // Any number of optional fields, ended by a dash.
    while (!line.empty() && nextField(line, ' ') != "-") {
    }
    mount.type = unescaped(nextField(line, ' '));
    mount.source = unescaped(nextField(line, ' '));
    mount.superOptions = optionsOf(nextField(line, ' '));
    if (!mount.point.starts_with('/') || mount.type.empty())
        return std::nullopt;
    return mount;
}

} // namespace

bool StoredPlace::isWithin(const StoredPlace& folder) const noexcept
{
    return device == folder.device && paths::isWithin(path, folder.path);
}

std::optional<std::string_view> Mount::superOption(std::string_view name) const noexcept
{
    for (const std::string_view option : superOptions) {
        const auto end = std::min(option.find('='), option.size());
        if (option.substr(0, end) == name)
            return option.substr(std::min(end + 1, option.size()));
    }
    return std::nullopt;
}

StoredPlace Mount::place(std::string_view path) const
{
    return {device, paths::joined(root, paths::relative(path, point))};
}

bool Mount::showsVolume() const noexcept
{
    // A subvolume of btrfs has its own name as an option of every mount in it.
    return root == "/" || superOption("subvol") == root;
}

MountTable::MountTable(std::string_view text)
{
    while (!text.empty())
        if (auto mount = parsed(nextField(text, '\n')))
            mounts_.push_back(std::move(*mount));
    std::map<std::uint64_t, const Mount*> byID;
    for (const Mount& mount : mounts_)
        byID.emplace(mount.id, &mount);
    // What is mounted on something out of reach (the first mount of all; in a changed
    // root, others too) is where paths start.
    for (Mount& mount : mounts_) {
        const auto parent = mount.parent == mount.id ? byID.end() : byID.find(mount.parent);
        const bool isRooted = parent != byID.end();
        children_[{.parent = isRooted ? std::optional(mount.parent) : std::nullopt,
                   .length = mount.point.size(),
                   .point = mount.point}] = &mount;
        if (isRooted && paths::isWithin(mount.point, parent->second->point))
            mount.under = parent->second->place(mount.point);
    }
}

MountTable MountTable::current()
{
    const Descriptor file = Descriptor::open(AT_FDCWD, "/proc/thread-self/mountinfo", O_RDONLY);
    std::string text;
    std::array<char, 4096> piece;
    for (;;) {
        const ssize_t size = ::read(file.get(), piece.data(), piece.size());
        if (size > 0)
            text.append(piece.data(), static_cast<std::size_t>(size));
        else if (size == 0 || errno != EINTR)
            return MountTable(text);
    }
}

std::vector<const Mount*> MountTable::way(std::string_view path, const Mount* without) const
{
    std::vector<const Mount*> passed;
    const Mount* mount = nullptr;
    std::size_t reached = 0;
    // A table read while it changes may have mounts in a circle.
    for (std::size_t height = 0; height < mounts_.size(); ++height) {
        mount = nextOn(path, reached, mount, without);
        if (!mount)
            break;
        if (mount->point.size() == reached)
            passed.back() = mount;
        else
            passed.push_back(mount);
        reached = mount->point.size();
    }
    return passed;
}

const Mount* MountTable::at(std::string_view path) const
{
    const auto passed = way(path);
    return passed.empty() ? nullptr : passed.back();
}

std::optional<StoredPlace> MountTable::place(std::string_view path) const
{
    const Mount* const mount = at(path);
    return mount ? std::optional(mount->place(path)) : std::nullopt;
}

bool MountTable::carriesMount(std::string_view path) const
{
    const Mount* const seen = at(path);
    const auto item = seen ? std::optional(seen->place(path)) : std::nullopt;
    return std::ranges::any_of(mounts_, [&](const Mount& mount) {
        if (&mount == seen && mount.point == path)
            return true;
        return item && mount.under ? mount.under->isWithin(*item)
                                   : paths::isWithin(mount.point, path);
    });
}

const Mount* MountTable::nextOn(std::string_view path, std::size_t reached, const Mount* mount,
                                const Mount* without) const
{
    const auto parent = mount ? std::optional(mount->id) : std::nullopt;
    for (std::size_t length = reached;;) {
        const auto next = children_.lower_bound({parent, length, {}});
        if (next == children_.end() || next->first.parent != parent ||
            next->first.length > path.size())
            return nullptr;
        length = next->first.length;
        const auto found = children_.find({parent, length, path.substr(0, length)});
        if (found != children_.end() && found->second != without &&
            paths::isWithin(path, found->first.point))
            return found->second;
        ++length;
    }
}

} // namespace brisalon
