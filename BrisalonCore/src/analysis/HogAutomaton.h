#pragma once

#include "analysis/HogTest.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

namespace brisalon::detail {

/// U+212A, the one character outside ASCII that lowers into ASCII ("k").
inline constexpr std::string_view kelvinSign = "\xE2\x84\xAA";

/// The classifier's tests as a nondeterministic automaton over a path's components:
/// each node that can be reached is one bit of a word, so that a folder's state is small
/// and a component costs a look at its outermost bytes. Its answers are exactly those of
/// comparing the whole path with each test in turn.
///
/// Names are bytes; lower-casing is exact for the tests' texts, which are ASCII: of all
/// other characters only the Kelvin sign lowers into one that matters.
///
/// Made at compile time; then any thread.
class HogAutomaton {
    using Nodes = std::uint64_t;
    /// A test's place among all tests; the lowest that a path passes decides.
    using Order = std::uint8_t;

public:
    /// What is known of a folder's path.
    struct State {
        Nodes reached; ///< which beginnings of the tests end at this folder
        Order passed;  ///< the first test that everything in the folder passes
    };

    /// The tests of `common`, then those of `places`, tried in this order. Throws a
    /// sentence where they exceed what the automaton holds; for a constant that is a
    /// compile error.
    constexpr HogAutomaton(std::span<const HogTest> common, std::span<const HogTest> places)
    {
        kinds_[noTest] = HogKind::none;
        for (const auto tests : {common, places})
            for (const HogTest& test : tests)
                add(test);
    }

    /// Before the first component of a path that has no leading slash.
    static constexpr State start() noexcept { return {anywhere, noTest}; }

    /// In the folder of that name inside the one with this state.
    State entering(const State& state, std::string_view folderName) const noexcept;

    /// In the same folder when it is tagged as a cache.
    State tagged(const State& state) const noexcept
    {
        return {state.reached, std::min(state.passed, tag_)};
    }

    /// The kind of the item of that name inside the folder with this state.
    HogKind classify(const State& state, std::string_view name) const noexcept;

private:
    static constexpr Order noTest = std::numeric_limits<Order>::max();
    /// Reached by every folder and by none: where a name test applies.
    static constexpr Nodes anywhere = 1;
    /// Reached by every folder: a slash precedes what lies in it.
    static constexpr Nodes slash = 2;

    /// A set of words, the first one the lowest bit.
    using Set = std::array<std::uint64_t, 2>;
    static constexpr std::size_t mostWords = 128;
    static constexpr std::size_t mostEdges = 192;
    using Index = std::uint8_t;
    static constexpr Index noEdge = std::numeric_limits<Index>::max();

    /// What a component may be.
    struct Word {
        enum class Fit : std::uint8_t { whole, front, back };

        std::string_view text{};
        Fit fit = Fit::whole;
        Index firstEdge = noEdge;

        bool matches(std::string_view name) const noexcept;
    };

    /// What it means that a component is a certain word.
    struct Edge {
        Nodes from = 0;       ///< only inside a folder that reached one of these
        Nodes to = 0;         ///< what the folder of that name reaches
        Order item = noTest;  ///< the test that the item itself passes
        Order below = noTest; ///< the test that everything below it passes
        Index next = noEdge;  ///< the word's next edge
    };

    constexpr void add(const HogTest& test)
    {
        if (testCount_ == noTest)
            throw "there are too many tests: widen HogAutomaton::Order";
        const Order order = testCount_++;
        kinds_[order] = test.kind;
        switch (test.where) {
        case HogTest::Where::nameIs:
            addEdge(wordOf(test.text, Word::Fit::whole), {anywhere, 0, order});
            return;
        case HogTest::Where::nameEndsWith:
            addEdge(wordOf(test.text, Word::Fit::back), {anywhere, 0, order});
            return;
        case HogTest::Where::pathContains:
            addPath(test.text, Word::Fit::front, order);
            return;
        case HogTest::Where::within:
            addPath(test.text, Word::Fit::whole, order);
            return;
        case HogTest::Where::tagged:
            tag_ = std::min(tag_, order);
            return;
        }
    }

    constexpr void addPath(std::string_view path, Word::Fit lastFit, Order order)
    {
        Nodes from = slash;
        for (;;) {
            const std::string_view part = takeComponent(path);
            if (path.empty())
                return addEdge(wordOf(part, lastFit), {from, 0, order, order});
            if (part == "**")
                from = nodeOfAnyNumber(from);
            else if (part == "*")
                from = step(anyWord_, from);
            else
                from = step(wordOf(part, Word::Fit::whole), from);
        }
    }

    /// Where the word leads from a node.
    constexpr Nodes step(Word& word, Nodes from)
    {
        for (Index i = word.firstEdge; i != noEdge; i = edges_[i].next)
            if (edges_[i].from == from && edges_[i].to != 0)
                return edges_[i].to & ~sticky_;
        const Nodes to = newNode();
        addEdge(word, {from, to});
        return to;
    }

    /// The node that is reached together with this one and never left.
    constexpr Nodes nodeOfAnyNumber(Nodes node)
    {
        Edge& edge =
            *std::ranges::find_if(edges_, [node](const Edge& e) { return (e.to & node) != 0; });
        if ((edge.to & sticky_) == 0) {
            const Nodes added = newNode();
            edge.to |= added;
            sticky_ |= added;
        }
        return edge.to & sticky_;
    }

    constexpr Nodes newNode()
    {
        lastNode_ <<= 1;
        if (lastNode_ == 0)
            throw "the tests begin in too many ways: widen HogAutomaton::Nodes";
        return lastNode_;
    }

    constexpr Word& wordOf(std::string_view text, Word::Fit fit)
    {
        std::size_t i = 0;
        for (; i < wordCount_; ++i)
            if (words_[i].text == text && words_[i].fit == fit)
                return words_[i];
        if (i == mostWords)
            throw "the tests hold too many words: widen HogAutomaton::Set";
        ++wordCount_;
        words_[i].text = text;
        words_[i].fit = fit;
        if (fit != Word::Fit::back)
            admit(i, text[0], text[1], kelvinSign.front(), first_, second_);
        else
            admitAll(i, first_, second_);
        if (fit != Word::Fit::front)
            admit(i, text[text.size() - 1], text[text.size() - 2], kelvinSign.back(), last_,
                  lastButOne_);
        else
            admitAll(i, last_, lastButOne_);
        return words_[i];
    }

    constexpr void addEdge(Word& word, Edge edge)
    {
        if (edgeCount_ == mostEdges)
            throw "the tests take too many steps: raise HogAutomaton::mostEdges";
        edge.next = word.firstEdge;
        word.firstEdge = static_cast<Index>(edgeCount_);
        edges_[edgeCount_++] = edge;
    }

    /// For each byte the words that it lets pass.
    using Table = std::array<Set, 256>;

    static constexpr std::size_t byte(char c) noexcept { return static_cast<unsigned char>(c); }

    static constexpr void include(std::size_t word, Set& set)
    {
        set[word / 64] |= std::uint64_t{1} << word % 64;
    }

    static constexpr void admitAll(std::size_t word, Table& outer, Table& inner)
    {
        for (Set& set : outer)
            include(word, set);
        for (Set& set : inner)
            include(word, set);
    }

    static constexpr void admit(std::size_t word, char c, Table& table)
    {
        include(word, table[byte(c)]);
        if (c >= 'a' && c <= 'z')
            include(word, table[byte(c) - 'a' + 'A']);
    }

    /// Lets the bytes pass that lower into a word's outermost two characters at one end;
    /// `kelvinByte` is the Kelvin sign's own outermost byte there.
    static constexpr void admit(std::size_t word, char outermost, char next, char kelvinByte,
                                Table& outer, Table& inner)
    {
        admit(word, outermost, outer);
        admit(word, next, inner);
        if (outermost == 'k') {
            admit(word, kelvinByte, outer);
            admit(word, kelvinSign[1], inner);
        }
        if (next == 'k')
            admit(word, kelvinByte, inner);
    }

    /// Visits what an item of that name, or of that word, means inside the folder.
    template <typename Visit>
    void forEachEdge(const State& state, std::string_view name, Visit&& visit) const noexcept;
    template <typename Visit>
    void forEachEdge(const State& state, const Word& word, Visit&& visit) const noexcept;

    // Four look-ups by a name's two first and two last bytes rule out all words for most.
    Table first_{};
    Table second_{};
    Table last_{};
    Table lastButOne_{};
    std::array<Word, mostWords> words_{};
    Word anyWord_{}; ///< whatever a component is
    std::array<Edge, mostEdges> edges_{};
    std::array<HogKind, noTest + 1> kinds_{};
    std::size_t wordCount_ = 0;
    std::size_t edgeCount_ = 0;
    Nodes lastNode_ = slash;
    Nodes sticky_ = 0; ///< nodes that what is below reaches as well
    Order testCount_ = 0;
    Order tag_ = noTest;
};

static_assert(sizeof(HogAutomaton::State) == 16, "every folder that waits to be walked holds one");

} // namespace brisalon::detail
