#include "healthcheck/HealthCheckReport.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(SaveFolder, FollowsWhetherTheShareCanBeReached) {
    TestBench bench;
    bench.Detect();
    bench.TheStation.Calibration().ReadEPROMValues();
    std::string folder;
    ASSERT_TRUE(GetACUFolder(bench.TheStation, folder));
    EXPECT_EQ(folder, R"(C:\ACUs\ACU00301_M9200301A\)");

    const TemporaryFolder share;
    bench.Files.Mount("S:", share.Path());
    ASSERT_TRUE(GetSaveRootFolder(bench.TheStation, folder));
    EXPECT_EQ(folder, R"(C:\ACUs\)") << "a share without its marker is not the share";
    ReplaceWholeFile(share.Path() / ".aibshare", "");
    ASSERT_TRUE(GetACUFolder(bench.TheStation, folder));
    EXPECT_EQ(folder, R"(S:\Production\ACUs\_Initial Tests\ACU00301_M9200301A\)");
    EXPECT_TRUE(bench.Files.FolderExists(folder));
}

TEST(SaveFolder, OpensTheRootOrSaysWhyNot) {
    TestBench bench;
    OpenSaveFolder(bench.TheStation);
    ASSERT_EQ(bench.Documents.Opened.size(), 1U);
    EXPECT_EQ(bench.Documents.Opened[0].filename(), "ACUs");

    std::filesystem::remove_all(bench.Folder.Path() / "ACUs");
    ReplaceWholeFile(bench.Folder.Path() / "ACUs", "a file in the way");
    OpenSaveFolder(bench.TheStation);
    ASSERT_EQ(bench.Messages.Shown.size(), 1U);
    EXPECT_EQ(bench.Messages.Shown[0].Text,
              "Unable to Open the following locations:\r\n\r\n"
              "   'S:\\Production\\ACUs\\_Initial Tests\\'\r\n\r\n'C:\\ACUs\\'.\r\n\r\n"
              "You will need to do this manually.");
    EXPECT_EQ(bench.Documents.Opened.size(), 1U);
}

} // namespace
} // namespace ombrix
