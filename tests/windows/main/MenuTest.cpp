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
