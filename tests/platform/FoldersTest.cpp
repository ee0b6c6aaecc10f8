#include "platform/ports/Folders.h"

#include "support/ForwardingDrive.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

TEST(Folders, PathsAreTakenApart) {
    EXPECT_EQ(AddBackslash(R"(C:\Data)"), R"(C:\Data\)");
    EXPECT_EQ(AddBackslash(R"(C:\Data\)"), R"(C:\Data\)");
    EXPECT_EQ(LeftOfLast(R"(C:\a\b)", "\\"), R"(C:\a\)");
    EXPECT_EQ(LeftOfLast("none", "\\"), "none");
    EXPECT_EQ(GetFolderOfPath(R"(C:\Logs\run.csv)"), R"(C:\Logs\)");
    EXPECT_EQ(GetFolderOfPath(R"(C:\Logs)"), R"(C:\Logs\)");
}

TEST(Folders, MessagesThatNameAPathTellItsPlaceOnThisComputer) {
    TestBench bench;
    const std::string real = (bench.Folder.Path() / "ACUs" / "a b.xlsx").string();
    for (const auto& [text, place, added] :
         {std::tuple(std::string("Not saved:\r\n\r\n   C:\\ACUs\\a b.xlsx\r\n\r\nAgain?"), real,
                     true),
          {"Saved:\r\n\r\n   " + real, real, false},
          {"Missing:\r\n   C:\\ACUs\\a b.xlsx\r\nIt belongs to " + real, real, false},
          {"Drive C: holds it, under ACUs\\a.xlsx", "", false},
          {"   Z:\\nowhere\\a.xlsx", "", false}}) {
        const Message told = WithPlace({text}, bench.Files);
        EXPECT_EQ(told.Place, place);
        EXPECT_EQ(told.Text, text + (added ? "\r\n\r\nOn this computer:\r\n\r\n   " + real : ""));
    }
}

TEST(Folders, FoldersAreMadeWithTheirParents) {
    TestBench bench;
    Drive& drive = bench.Files;
    const std::string folder = R"(C:\ACUs\ACU00301_M1\)";
    EXPECT_FALSE(CheckFolderExists(drive, bench.Messages, folder, FolderMode::Query));
    EXPECT_TRUE(CheckFolderExists(drive, bench.Messages, folder, FolderMode::Create));
    EXPECT_TRUE(drive.FolderExists(folder));
    EXPECT_FALSE(CreateFolderPath(drive, R"(Z:\nowhere\at all)"));
    EXPECT_FALSE(CreateFolderPath(drive, R"(C:\..\outside)"));
    EXPECT_TRUE(bench.Messages.Shown.empty());
}

/// Shows a file of another program a moment too late.
class LateDrive final : public ForwardingDrive {
  public:
    using ForwardingDrive::ForwardingDrive;
    bool FileExists(std::string_view path) const override {
        return ++m_Asked > 1 && ForwardingDrive::FileExists(path);
    }

  private:
    mutable int m_Asked = 0;
};

TEST(Folders, NoFileIsReplacedByOneOfTheSameName) {
    TestBench bench;
    bench.Files.CreateFolder(R"(C:\a.b)");
    for (const auto& [path, second] : {std::pair{R"(C:\a.b\c.d.csv)", R"(C:\a.b\c.d (2).csv)"},
                                       std::pair{R"(C:\a.b\none)", R"(C:\a.b\none (2))"}}) {
        EXPECT_EQ(StoreUnderFreeName(bench.Files, path, "first"), path);
        LateDrive late(bench.Files);
        OpenUnderFreeName(late, path)->Write("second");
        EXPECT_EQ(bench.Files.ReadFile(path) + bench.Files.ReadFile(second), "firstsecond");
    }
}

TEST(Folders, AFolderIsMadeOnlyWhenTheOperatorAgrees) {
    TestBench bench;
    bench.Messages.Answers = {Answer::No, Answer::Yes};
    EXPECT_FALSE(CheckFolderExists(bench.Files, bench.Messages, R"(C:\New)", FolderMode::Ask));
    EXPECT_TRUE(CheckFolderExists(bench.Files, bench.Messages, R"(C:\New)", FolderMode::Ask));
    EXPECT_EQ(bench.Messages.Shown[0].Text,
              "The folder does not exist:\r\n\r\n    C:\\New\\\r\n\r\n"
              "Would you like to create it?");
}

TEST(Folders, SystemFolderIsSearchedInItsOrder) {
    TestBench bench;
    const std::string own = R"(C:\Program Files\Pulvatron\System\Calibration\log.txt)";
    EXPECT_EQ(GetSystemFolder(bench.Files, "Calibration", "log.txt"), own);
    EXPECT_TRUE(bench.Files.FolderExists(R"(C:\Program Files\Pulvatron\System\Calibration)"));
    std::filesystem::remove_all(bench.Folder.Path() / "Program Files");
    EXPECT_EQ(GetSystemFolder(bench.Files, "Calibration", "log.txt"), R"(C:\log.txt)");
    std::filesystem::create_directories(bench.Folder.Path() / "Pulvatron" / "System");
    std::filesystem::create_directories(bench.Folder.Path() / "Programme");
    EXPECT_EQ(GetSystemFolder(bench.Files, "Calibration", "log.txt"),
              R"(C:\Pulvatron\System\log.txt)");
}

} // namespace
} // namespace ombrix
