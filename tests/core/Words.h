#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace brisalon::tests {

/// The rule holds for each of the words but those with a "!".
template <typename Rule>
void expectThat(const Rule& rule, const std::string& words)
{
    std::istringstream stream(words);
    for (std::string word; stream >> word;) {
        const bool expected = word[0] != '!';
        EXPECT_EQ(rule(word.substr(expected ? 0 : 1)), expected) << word;
    }
}

} // namespace brisalon::tests
