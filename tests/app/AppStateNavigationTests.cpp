#include "ModelFixture.h"

#include <string>
#include <vector>

namespace brisalon::tests {

/// A map of "/outer/inner/deep.bin", "/outer/side.bin" and "/flat.bin".
class NavigationTest : public ModelFixture {
protected:
    NavigationTest()
    {
        tree.file("root/outer/inner/deep.bin", 3 * mib);
        tree.file("root/outer/side.bin", 2 * mib);
        tree.file("root/flat.bin", mib);
        scan(FileURL(tree.at("root")));
        root = state->tree();
        outer = child(root, "outer");
        inner = child(outer, "inner");
        flat = child(root, "flat.bin");
    }

    FileNodeValue root;
    FileNodeValue outer;
    FileNodeValue inner;
    FileNodeValue flat;
};

using Names = std::vector<std::string>;

TEST_F(NavigationTest, ZoomingInAndOut)
{
    EXPECT_TRUE(state->shouldShowMapHint());
    state->zoomUpOneLevel();
    EXPECT_EQ(state->current(), root) << "there is nothing above the root";
    EXPECT_FALSE(state->selected());

    state->zoom(outer);
    EXPECT_FALSE(state->shouldShowMapHint());
    state->zoom(inner);
    EXPECT_EQ(crumbNames(), (Names{"root", "outer", "inner"}));
    EXPECT_EQ(state->current(), inner);
    EXPECT_EQ(state->selected(), inner);

    state->zoomUpOneLevel();
    EXPECT_EQ(crumbNames(), (Names{"root", "outer"}));
    EXPECT_EQ(state->current(), outer);
    EXPECT_EQ(state->selected(), outer);

    state->zoom(inner);
    state->jumpToBreadcrumb(state->breadcrumbs().first());
    EXPECT_EQ(crumbNames(), (Names{"root"}));
    EXPECT_EQ(state->current(), root);
}

TEST_F(NavigationTest, WhatIsNoStepDeeperOrOnTheWay)
{
    state->zoom(flat);
    EXPECT_EQ(state->selected(), flat) << "a file is selected and not entered";
    EXPECT_EQ(crumbNames(), Names{"root"});
    EXPECT_TRUE(state->shouldShowMapHint());

    state->zoom(outer);
    state->jumpToBreadcrumb(inner);
    state->jumpToBreadcrumb({});
    EXPECT_EQ(crumbNames(), (Names{"root", "outer"})) << "not on the way";
    EXPECT_EQ(state->current(), outer);
    EXPECT_EQ(state->selected(), outer);

    state->zoom(inner);
    state->zoom(root);
    EXPECT_EQ(crumbNames(), (Names{"root"})) << "a folder on the way cuts it";
    EXPECT_EQ(state->current(), root);
}

TEST_F(NavigationTest, SelectingIsSilentForTheNodeThatIsSelectedAlready)
{
    int changes = 0;
    const auto model = std::move(state);
    QObject::connect(model.get(), &AppState::selectedChanged, [&] { ++changes; });
    model->setSelected(outer);
    model->setSelected(outer);
    EXPECT_EQ(changes, 1);

    // The same folder of a tree of its own is the same while all in it is equal.
    state = std::make_unique<AppState>(services());
    const auto rescan = [&] {
        scan(FileURL(tree.at("root")));
        return child(state->tree(), "outer");
    };
    model->setSelected(rescan());
    EXPECT_EQ(changes, 1);
    tree.file("root/outer/more.bin", mib);
    model->setSelected(rescan());
    EXPECT_EQ(changes, 2);

    model->zoom(outer);
    EXPECT_FALSE(state->shouldShowMapHint()) << "gone for good after the first zoom";
}

TEST_F(NavigationTest, AClickOnTheMapEndsASelectionOfLargeFiles)
{
    state->setSelected(flat);
    state->setSelectedLargeFileIDs({tree.at("root/flat.bin"), tree.at("root/outer/side.bin")});
    EXPECT_EQ(state->selectedBytes(), 3 * mib);
    ASSERT_EQ(state->selectedLargeFileEntries().size(), 2);
    EXPECT_EQ(state->selectedLargeFileEntries()[0].name, "side.bin") << "in the list's order";

    state->select(outer);
    EXPECT_TRUE(state->selectedLargeFileIDs().empty());
    EXPECT_EQ(state->selectedBytes(), 5 * mib);
}

} // namespace brisalon::tests
