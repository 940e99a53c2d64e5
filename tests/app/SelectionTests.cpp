#include "Brisalon/App/DisplayText.h"
#include "Brisalon/App/Selection.h"
#include "BrisalonCore/FileNodeBuilder.h"

#include <gtest/gtest.h>

#include <limits>

namespace brisalon::tests {

namespace {

FileNodeHold node(const char* path, std::int64_t size, NodeKind kind,
                  std::vector<FileNode> children = {})
{
    return heldTree(FileNodeBuilder::make(FileURL(path), size, kind, std::move(children)));
}

LargeFileEntry file(const char* path, std::int64_t size, HogKind hog = HogKind::none)
{
    const FileURL url(path);
    return {url, std::string(url.lastPathComponent()), size, hog, risk(hog)};
}

/// A selection on one line: its urls; title, subtitle, size; what the one item is; the
/// facts; what can be done with it.
std::string described(const Selection& selection)
{
    std::string text;
    for (const FileURL& url : selection.urls())
        text += url.path() + " ";
    text += "| " +
            (withoutBreaks(selection.title()) + ", " + selection.subtitle() + ", ").toStdString() +
            selection.sizeText().toStdString();
    if (selection.isOneItem())
        text += " | " + selection.item().url.path() + " " +
                std::string(rawValue(selection.item().hogKind)) + " " +
                std::string(rawValue(selection.item().risk));
    for (const SelectionFact& fact : selection.facts())
        text += " | " + (fact.label + ": " + fact.value).toStdString();
    text += selection.canReveal() ? " | reveal" : "";
    text += selection.isFolder() ? " | folder" : "";
    text += selection.canZoom() ? " | zoom" : "";
    return text;
}

} // namespace

TEST(SelectionTest, IsTheTickedFilesOrElseTheNode)
{
    const FileNodeHold leaf = node("/h/a.bin", 7, NodeKind::file);
    const FileNodeHold folder = node("/h/node_modules", 7, NodeKind::directory, {*leaf});
    const FileNodeHold block =
        node("/h/.small-files-aggregate", 2048, NodeKind::smallFilesAggregate(3));
    const QList<LargeFileEntry> listed{file("/h/b.dmg", 3 << 20, HogKind::installer),
                                       file("/h/c.bin", 2 << 20), file("/h/d.bin", 1 << 20)};
    struct Case {
        FileNodeHold node;
        std::set<std::string> ticked;
        const char* described;
    };
    const Case cases[] = {
        {{}, {}, "| , , 0 B"},
        {leaf, {}, "/h/a.bin | a.bin, File, 7 B | /h/a.bin none unknown | reveal"},
        {folder,
         {},
         "/h/node_modules | node_modules, Folder, 7 B | /h/node_modules nodeModules review"
         " | reveal | folder | zoom"},
        {node("/h/empty", 0, NodeKind::directory),
         {},
         "/h/empty | empty, Folder, 0 B | /h/empty none unknown | reveal | folder"},
        {block,
         {},
         "| 3 small files, Small files, 2.0 KB | /h/.small-files-aggregate none unknown"
         " | Contents: 3 small files"},
        {folder,
         {"/h/b.dmg"},
         "/h/b.dmg | b.dmg, File, 3.0 MB | /h/b.dmg installer review | reveal"},
        {block,
         {"/h/d.bin", "/h/b.dmg", "/gone"},
         "/h/b.dmg /h/d.bin | 2 large files, Multi-select from Largest tab, 4.0 MB"},
        {folder, {"/gone"}, "| 0 large files, Multi-select from Largest tab, 0 B"},
    };
    for (const Case& each : cases) {
        const Selection selection(each.node, listed, each.ticked);
        EXPECT_EQ(described(selection), each.described);
        EXPECT_EQ(selection.isPresent(), each.node || !each.ticked.empty());
        EXPECT_EQ(selection.isOfFiles(), !each.ticked.empty());
    }
}

TEST(SelectionTest, ASumThatNoNumberHoldsIsTheLargestOne)
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const QList<LargeFileEntry> listed{file("/a", most), file("/b", 1)};
    EXPECT_EQ(Selection({}, listed, {"/a", "/b"}).bytes(), most);
}

} // namespace brisalon::tests
