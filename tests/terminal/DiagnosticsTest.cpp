#include "spreadsheet/package/ZipArchive.h"
#include "terminal/OmbrixctlTest.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <thread>
#include <unistd.h>

namespace ombrix {
namespace {

namespace fs = std::filesystem;

class DiagnosticsTest : public OmbrixctlTest {
  protected:
    /// The real program, recording in real time, as soon as its file is there.
    pid_t StartRecording() const {
        const std::string folder = m_Folder.Path().string();
        const pid_t process = ::fork();
        if (process == 0) {
            ::dup2(::open("/dev/null", O_RDWR), STDERR_FILENO);
            ::execl(OMBRIXCTL, "ombrixctl", "--simulate", "--data-root", folder.c_str(), "record",
                    "--seconds", "60", nullptr);
            ::_exit(127);
        }
        for (int tries = 0; tries < 200 && Named(m_Folder.Path(), "Data_").empty(); ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        return process;
    }
    /// The file of a folder whose name begins so; empty when there is none.
    static fs::path Named(const fs::path& folder, const std::string& start) {
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(folder, none))
            if (entry.path().filename().string().starts_with(start))
                return entry.path();
        return {};
    }
    fs::path CrashFile() const { return Named(m_Folder.Path() / "Diagnostics", "crash_"); }
    std::string Log() const { return ReadWholeFile(Named(m_Folder.Path() / "Logs", "ombrix_")); }
};

TEST_F(DiagnosticsTest, ACrashLeavesAFileAndTheSignalsStatus) {
    for (const auto& [signal, name] : {std::pair{SIGSEGV, "SIGSEGV"}, {SIGABRT, "SIGABRT"}}) {
        const pid_t process = StartRecording();
        ::kill(process, signal);
        int status = 0;
        ASSERT_EQ(::waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        const fs::path file = CrashFile();
        ASSERT_NE(file, fs::path());
        EXPECT_NE(file.string().find(fmt::format("_ombrixctl_{}.txt", process)), std::string::npos);
        const std::string text = ReadWholeFile(file);
        EXPECT_NE(text.find(std::string("Reason: ") + name), std::string::npos) << text;
        EXPECT_NE(text.find("TimedRecording"), std::string::npos) << "no calls: " << text;
        fs::remove_all(m_Folder.Path() / "Diagnostics");
        fs::remove(Named(m_Folder.Path(), "Data_"));
    }
}

TEST_F(DiagnosticsTest, AnUnexpectedErrorLeavesAFileThatIsNamed) {
    const std::string line =
        fmt::format("'{}' --simulate --data-root '{}' eprom read 0 512 >/dev/full 2>'{}'",
                    OMBRIXCTL, m_Folder.Path().string(), ErrorFile().string());
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), 4);
    EXPECT_NE(Errors().find(CrashFile().string()), std::string::npos) << Errors();
    EXPECT_NE(ReadWholeFile(CrashFile()).find("std::system_error"), std::string::npos);
    RunSimulated("adc");
    EXPECT_NE(Log().find(CrashFile().filename().string()), std::string::npos)
        << "the next start notes what lies there";
}

TEST_F(DiagnosticsTest, TheArchiveHoldsWhatSomebodyFarAwayNeeds) {
    fs::create_directory(m_Folder.Path() / "Diagnostics");
    ReplaceWholeFile(m_Folder.Path() / "Diagnostics/crash_20010101_000000_ombrix_1.txt", "old");
    ReplaceWholeFile(m_Folder.Path() / "Diagnostics/crash_29990101_000000_ombrix_1.txt", "new");
    Run("--simulate=pair --time-scale max --fault status:32 health-check --short");
    const Outcome outcome = Run("--simulate=pair diagnostics");
    ASSERT_EQ(outcome.Status, 0) << Errors();
    auto files = xlsx::ReadZip(ReadWholeFile(outcome.Result["files"][0].get<std::string>()));
    EXPECT_NE(files["versions.txt"].find("libzip"), std::string::npos);
    EXPECT_NE(files["boards.txt"].find("FireWire, serial number 7,"), std::string::npos);
    EXPECT_EQ(files["board0_123.bin"], ReadWholeFile(m_Folder.Path() / "simulator/EPROM_123.bin"));
    EXPECT_NE(files["board1_7.txt"].find("M920"), std::string::npos);
    EXPECT_NE(files["log.txt"].find("Health check: failed: The EPROM of the board cannot be read"),
              std::string::npos)
        << files["log.txt"];
    EXPECT_EQ(files["crashes/crash_29990101_000000_ombrix_1.txt"], "new");
    EXPECT_FALSE(files.contains("crashes/crash_20010101_000000_ombrix_1.txt"));
}

TEST_F(DiagnosticsTest, ABoardThatCannotBeReadIsSaidToBe) {
    const fs::path file = m_Folder.Path() / "wanted.zip";
    EXPECT_EQ(
        RunSimulated("--fault status:32@ReadEEPROM diagnostics '" + file.string() + "'").Status, 0);
    auto files = xlsx::ReadZip(ReadWholeFile(file));
    EXPECT_EQ(files["board0_301.txt"], "The EPROM cannot be read at 0: AIB Timeout\n");
}

} // namespace
} // namespace ombrix
