#include "ModelFixture.h"

#include "Brisalon/App/WhatMayGo.h"

#include <QAbstractItemModelTester>

namespace brisalon::tests {

class WhatMayGoTest : public ModelFixture {
protected:
    WhatMayGoTest() { list.setAppState(state.get()); }

    QVariant at(int row, WhatMayGo::Role role) const { return list.index(row).data(role); }
    /// The rows as they are read: "Caches 4.2 MB: b a".
    std::string read() const
    {
        std::string text;
        for (int row = 0; row < list.rowCount(); ++row) {
            const auto place = at(row, WhatMayGo::entry).value<LargeFileEntry>();
            if (at(row, WhatMayGo::isFirst).toBool())
                text += "| " + std::string(title(place.hogKind)) + ' ';
            text += place.name + ' ';
        }
        return text + list.safeText().toStdString();
    }

    WhatMayGo list;
    QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(WhatMayGoTest, ListsTheLargestPlacesOfEachKindAndVanishesWithItsTree)
{
    EXPECT_EQ(list.explanation(), "Scan a folder first.");
    for (int i = 0; i < 7; ++i)
        tree.file("p" + std::to_string(i) + "/node_modules/x.js", (7 - i) * mib);
    tree.file("Library/Caches/a/in/node_modules/y.js", 3 * mib);
    tree.file("Library/Logs/l.log", mib);
    scan(tree.url());
    ASSERT_TRUE(waitFor([&] { return list.rowCount() > 0; }));
    EXPECT_EQ(read(), "| node_modules node_modules node_modules node_modules node_modules "
                      "node_modules | Caches Caches | Logs Logs 4.0 MB");
    EXPECT_EQ(at(1, WhatMayGo::entry).value<LargeFileEntry>().id(), tree.at("p1/node_modules"));
    EXPECT_TRUE(list.explanation().contains("takes 32 MB."));

    TemporaryTree other;
    gate.holdAfter(0);
    state->startScan(other.url());
    EXPECT_EQ(read(), "") << "what it was summed up from is gone";
    gate.open();
    waitForEnd();
    EXPECT_TRUE(waitFor([&] { return list.explanation().startsWith("Nothing in "); }));
}

TEST_F(WhatMayGoTest, ShowsAPlaceOnTheMapSelectedAlone)
{
    tree.file("p/node_modules/x.js", mib);
    tree.file("node_modules/y.js", 2 * mib);
    const struct {
        const char* root;
        int row;
        const char* level;
        const char* selected;
    } rows[] = {
        {"", 1, "p", "p/node_modules"},
        {"", 2, "p", "p/node_modules"}, // there is no such row
        {"node_modules", 0, "node_modules", "node_modules"},
    };
    for (const auto& row : rows) {
        const FileURL root(tree.at(row.root));
        if (state->scanRoot() != root) {
            scan(root);
            ASSERT_TRUE(waitFor([&] { return list.rowCount() > 0; }));
        }
        state->setSelectedLargeFileIDs({tree.at("node_modules/y.js")});
        list.show(row.row);
        EXPECT_EQ(state->current().name().toStdString(), row.level);
        EXPECT_EQ(state->selected().id().toStdString(), tree.at(row.selected));
        EXPECT_EQ(state->selection().isOfFiles(), row.row == 2);
    }
}

} // namespace brisalon::tests
