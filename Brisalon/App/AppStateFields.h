#pragma once

#include "Brisalon/App/AppState.h"

#include <algorithm>
#include <utility>

namespace brisalon {

/// How the model compares a field with what is to be stored in it.
template <typename T>
bool areEqual(const T& a, const T& b)
{
    return a == b;
}

// A FileNodeValue tells nodes of two trees apart; a field is only announced when
// the nodes themselves differ. Nodes of one tree share what lies below them, so
// this visits a subtree only when a node of an older tree is replaced.
inline bool areEqual(const FileNodeHold& a, const FileNodeHold& b)
{
    return a == b || (a && b && *a == *b);
}

inline bool areEqual(const FileNodeValue& a, const FileNodeValue& b)
{
    return areEqual(a.hold(), b.hold());
}

inline bool areEqual(const QList<FileNodeValue>& a, const QList<FileNodeValue>& b)
{
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const FileNodeValue& x, const FileNodeValue& y) { return areEqual(x, y); });
}

template <typename T>
void AppState::assign(T& field, T value, void (AppState::*changed)())
{
    if (areEqual(field, value))
        return;
    field = std::move(value);
    emit(this->*changed)();
}

} // namespace brisalon
