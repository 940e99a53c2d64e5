#include "ModelFixture.h"

#include <functional>
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
        scan(url("root"));
        root = state->tree();
        outer = child(root, "outer");
        inner = child(outer, "inner");
        flat = child(root, "flat.bin");
    }

    /// Whether the hint is shown, the way to the level, and what is selected.
    std::string place() const
    {
        std::string text = state->shouldShowMapHint() ? "hint: " : "";
        for (const std::string& name : crumbNames())
            text += name + '/';
        EXPECT_EQ(state->current(), state->breadcrumbs().last());
        return text + ' ' + state->selected().name().toStdString();
    }

    FileNodeValue root;
    FileNodeValue outer;
    FileNodeValue inner;
    FileNodeValue flat;
};

TEST_F(NavigationTest, ZoomsInAndOutAndJumpsOnTheWayAlone)
{
    const struct {
        std::function<void()> go;
        const char* place;
    } steps[] = {
        {[&] { state->zoomUpOneLevel(); }, "hint: root/ "},
        {[&] { state->zoom(flat); }, "hint: root/ flat.bin"}, // a file is not entered
        {[&] { state->zoom(outer); }, "root/outer/ outer"},
        {[&] { state->zoomUpOneLevel(); }, "root/ root"},
        {[&] { state->zoom(outer); }, "root/outer/ outer"},
        {[&] { state->zoom(inner); }, "root/outer/inner/ inner"},
        {[&] { state->zoomUpOneLevel(); }, "root/outer/ outer"},
        {[&] { state->jumpToBreadcrumb(inner); }, "root/outer/ outer"}, // not on the way
        {[&] { state->jumpToBreadcrumb({}); }, "root/outer/ outer"},
        {[&] { state->zoom(inner); }, "root/outer/inner/ inner"},
        {[&] { state->jumpToBreadcrumb(outer); }, "root/outer/ outer"},
        {[&] { state->zoom(root); }, "root/ root"}, // a folder on the way cuts it
    };
    for (std::size_t i = 0; i < std::size(steps); ++i) {
        steps[i].go();
        EXPECT_EQ(place(), steps[i].place) << i;
    }
}

} // namespace brisalon::tests
