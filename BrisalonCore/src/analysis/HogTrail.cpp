#include "analysis/HogTrail.h"

#include "analysis/HogTest.h"
#include "host/HogPlaces.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace brisalon::detail {

namespace {

using enum HogTest::Where;

/// The tests that hold on every desktop, in the order in which they are tried.
constexpr std::array commonTests{
    HogTest{nameIs, "docker.raw", HogKind::docker},
    HogTest{nameIs, "docker.raw.qcow2", HogKind::docker},
    HogTest{pathContains, "/com.docker.docker", HogKind::docker},
    HogTest{pathContains, "/group.com.docker", HogKind::docker},
    HogTest{nameIs, "node_modules", HogKind::nodeModules},
    HogTest{pathContains, "/mobilesync/backup", HogKind::iosBackup},
    HogTest{pathContains, "/.localsnapshots", HogKind::timeMachineSnapshot},
    HogTest{pathContains, "/com.apple.timemachine", HogKind::timeMachineSnapshot},
    HogTest{pathContains, "/developer/xcode/deriveddata", HogKind::xcodeDerivedData},
    HogTest{pathContains, "/developer/xcode/archives", HogKind::xcodeDerivedData},
    HogTest{pathContains, "/developer/coresimulator", HogKind::xcodeSimulators},
    HogTest{pathContains, "/xcode/ios devicesupport", HogKind::xcodeSimulators},
    HogTest{pathContains, "/library/caches/homebrew", HogKind::homebrew},
    HogTest{pathContains, "/homebrew/caches", HogKind::homebrew},
    HogTest{pathContains, "/library/caches", HogKind::caches},
    HogTest{pathContains, "/library/logs", HogKind::logs},
    HogTest{pathContains, "/.trash", HogKind::trash},
    HogTest{pathContains, "/library/trashes", HogKind::trash},
    HogTest{nameEndsWith, ".dmg", HogKind::installer},
    HogTest{nameEndsWith, ".pkg", HogKind::installer},
};
static_assert(std::ranges::all_of(commonTests, &HogTest::isWellFormed));

/// U+212A, the one character outside ASCII that lowers into ASCII ("k").
constexpr std::string_view kelvinSign = "\xE2\x84\xAA";

constexpr char lowered(char c) noexcept
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// How many bytes at the front of `text` lower into `wanted`; nothing if they
/// do not.
std::optional<std::size_t> frontMatch(std::string_view text, std::string_view wanted) noexcept
{
    std::string_view rest = text;
    for (const char c : wanted) {
        if (!rest.empty() && lowered(rest.front()) == c)
            rest.remove_prefix(1);
        else if (c == 'k' && rest.starts_with(kelvinSign))
            rest.remove_prefix(kelvinSign.size());
        else
            return std::nullopt;
    }
    return text.size() - rest.size();
}

bool backMatches(std::string_view text, std::string_view wanted) noexcept
{
    for (; !wanted.empty(); wanted.remove_suffix(1)) {
        const char c = wanted.back();
        if (!text.empty() && lowered(text.back()) == c)
            text.remove_suffix(1);
        else if (c == 'k' && text.ends_with(kelvinSign))
            text.remove_suffix(kelvinSign.size());
        else
            return false;
    }
    return true;
}

} // namespace

/// One thing that a component may fit.
struct HogTrail::Fit {
    enum class How : std::uint8_t { whole, front, back };

    std::string_view text;
    How how;
    /// The component counts only inside a folder that reached one of these.
    Beginnings from;
    /// What the component reaches; 0 when the fit completes a test.
    Beginnings to;
    /// The test that the fit completes: for the item itself and, of a path
    /// test, for what lies below it; of a fit that reaches something, only for
    /// what lies below.
    Order order;

    bool matches(std::string_view name, Beginnings reached) const noexcept
    {
        if ((from & reached) == 0 || name.size() < text.size())
            return false;
        switch (how) {
        case How::whole:
            return frontMatch(name, text) == name.size();
        case How::front:
            return frontMatch(name, text).has_value();
        case How::back:
            return backMatches(name, text);
        }
        return false;
    }
};

/// The tests split into components: the path tests' texts as a tree in which
/// each inner node is one bit of `Beginnings`, and its edges are fits.
///
/// Fits are found by the byte at the end of the name that they look at, which
/// rules out all of them for most names.
class HogTrail::Tests {
public:
    static constexpr Order noTest = std::numeric_limits<Order>::max();
    /// Reached by every folder and by none: where a name test applies.
    static constexpr Beginnings anywhere = 1;
    /// Reached by every folder: a slash precedes what lies in it.
    static constexpr Beginnings slash = 2;

    static const Tests& all()
    {
        static const Tests tests;
        return tests;
    }

    /// Folder names that reach a node of the tree.
    std::span<const Fit> steps(std::string_view name) const noexcept
    {
        return steps_[frontByte(name)];
    }
    /// Names and beginnings of names that complete a test.
    std::span<const Fit> fronts(std::string_view name) const noexcept
    {
        return fronts_[frontByte(name)];
    }
    /// Endings of names that complete a test.
    std::span<const Fit> backs(std::string_view name) const noexcept
    {
        return backs_[backByte(name)];
    }

    HogKind kind(Order order) const noexcept
    {
        return order == noTest ? HogKind::none : kinds_[order];
    }

private:
    using Table = std::array<std::vector<Fit>, 256>;

    Tests()
    {
        for (const HogTest& test : commonTests)
            add(test);
        for (const HogTest& test : host::hogPlaces())
            add(test);
    }

    void add(const HogTest& test)
    {
        const auto order = static_cast<Order>(kinds_.size());
        if (order == noTest)
            throw std::length_error("too many classifier tests");
        kinds_.push_back(test.kind);
        switch (test.where) {
        case nameIs:
            fronts_[frontByte(test.text)].push_back(
                {test.text, Fit::How::whole, anywhere, 0, order});
            return;
        case nameEndsWith:
            backs_[backByte(test.text)].push_back({test.text, Fit::How::back, anywhere, 0, order});
            return;
        case pathContains:
            addPath(test.text.substr(1), order);
            return;
        }
    }

    void addPath(std::string_view rest, Order order)
    {
        Fit* last = nullptr;
        Beginnings from = slash;
        for (auto end = rest.find('/'); end != std::string_view::npos; end = rest.find('/')) {
            last = &step(from, rest.substr(0, end));
            from = last->to;
            rest.remove_prefix(end + 1);
        }
        if (rest.empty())
            last->order = std::min(last->order, order);
        else
            fronts_[frontByte(rest)].push_back({rest, Fit::How::front, from, 0, order});
    }

    /// The edge of that name from a node, made when it is missing.
    Fit& step(Beginnings from, std::string_view name)
    {
        std::vector<Fit>& bucket = steps_[frontByte(name)];
        const auto known = std::ranges::find_if(
            bucket, [&](const Fit& fit) { return fit.from == from && fit.text == name; });
        if (known != bucket.end())
            return *known;
        nextNode_ <<= 1;
        if (nextNode_ == 0)
            throw std::length_error("too many beginnings of classifier tests");
        return bucket.emplace_back(Fit{name, Fit::How::whole, from, nextNode_, noTest});
    }

    static std::size_t frontByte(std::string_view name) noexcept
    {
        if (name.empty())
            return 0;
        return name.front() == kelvinSign.front() ? 'k' : byte(name.front());
    }
    static std::size_t backByte(std::string_view name) noexcept
    {
        if (name.empty())
            return 0;
        return name.back() == kelvinSign.back() ? 'k' : byte(name.back());
    }
    static std::size_t byte(char c) noexcept { return static_cast<unsigned char>(lowered(c)); }

    Table steps_;
    Table fronts_;
    Table backs_;
    std::vector<HogKind> kinds_;
    Beginnings nextNode_ = slash;
};

HogTrail HogTrail::ofNoFolder() noexcept
{
    return {Tests::anywhere, Tests::noTest};
}

HogTrail HogTrail::of(std::string_view path)
{
    HogTrail trail = ofNoFolder();
    for (;;) {
        const auto slash = path.find('/');
        trail = trail.entering(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return trail;
        path.remove_prefix(slash + 1);
    }
}

HogTrail HogTrail::entering(std::string_view folderName) const
{
    const Tests& tests = Tests::all();
    HogTrail inside(Tests::anywhere | Tests::slash, passed_);
    for (const Fit& fit : tests.steps(folderName)) {
        if (!fit.matches(folderName, reached_))
            continue;
        inside.reached_ |= fit.to;
        inside.passed_ = std::min(inside.passed_, fit.order);
    }
    for (const Fit& fit : tests.fronts(folderName))
        if (fit.how == Fit::How::front && fit.order < inside.passed_ &&
            fit.matches(folderName, reached_))
            inside.passed_ = fit.order;
    return inside;
}

HogKind HogTrail::classify(std::string_view name) const
{
    const Tests& tests = Tests::all();
    Order decisive = passed_;
    for (const Fit& fit : tests.fronts(name))
        if (fit.order < decisive && fit.matches(name, reached_))
            decisive = fit.order;
    for (const Fit& fit : tests.backs(name))
        if (fit.order < decisive && fit.matches(name, reached_))
            decisive = fit.order;
    return tests.kind(decisive);
}

} // namespace brisalon::detail
