#include "analysis/HogAutomaton.h"

#include <bit>
#include <optional>

namespace brisalon::detail {

namespace {

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

bool HogAutomaton::Word::matches(std::string_view name) const noexcept
{
    switch (fit) {
    case Fit::whole:
        return frontMatch(name, text) == name.size();
    case Fit::front:
        return frontMatch(name, text).has_value();
    case Fit::back:
        return backMatches(name, text);
    }
    return false;
}

template <typename Visit>
void HogAutomaton::forEachEdge(const State& state, std::string_view name,
                               Visit&& visit) const noexcept
{
    const auto size = name.size();
    if (size < 2) // shorter than every word
        return;
    const Set& first = first_[byte(name[0])];
    const Set& second = second_[byte(name[1])];
    const Set& last = last_[byte(name[size - 1])];
    const Set& lastButOne = lastButOne_[byte(name[size - 2])];
    for (std::size_t i = 0; i < first.size(); ++i) {
        for (auto words = first[i] & second[i] & last[i] & lastButOne[i]; words != 0;
             words &= words - 1) {
            const Word& word = words_[i * 64 + static_cast<std::size_t>(std::countr_zero(words))];
            if (word.matches(name))
                forEachEdge(state, word, visit);
        }
    }
}

template <typename Visit>
void HogAutomaton::forEachEdge(const State& state, const Word& word, Visit&& visit) const noexcept
{
    for (Index i = word.firstEdge; i != noEdge; i = edges_[i].next)
        if ((edges_[i].from & state.reached) != 0)
            visit(edges_[i]);
}

HogAutomaton::State HogAutomaton::entering(const State& state,
                                           std::string_view folderName) const noexcept
{
    State inside{anywhere | slash | (state.reached & sticky_), state.passed};
    const auto follow = [&inside](const Edge& edge) {
        inside.reached |= edge.to;
        inside.passed = std::min(inside.passed, edge.below);
    };
    forEachEdge(state, anyWord_, follow);
    forEachEdge(state, folderName, follow);
    return inside;
}

HogKind HogAutomaton::classify(const State& state, std::string_view name) const noexcept
{
    Order passed = state.passed;
    forEachEdge(state, name, [&passed](const Edge& edge) { passed = std::min(passed, edge.item); });
    return kinds_[passed];
}

} // namespace brisalon::detail
