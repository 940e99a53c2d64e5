#include "analysis/HogTrail.h"

#include "analysis/HogPlaces.h"
#include "analysis/HogTest.h"

#include <algorithm>
#include <array>
#include <bit>
#include <limits>
#include <optional>
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

/// Fits in the order in which they were added, found by the two first and the two
/// last bytes of a name: four look-ups rule out all of them for most names.
class HogTrail::Index {
public:
    /// One bit for each fit, the first one the lowest.
    using Set = std::uint64_t;

    Fit& add(const Fit& fit)
    {
        if (fits_.size() == std::numeric_limits<Set>::digits)
            throw std::length_error("too many classifier tests");
        const Set bit = Set{1} << fits_.size();
        const std::string_view text = fit.text;
        if (fit.how != Fit::How::back)
            admit(bit, text[0], text[1], kelvinSign.front(), first_, second_);
        else
            admitAll(bit, first_, second_);
        if (fit.how != Fit::How::front)
            admit(bit, text[text.size() - 1], text[text.size() - 2], kelvinSign.back(), last_,
                  lastButOne_);
        else
            admitAll(bit, last_, lastButOne_);
        return fits_.emplace_back(fit);
    }

    /// The fits that are not ruled out.
    Set candidates(std::string_view name) const noexcept
    {
        const auto size = name.size();
        if (size < 2) // shorter than every text
            return 0;
        return first_[byte(name[0])] & second_[byte(name[1])] & last_[byte(name[size - 1])] &
               lastButOne_[byte(name[size - 2])];
    }

    /// The first fit of the set.
    const Fit& front(Set set) const noexcept
    {
        return fits_[static_cast<std::size_t>(std::countr_zero(set))];
    }

    Fit* find(std::string_view text, Beginnings from) noexcept
    {
        const auto fit = std::ranges::find_if(
            fits_, [&](const Fit& known) { return known.text == text && known.from == from; });
        return fit == fits_.end() ? nullptr : &*fit;
    }

private:
    using Table = std::array<Set, 256>;

    static std::size_t byte(char c) noexcept { return static_cast<unsigned char>(c); }

    static void admitAll(Set bit, Table& outer, Table& inner)
    {
        for (std::size_t i = 0; i < outer.size(); ++i) {
            outer[i] |= bit;
            inner[i] |= bit;
        }
    }

    /// Lets the bytes pass that lower into a text's outermost two; `kelvinByte` is
    /// what a k may look like from that side.
    static void admit(Set bit, char outermost, char next, char kelvinByte, Table& outer,
                      Table& inner)
    {
        for (std::size_t i = 0; i < outer.size(); ++i) {
            const char c = lowered(static_cast<char>(i));
            if (c == outermost)
                outer[i] |= bit;
            if (c == next)
                inner[i] |= bit;
        }
        if (next == 'k')
            inner[byte(kelvinByte)] |= bit;
    }

    Table first_{};
    Table second_{};
    Table last_{};
    Table lastButOne_{};
    std::vector<Fit> fits_;
};

/// The tests split into components: the path tests' texts as a tree in which
/// each inner node is one bit of `Beginnings`, and its edges are fits.
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

    Index steps; ///< folder names that reach a node of the tree
    Index marks; ///< what completes a test, in the order of the tests

    HogKind kind(Order order) const noexcept
    {
        return order == noTest ? HogKind::none : kinds_[order];
    }

private:
    Tests()
    {
        for (const HogTest& test : commonTests)
            add(test);
        for (const HogTest& test : hogPlaces())
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
            marks.add({test.text, Fit::How::whole, anywhere, 0, order});
            return;
        case nameEndsWith:
            marks.add({test.text, Fit::How::back, anywhere, 0, order});
            return;
        case pathContains:
            addPath(test.text.substr(1), order);
            return;
        }
    }

    void addPath(std::string_view rest, Order order)
    {
        Beginnings from = slash;
        for (auto end = rest.find('/'); end != std::string_view::npos; end = rest.find('/')) {
            Fit& folder = step(from, rest.substr(0, end));
            rest.remove_prefix(end + 1);
            if (rest.empty()) {
                folder.order = std::min(folder.order, order);
                return;
            }
            from = folder.to;
        }
        marks.add({rest, Fit::How::front, from, 0, order});
    }

    /// The edge of that name from a node, made when it is missing.
    Fit& step(Beginnings from, std::string_view name)
    {
        if (Fit* known = steps.find(name, from))
            return *known;
        nextNode_ <<= 1;
        if (nextNode_ == 0)
            throw std::length_error("too many beginnings of classifier tests");
        return steps.add({name, Fit::How::whole, from, nextNode_, noTest});
    }

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
    for (auto set = tests.steps.candidates(folderName); set != 0; set &= set - 1) {
        const Fit& step = tests.steps.front(set);
        if (!step.matches(folderName, reached_))
            continue;
        inside.reached_ |= step.to;
        inside.passed_ = std::min(inside.passed_, step.order);
    }
    for (auto set = tests.marks.candidates(folderName); set != 0; set &= set - 1) {
        const Fit& mark = tests.marks.front(set);
        if (mark.how == Fit::How::front && mark.matches(folderName, reached_))
            inside.passed_ = std::min(inside.passed_, mark.order);
    }
    return inside;
}

HogKind HogTrail::classify(std::string_view name) const
{
    const Tests& tests = Tests::all();
    for (auto set = tests.marks.candidates(name); set != 0; set &= set - 1) {
        const Fit& mark = tests.marks.front(set);
        if (mark.order > passed_)
            break;
        if (mark.matches(name, reached_))
            return tests.kind(mark.order);
    }
    return tests.kind(passed_);
}

} // namespace brisalon::detail
