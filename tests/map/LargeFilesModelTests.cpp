#include "Brisalon/Map/LargeFilesModel.h"

#include "app/ModelFixture.h"

#include <QAbstractItemModelTester>

namespace brisalon::tests {

/// A list of "d/0.bin" to "d/4.bin", the largest first.
class LargeFilesModelTest : public ModelFixture {
protected:
    LargeFilesModelTest()
    {
        for (int i = 0; i < 5; ++i)
            tree.file("d/" + std::to_string(i) + ".bin", (9 - i) * mib);
        files.setAppState(state.get());
        scan(tree.url());
    }

    /// The ticked rows, as the rows themselves tell.
    std::string ticked() const
    {
        std::string rows;
        for (int row = 0; row < files.rowCount(); ++row) {
            if (files.index(row).data(LargeFilesModel::isSelected).toBool())
                rows += std::to_string(row);
        }
        return rows;
    }
    std::string nameOf(int row) const
    {
        return files.index(row).data(LargeFilesModel::entry).value<LargeFileEntry>().name;
    }

    static constexpr int ctrl = Qt::ControlModifier;
    static constexpr int shift = Qt::ShiftModifier;

    LargeFilesModel files;
    QAbstractItemModelTester tester{&files, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(LargeFilesModelTest, CtrlTogglesAndShiftTicksARange)
{
    const struct {
        int row;
        int modifiers;
        const char* ticked;
    } clicks[] = {
        {3, shift, "3"},                              // without an anchor the row itself is one
        {1, shift, "123"}, {4, shift, "34"},          // from the same anchor
        {0, ctrl, "034"},  {1, ctrl | shift, "0134"}, // in addition, from the row toggled last
        {3, ctrl, "014"},  {2, shift, "23"},          // a row that was unticked is an anchor, too
    };
    for (const auto& click : clicks) {
        files.click(click.row, click.modifiers);
        EXPECT_EQ(ticked(), click.ticked);
    }
    files.click(5);
    files.click(-1, ctrl);
    EXPECT_EQ(ticked(), "23") << "there are no such rows";
    EXPECT_FALSE(state->selected()) << "none of this shows a file";

    state->select(state->tree());
    EXPECT_EQ(ticked(), "");
    files.click(0, shift);
    EXPECT_EQ(ticked(), "0") << "what ends the selection forgets its anchor";
}

TEST_F(LargeFilesModelTest, TheKeyboardMovesTicksAndShows)
{
    EXPECT_EQ(files.currentRow(), -1);
    files.enter();
    EXPECT_EQ(files.currentRow(), 0);
    EXPECT_EQ(ticked(), "") << "coming to the list ticks nothing";

    struct Step {
        int key;
        int modifiers;
        const char* ticked;
        int current;
    };
    const Step steps[] = {
        {Qt::Key_Up, 0, "0", 0},          {Qt::Key_Down, 0, "1", 1},
        {Qt::Key_Down, shift, "12", 2},   {Qt::Key_Down, shift, "123", 3},
        {Qt::Key_Up, shift, "12", 2},     {Qt::Key_Down, ctrl, "12", 3},
        {Qt::Key_Down, ctrl, "12", 4},    {Qt::Key_Space, 0, "124", 4},
        {Qt::Key_Down, ctrl, "124", 4},   {Qt::Key_Space, ctrl, "12", 4},
        {Qt::Key_Home, 0, "0", 0},        {Qt::Key_End, shift, "01234", 4},
        {Qt::Key_Home, ctrl, "01234", 0}, {Qt::Key_Down, 0, "1", 1},
        {Qt::Key_A, ctrl, "01234", 1},    {Qt::Key_Escape, 0, "", 1},
        {Qt::Key_Down, shift, "12", 2},
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        EXPECT_TRUE(files.press(steps[i].key, steps[i].modifiers)) << i;
        EXPECT_EQ(ticked(), steps[i].ticked) << i;
        EXPECT_EQ(files.currentRow(), steps[i].current) << i;
    }
    EXPECT_FALSE(state->selected());
    files.press(Qt::Key_Return);
    EXPECT_EQ(state->selected().name(), "2.bin");
    EXPECT_EQ(ticked(), "12");

    EXPECT_FALSE(files.press(Qt::Key_A));
    EXPECT_FALSE(files.press(Qt::Key_Tab));
    files.press(Qt::Key_Escape);
    EXPECT_FALSE(files.press(Qt::Key_Escape)) << "with nothing ticked it is somebody else's";
}

TEST_F(LargeFilesModelTest, ARescanKeepsTheTicksAndTheCurrentRow)
{
    files.click(1, ctrl);
    files.click(3, ctrl);
    tree.remove("d/1.bin");
    tree.file("d/new.bin", 20 * mib);
    scan(tree.url());
    EXPECT_EQ(nameOf(0), "new.bin");
    EXPECT_EQ(ticked(), "3");
    EXPECT_EQ(nameOf(3), "3.bin");
    EXPECT_EQ(state->selectedLargeFileIDs(), (std::set{tree.at("d/1.bin"), tree.at("d/3.bin")}));
    EXPECT_EQ(files.currentRow(), 3) << "with its file";
    files.click(0, shift);
    EXPECT_EQ(ticked(), "0") << "the anchor was of another list";

    files.click(4);
    tree.remove("d/4.bin");
    tree.remove("d/new.bin");
    scan(tree.url());
    EXPECT_EQ(ticked(), "");
    EXPECT_EQ(files.currentRow(), 2) << "the last one";
    EXPECT_TRUE(state->selection().isOfFiles()) << "though none of them is listed";
    EXPECT_TRUE(files.press(Qt::Key_Escape));
    EXPECT_FALSE(state->selection().isOfFiles());

    tree.folder("empty");
    scan(FileURL(tree.at("empty")));
    EXPECT_EQ(files.rowCount(), 0);
    EXPECT_EQ(files.currentRow(), -1);
    EXPECT_FALSE(files.press(Qt::Key_Down));
    files.enter();
    EXPECT_EQ(files.currentRow(), -1);

    scan(tree.url());
    state->setSelectedLargeFileIDs({tree.at("d/3.bin"), tree.at("d/2.bin")});
    files.enter();
    EXPECT_EQ(nameOf(files.currentRow()), "2.bin") << "the first that is ticked";
}

} // namespace brisalon::tests
