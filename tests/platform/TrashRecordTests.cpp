#include "Brisalon/Platform/linux/TrashRecord.h"

#include <gtest/gtest.h>

#include <string>

namespace brisalon::tests {

namespace {

TEST(TrashName, TheNumberStandsBeforeTheExtensionAndTheStemIsCut)
{
    const std::string stem(100, 'a');
    // Characters of two and four bytes, which are not cut through.
    std::string twos;
    std::string fours;
    for (int i = 0; i < 30; ++i) {
        twos += "\xc3\xa9";
        fours += "\xf0\x9f\x8c\x8a";
    }
    struct Row {
        std::string name;
        std::uint64_t number;
        std::size_t longest;
        std::string expected;
    };
    for (const Row& row : {Row{"photo.jpg", 0, 245, "photo.jpg"},
                           {"photo.jpg", 2, 245, "photo.2.jpg"},
                           {"photo", 2, 245, "photo.2"},
                           {".profile", 3, 245, ".profile.3"},
                           {"a.tar.gz", 3, 245, "a.tar.3.gz"},
                           {"ends with a dot.", 3, 245, "ends with a dot.3."},
                           {"1. This is a sentence", 2, 245, "1. This is a sentence.2"},
                           {stem + ".html", 0, 50, std::string(45, 'a') + ".html"},
                           {stem + ".html", 12, 50, std::string(42, 'a') + ".12.html"},
                           {stem, 0, 50, std::string(50, 'a')},
                           {stem + ".html", 0, 105, stem + ".html"},
                           {twos, 0, 51, twos.substr(0, 50)},
                           {fours, 0, 51, fours.substr(0, 48)},
                           {fours, 0, 52, fours.substr(0, 52)},
                           // Not text at all: any cut is as good.
                           {std::string(100, '\x80'), 0, 50, std::string(50, '\x80')},
                           {stem, ~std::uint64_t{0}, 245, stem + ".18446744073709551615"}})
        EXPECT_EQ(trashName(row.name, row.number, row.longest), row.expected);
}

} // namespace

} // namespace brisalon::tests
