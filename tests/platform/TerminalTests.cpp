#include "Brisalon/Platform/DesktopWorkspace.h"

#include "support/Script.h"
#include "support/TemporaryTree.h"

#include <QTest>

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace brisalon::tests {

namespace {

TEST(TerminalTest, TheFirstThatStartsDoesSoInTheFolder)
{
    // A folder that no path leads to in one step, by a name that is no text.
    const TemporaryTree place;
    const std::string name = "\xff $(exit) " + std::string(200, 'n');
    place.chain("", name, 31, 1);
    std::string deep = place.path();
    for (int i = 0; i < 30; ++i)
        deep += "/" + name;

    constexpr const char* stays = "exec /bin/sleep 2";
    const struct {
        std::vector<std::pair<const char*, const char*>> programs; ///< what each comes to
        const char* chosen;                                        ///< the variable TERMINAL
        std::string folder;
        bool starts;
        const char* started; ///< all, in order
    } cases[] = {
        {{{"konsole", "exit 0"}, {"xterm", "exit 0"}}, "", deep, true, "konsole\n"},
        {{{"own", "exit 0"}, {"xterm", "exit 0"}}, "own", deep, true, "own\n"},
        {{{"xdg-terminal-exec", stays}, {"x-terminal-emulator", "exit 0"}},
         "",
         deep,
         true,
         "xdg-terminal-exec\n"},
        {{{"xdg-terminal-exec", "exit 2"}, {"x-terminal-emulator", "kill $$"}, {"xterm", "exit 0"}},
         "missing",
         deep,
         true,
         "xdg-terminal-exec\nx-terminal-emulator\nxterm\n"},
        {{{"xterm", "exit 1"}}, "", deep, false, "xterm\n"},
        {{}, "", deep, false, ""},
        {{{"xterm", "exit 0"}}, "", deep + "/missing", false, ""},
    };
    const std::string path = std::getenv("PATH");
    for (const auto& [programs, chosen, folder, starts, started] : cases) {
        const TemporaryTree tools;
        for (const auto& [program, end] : programs)
            script(tools, program,
                   "[ -d sibling -a $# = 0 ] && echo \"${0##*/}\" >> " + tools.at("log") + "\n" +
                       end);
        ::setenv("PATH", tools.path().c_str(), 1);
        ::setenv("TERMINAL", chosen, 1);
        DesktopWorkspace workspace;
        std::optional<bool> answer;
        workspace.openTerminal(FileURL(folder), [&](bool hasStarted) { answer = hasStarted; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return answer.has_value(); }));
        EXPECT_EQ(answer, starts) << started;
        EXPECT_EQ(contents(tools.at("log")), started);
    }
    ::setenv("PATH", path.c_str(), 1);
}

} // namespace

} // namespace brisalon::tests
