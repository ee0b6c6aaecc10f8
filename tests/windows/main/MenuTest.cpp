#include "windows/WindowBench.h"

#include <QAction>

namespace ombrix {
namespace {

TEST(Menu, DataFolderOpensInTheDesktopsFileManager) {
    WindowBench bench;
    bench.Find<QAction>("mnuOpenDataFolder").trigger();
    ASSERT_EQ(bench.Bench.Documents.Opened.size(), 1U);
    EXPECT_TRUE(std::filesystem::equivalent(bench.Bench.Documents.Opened.front(),
                                            bench.Bench.Folder.Path()));
}

TEST(Menu, GuidesOpenAsThePagesThatLieBesideTheProgram) {
    WindowBench bench("none");
    auto& opened = bench.Bench.Documents.Opened;
    for (const char* action :
         {"mnuOperatorsGuide", "mnuServiceGuide", "mnuTerminalGuide", "mnuFileFormats"})
        bench.Find<QAction>(action).trigger();
    bench.Click("cmdOperatorsGuide");
    ASSERT_EQ(opened.size(), 5U);
    EXPECT_EQ(opened.front(), opened.back());
    for (const std::filesystem::path& page : opened)
        EXPECT_NE(ReadWholeFile(page).find("<h1"), std::string::npos) << page;
}

TEST(Menu, WithoutABoardTheProgramBeginsAnewWithWhatIsChosen) {
    WindowBench simulated("none");
    simulated.Click("cmdUseSimulation");
    EXPECT_EQ(simulated.StartedAnew, std::vector<std::string>{""});
    EXPECT_FALSE(simulated.Window.isVisible());
    WindowBench chosen("none");
    std::function<void(const QString&)> choose;
    chosen.Window.AskForLibrary = [&](const QString&, auto answer) { choose = answer; };
    chosen.Click("cmdChooseLibrary");
    EXPECT_TRUE(chosen.Window.isVisible() && chosen.StartedAnew.empty()) << "nothing is chosen yet";
    choose("/opt/libBoards.so");
    EXPECT_EQ(chosen.StartedAnew, std::vector<std::string>{"/opt/libBoards.so"});
    EXPECT_FALSE(chosen.Window.isVisible());
}

TEST(Menu, AboutNamesTheVersion) {
    WindowBench bench;
    bench.Find<QAction>("mnuAbout").trigger();
    ASSERT_EQ(bench.Bench.Messages.Shown.size(), 1U);
    EXPECT_EQ(bench.Bench.Messages.Shown.front().Text.rfind("Ombrix 1.2.34", 0), 0U);
}

TEST(Menu, QuitClosesTheWindow) {
    WindowBench bench;
    bench.Find<QAction>("mnuQuit").trigger();
    EXPECT_FALSE(bench.Window.isVisible());
    EXPECT_TRUE(bench.Bench.Events.ProgramEnding());
}

} // namespace
} // namespace ombrix
