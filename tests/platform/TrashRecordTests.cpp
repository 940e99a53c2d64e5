#include "Brisalon/Platform/linux/TrashRecord.h"

#include <gtest/gtest.h>

#include <string>

namespace brisalon::tests {

namespace {

TEST(TrashName, TheNumberStandsBeforeTheExtension)
{
    EXPECT_EQ(trashName("photo.jpg", 0, 245), "photo.jpg");
    EXPECT_EQ(trashName("photo.jpg", 2, 245), "photo.2.jpg");
    EXPECT_EQ(trashName("photo", 2, 245), "photo.2");
    EXPECT_EQ(trashName(".profile", 3, 245), ".profile.3");
    EXPECT_EQ(trashName("a.tar.gz", 3, 245), "a.tar.3.gz");
    EXPECT_EQ(trashName("ends with a dot.", 3, 245), "ends with a dot.3.");
    EXPECT_EQ(trashName("1. This is a sentence", 2, 245), "1. This is a sentence.2");
}

TEST(TrashName, WhatIsTooLongLosesTheEndOfItsStem)
{
    const std::string stem(100, 'a');
    EXPECT_EQ(trashName(stem + ".html", 0, 50), std::string(45, 'a') + ".html");
    EXPECT_EQ(trashName(stem + ".html", 12, 50), std::string(42, 'a') + ".12.html");
    EXPECT_EQ(trashName(stem, 0, 50), std::string(50, 'a'));
    EXPECT_EQ(trashName(stem + ".html", 0, 105), stem + ".html");
    // Characters of two and four bytes, which are not cut through.
    std::string twos;
    std::string fours;
    for (int i = 0; i < 30; ++i) {
        twos += "\xc3\xa9";
        fours += "\xf0\x9f\x8c\x8a";
    }
    EXPECT_EQ(trashName(twos, 0, 51), twos.substr(0, 50));
    EXPECT_EQ(trashName(fours, 0, 51), fours.substr(0, 48));
    EXPECT_EQ(trashName(fours, 0, 52), fours.substr(0, 52));
    // Not text at all: any cut is as good.
    EXPECT_EQ(trashName(std::string(100, '\x80'), 0, 50), std::string(50, '\x80'));
    EXPECT_EQ(trashName(stem, ~std::uint64_t{0}, 245).size(), 100U + 21U);
}

} // namespace

} // namespace brisalon::tests
