// What views reach of the model, through the engine that they run in.

#include "ModelFixture.h"

#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>

namespace brisalon::tests {

class QmlTest : public ModelFixture {
protected:
    QmlTest()
    {
        engine.addImportPath("qrc:/qt/qml");
        engine.rootContext()->setContextProperty("state", state.get());
        QQmlComponent types(&engine);
        types.setData("import QtQml\nimport Brisalon.App\nQtObject {}", {});
        EXPECT_TRUE(types.isReady()) << types.errorString().toStdString();
        tree.file("node_modules/big.dmg", 4 * mib);
        tree.file("node_modules/tiny", 4 * kib);
        tree.file("middle.bin", 2 * mib);
        scan(tree.url());
    }

    std::string evaluated(const QString& script)
    {
        QQmlExpression expression(engine.rootContext(), nullptr, script);
        const QVariant value = expression.evaluate();
        EXPECT_FALSE(expression.hasError()) << expression.error().toString().toStdString();
        return value.toString().toStdString();
    }

    QQmlEngine engine;
};

TEST_F(QmlTest, ShowsTheListOfLargestFilesAndWhatIsSelected)
{
    EXPECT_EQ(evaluated("state.largeFiles.map(f => [f.name, f.folderName, f.sizeText, f.isHog,"
                        "f.riskTitle].join()).join(';')"),
              "big.dmg,node_modules,4.0 MB,true,Review;"
              "middle.bin," +
                  state->tree().name().toStdString() + ",2.0 MB,false,Unknown");
    evaluated("state.revealLargeFile(state.largeFiles[0])");
    EXPECT_EQ(state->current().name(), "node_modules");
    EXPECT_EQ(state->selected().name(), "big.dmg");
    EXPECT_EQ(evaluated("state.selection.item.riskSummary"), summary(Risk::review));

    evaluated("state.requestReveal(state.largeFiles[1].url)");
    evaluated("state.requestReveal(state.selection.item.url)");
    EXPECT_EQ(workspace.revealed, (std::vector{FileURL(tree.at("middle.bin")),
                                               FileURL(tree.at("node_modules/big.dmg"))}));

    state->setSelected(child(state->current(), ".small-files-aggregate"));
    EXPECT_EQ(evaluated("state.selection.facts[0].value"), "1 small files");
}

TEST_F(QmlTest, LeadsToTheSettingsAndAsksBeforeASnapshotGoes)
{
    bundle.place = FileURL("/opt/brisalon");
    evaluated("state.revealAppInFinder()");
    EXPECT_EQ(workspace.revealed, std::vector{bundle.place});
    evaluated("state.openSettings()");
    EXPECT_EQ(workspace.addresses.size(), 1u);

    state->setConfirmSnapshot(LocalSnapshot{"2024-01-15-123456", ""});
    EXPECT_EQ(evaluated("state.confirmSnapshot.title"), "2024-01-15 · 12:34");
    evaluated("state.dismissSnapshot()");
    EXPECT_EQ(evaluated("state.confirmSnapshot.isPresent"), "false");
}

} // namespace brisalon::tests
