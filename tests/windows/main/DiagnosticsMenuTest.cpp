#include "spreadsheet/package/ZipArchive.h"
#include "windows/WindowBench.h"

#include <QAction>

namespace ombrix {
namespace {

TEST(Diagnostics, AreSavedFromTheMenuAndTheirFolderOffered) {
    WindowBench bench;
    bench.Find<QAction>("mnuSaveDiagnostics").trigger();
    const std::string path = R"(C:\Diagnostics\diagnostics_20240315_140509_.zip)";
    const auto files = xlsx::ReadZip(bench.Bench.Files.ReadFile(path));
    EXPECT_NE(files.at("versions.txt").find("Qt 6."), std::string::npos);
    EXPECT_TRUE(files.contains("board0_301.bin"));
    ASSERT_EQ(bench.Bench.Documents.Opened.size(), 1U) << "the folder, as was answered";
    const RunningProcedure running(bench.Bench.TheStation.Procedures, "test");
    EXPECT_FALSE(bench.Find<QAction>("mnuSaveDiagnostics").isEnabled());
}

} // namespace
} // namespace ombrix
