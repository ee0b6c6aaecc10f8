#include "platform/os/FolderDrive.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace ombrix {
namespace {

class FolderDriveTest : public ::testing::Test {
  protected:
    TemporaryFolder m_Folder;
    FolderDrive m_Drive{m_Folder.Path() / "data"};

    void SetUp() override { std::filesystem::create_directory(m_Folder.Path() / "data"); }
};

TEST_F(FolderDriveTest, PathsStayInsideTheDataFolder) {
    EXPECT_EQ(m_Drive.RealPath(R"(C:\ACUs\ACU00301_M1\report.xlsx)"),
              m_Folder.Path() / "data" / "ACUs" / "ACU00301_M1" / "report.xlsx");
    for (const char* path : {R"(C:\ACUs\..\..\etc\passwd)", R"(C:/../x)", R"(\\server\share\x)",
                             R"(Z:\x)", R"(C:\a:b)", "relative.txt"}) {
        EXPECT_THROW(m_Drive.RealPath(path), DriveError) << path;
        EXPECT_FALSE(m_Drive.FileExists(path)) << path;
        EXPECT_THROW(m_Drive.OpenForWriting(path), DriveError) << path;
    }
}

TEST_F(FolderDriveTest, MountedFolderTakesItsPartOfTheTree) {
    std::filesystem::create_directory(m_Folder.Path() / "program");
    m_Drive.Mount(R"(C:\Program Files\Ombrix)", m_Folder.Path() / "program");
    EXPECT_EQ(m_Drive.RealPath(R"(C:\Program Files\Ombrix\Templates)"),
              m_Folder.Path() / "program" / "Templates");
    EXPECT_EQ(m_Drive.RealPath(R"(C:\Program Files\Other)"),
              m_Folder.Path() / "data" / "Program Files" / "Other");
}

TEST_F(FolderDriveTest, LinesReachTheFileAsTheyAreWritten) {
    const auto file = m_Drive.OpenForWriting(R"(C:\log.csv)");
    file->Write("first\r\n");
    EXPECT_EQ(m_Drive.ReadFile(R"(C:\log.csv)"), "first\r\n");
    file->Write("second\r\n");
    EXPECT_EQ(ReadWholeFile(file->RealPath()), "first\r\nsecond\r\n");
    m_Drive.OpenForAppending(R"(C:\log.csv)")->Write("third\r\n");
    EXPECT_EQ(ReadWholeFile(file->RealPath()), "first\r\nsecond\r\nthird\r\n");
}

TEST_F(FolderDriveTest, AFailedReplacementLeavesTheOldFileAndNoOther) {
    m_Drive.ReplaceFile(R"(C:\report.xlsx)", "old");
    // A folder of the wanted name makes the final rename fail, whoever runs the test.
    std::filesystem::create_directories(m_Drive.RealPath(R"(C:\taken.xlsx\inside)"));
    EXPECT_THROW(m_Drive.ReplaceFile(R"(C:\taken.xlsx)", "new"), DriveError);
    EXPECT_THROW(m_Drive.ReplaceFile(R"(C:\no such folder\report.xlsx)", "new"), DriveError);
    EXPECT_EQ(m_Drive.ReadFile(R"(C:\report.xlsx)"), "old");
    const auto entries = std::filesystem::directory_iterator(m_Folder.Path() / "data");
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
}

TEST_F(FolderDriveTest, ANewFileNeverTakesThePlaceOfAnother) {
    m_Drive.CreateFile(R"(C:\backup.bin)", "first");
    EXPECT_THROW(m_Drive.CreateFile(R"(C:\backup.bin)", "second"), DriveError);
    EXPECT_EQ(m_Drive.ReadFile(R"(C:\backup.bin)"), "first");
    EXPECT_EQ(m_Drive.FilesIn(R"(C:\)"), std::vector<std::string>{"backup.bin"});
}

TEST_F(FolderDriveTest, ALockIsHeldByOneAndGoesWithIt) {
    auto first = m_Drive.TryLock(R"(C:\board.lock)", "first program");
    EXPECT_TRUE(first);
    EXPECT_FALSE(m_Drive.TryLock(R"(C:\board.lock)", "second"));
    EXPECT_EQ(m_Drive.ReadFile(R"(C:\board.lock)"), "first program");
    first.reset();
    EXPECT_TRUE(m_Drive.TryLock(R"(C:\board.lock)", "second"));
}

TEST_F(FolderDriveTest, FilesOfASharedFolderAreEveryUsersAndNoLinks) {
    const std::filesystem::path folder = m_Folder.Path() / "shared";
    const mode_t mask = ::umask(077);
    MakeSharedFolder(folder);
    m_Drive.Mount(R"(C:\Shared)", folder);
    m_Drive.OverwriteFile(R"(C:\Shared\mark)", "a long first text");
    m_Drive.OverwriteFile(R"(C:\Shared\mark)", "short");
    const auto lock = m_Drive.TryLock(R"(C:\Shared\lock)", "program");
    ::umask(mask);
    EXPECT_EQ(m_Drive.ReadFile(R"(C:\Shared\mark)"), "short");
    const auto mode = [](const std::filesystem::path& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions());
    };
    EXPECT_EQ(mode(folder), 01777U);
    EXPECT_EQ(mode(folder / "mark"), 0666U);
    EXPECT_EQ(mode(folder / "lock"), 0666U);
    ReplaceWholeFile(m_Folder.Path() / "precious", "precious");
    std::filesystem::create_symlink(m_Folder.Path() / "precious", folder / "trap");
    EXPECT_THROW(m_Drive.OverwriteFile(R"(C:\Shared\trap)", "spoilt"), DriveError);
    EXPECT_THROW(m_Drive.TryLock(R"(C:\Shared\trap)", "spoilt"), DriveError);
    EXPECT_EQ(ReadWholeFile(m_Folder.Path() / "precious"), "precious");
    std::filesystem::create_symlink(folder, m_Folder.Path() / "link");
    EXPECT_THROW(MakeSharedFolder(m_Folder.Path() / "link"), DriveError);
}

TEST_F(FolderDriveTest, ADiskThatFillsUpLeavesWholeTexts) {
    const auto file = m_Drive.OpenForWriting(R"(C:\log.csv)");
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, SIG_IGN);
    constexpr rlim_t roomFor_bytes = 25;
    const rlimit small{roomFor_bytes, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    int written = 0;
    try {
        for (; written < 9; ++written)
            file->Write("ten bytes\n");
    } catch (const DriveError&) {
    }
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(written, 2);
    EXPECT_EQ(m_Drive.ReadFile(R"(C:\log.csv)"), "ten bytes\nten bytes\n");
    file->Write("more room\n");
    EXPECT_TRUE(m_Drive.ReadFile(R"(C:\log.csv)").ends_with("\nmore room\n"));
}

} // namespace
} // namespace ombrix
