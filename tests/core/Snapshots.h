#pragma once

#include "BrisalonCore/LocalSnapshot.h"

#include <string>
#include <vector>

namespace brisalon::tests {

using Tokens = std::vector<std::string>;

inline Tokens tokens(const std::vector<LocalSnapshot>& snapshots)
{
    Tokens found;
    for (const LocalSnapshot& snapshot : snapshots)
        found.push_back(snapshot.dateToken);
    return found;
}

} // namespace brisalon::tests
