#include "ModelFixture.h"

#include "Brisalon/App/Commands.h"
#include "Brisalon/Platform/HomeFolder.h"
#include "support/Files.h"

#include <QStringList>

namespace brisalon::tests {

class CommandsTest : public ModelFixture {
protected:
    void run(const char* name) { commands.findChild<Command*>(name)->run(); }

    std::string enabled() const
    {
        QStringList names;
        for (const Command* const command : commands.list()) {
            if (command->isEnabled())
                names.append(command->objectName());
        }
        return names.join(' ').toStdString();
    }

    Commands commands{*state};
};

TEST_F(CommandsTest, AreEnabledWhileTheyMeanSomething)
{
    int announced = 0;
    QObject::connect(commands.findChild<Command*>("scanAgain"), &Command::isEnabledChanged,
                     [&] { ++announced; });
    EXPECT_EQ(enabled(), "scanHome scanThisMac scanFolder upOneLevel scanDisk about");
    gate.holdAfter(0);
    state->startScan(tree.url());
    EXPECT_EQ(enabled(), "cancelScan upOneLevel about");
    run("scanFolder");
    EXPECT_EQ(panel.title, "") << "what is not enabled does nothing";
    gate.open();
    waitForEnd();
    EXPECT_EQ(enabled(), "scanHome scanThisMac scanFolder scanAgain upOneLevel rescanLevel "
                         "scanDisk whatMayGo whatIsLeftOut about");
    state->setSelected(state->tree());
    EXPECT_EQ(enabled(), "scanHome scanThisMac scanFolder scanAgain reveal openTerminal "
                         "rescanFolder copyPath moveToTrash "
                         "upOneLevel rescanLevel scanDisk whatMayGo whatIsLeftOut about");
    EXPECT_EQ(announced, 1);
}

TEST_F(CommandsTest, DoWhatTheirNamesSay)
{
    tree.file("folder/file.bin", mib);
    scan(tree.url());
    state->zoom(child(state->tree(), "folder"));
    run("rescanLevel");
    waitForEnd();
    EXPECT_EQ(state->progress()->currentPath, tree.at("folder"));
    EXPECT_EQ(state->current().name(), "folder");
    run("upOneLevel");
    EXPECT_EQ(state->current(), state->tree());
    run("openTerminal");
    EXPECT_EQ(workspace.terminals, std::vector{tree.url()});
    run("rescanFolder");
    waitForEnd();
    EXPECT_EQ(state->progress()->currentPath, tree.path());
    run("moveToTrash");
    EXPECT_TRUE(state->confirmTrash());
    run("scanFolder");
    EXPECT_EQ(panel.title, "Scan");
    bool isAboutRequested = false;
    QObject::connect(&commands, &Commands::aboutRequested, [&] { isAboutRequested = true; });
    run("about");
    EXPECT_TRUE(isAboutRequested);

    gate.holdAfter(0);
    const struct {
        const char* name;
        FileURL root;
    } scans[] = {
        {"scanAgain", tree.url()}, {"scanHome", homeFolder()}, {"scanThisMac", FileURL("/")}};
    for (const auto& [name, root] : scans) {
        run(name);
        EXPECT_TRUE(state->isScanning());
        EXPECT_EQ(state->scanRoot(), root);
        run("cancelScan");
        EXPECT_FALSE(state->isScanning());
    }
}

TEST_F(CommandsTest, StandInTheReadmeWithTheirShortcuts)
{
    std::string table = "| shortcut | command |\n|---|---|\n";
    for (const Command* const command : commands.list()) {
        if (!command->shortcut().isEmpty())
            table += ("| " + command->shortcut() + " | " + command->text() + " |\n").toStdString();
    }
    EXPECT_NE(contents(README).find("\n\n" + table + "\n"), std::string::npos)
        << "README.md does not have this table:\n"
        << table;
}

} // namespace brisalon::tests
