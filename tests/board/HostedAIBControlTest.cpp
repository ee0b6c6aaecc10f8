// A board library that hangs, crashes, ends or lies, in a host of its own.
#include "board/HostedAIBControl.h"

#include "platform/os/FolderDrive.h"
#include "support/TemporaryFolder.h"

#include <fmt/ranges.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace ombrix {
namespace {

class HostedLibrary : public ::testing::Test {
  protected:
    ~HostedLibrary() override {
        for (const char* name : {"AIB_SIMULATOR_FOLDER", "AIB_SIMULATOR_FAULTS", "UNRULY_BOARDS"})
            ::unsetenv(name);
    }
    HostedAIBControl::Options Options(const char* library) {
        ::setenv("AIB_SIMULATOR_FOLDER", m_Folder.Path().c_str(), 1);
        return {.Program = BOARD_HOST,
                .Library = library,
                .CallTimeout = std::chrono::milliseconds(300),
                .Log = [this](const std::string& line) { m_Log.push_back(line); }};
    }
    HostedAIBControl Simulated(const char* faults) {
        ::setenv("AIB_SIMULATOR_FAULTS", faults, 1);
        return HostedAIBControl(Options(SIMULATED_LIBRARY));
    }
    std::string Log() const { return fmt::format("{}", fmt::join(m_Log, "\n")); }
    std::string Outputs() const { return ReadWholeFile(m_Folder.Path() / "OUTPUTS_301.txt"); }
    static std::string TroubleOf(const std::function<void()>& call) {
        try {
            call();
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "";
    }

    TemporaryFolder m_Folder;
    std::vector<std::string> m_Log;
};

TEST_F(HostedLibrary, ThatHangsOrCrashesLeavesNoOutputOnAndNothingToMeasureUntilToldZero) {
    for (const bool hangs : {true, false}) {
        HostedAIBControl library = Simulated(hangs ? "hang@GetADC:2" : "crash@GetADC:2");
        std::int32_t value = 0;
        ASSERT_EQ(library.OpenAIBAPI(), 1);
        EXPECT_EQ(library.SetDAC(0, 2, 12345), Status::NoError);
        EXPECT_EQ(library.GetADC(0, 2, value), Status::NoError);
        EXPECT_NE(Outputs().find("12345"), std::string::npos);
        if (hangs)
            EXPECT_EQ(library.GetADC(0, 2, value), Status::Timeout);
        else
            EXPECT_EQ(TroubleOf([&] { library.GetADC(0, 2, value); }),
                      "The board library has ended unexpectedly in GetADC (signal 11)");
        EXPECT_EQ(Outputs().find("12345"), std::string::npos);
        EXPECT_EQ(library.GetADC(0, 2, value), Status::Timeout);
        EXPECT_EQ(library.SetDAC(0, 2, 12345), Status::Timeout);
        EXPECT_EQ(library.ReadEEPROM(0, 0, value), Status::NoError);
        EXPECT_EQ(library.SetDAC(0, 2, 0), Status::NoError);
        EXPECT_EQ(library.GetADC(0, 2, value), Status::NoError);
        EXPECT_NE(Log().find("Outputs of board 0 have been set to zero"), std::string::npos)
            << Log();
    }
}

TEST_F(HostedLibrary, ThatIsOfNoUseIsToldWhenItIsOpened) {
    const auto troubleWith = [this](const char* name, const char* value, const char* library) {
        ::setenv(name, value, 1);
        return TroubleOf([&] { HostedAIBControl(Options(library)).OpenAIBAPI(); });
    };
    EXPECT_EQ(troubleWith("AIB_SIMULATOR_FAULTS", "crash@OpenAIBAPI", SIMULATED_LIBRARY),
              "The board library has ended unexpectedly in OpenAIBAPI (signal 11)");
    EXPECT_EQ(troubleWith("AIB_SIMULATOR_FAULTS", "hang@OpenAIBAPI", SIMULATED_LIBRARY),
              "The board library does not tell its boards: AIB Timeout.");
    EXPECT_NE(troubleWith("UNRULY_BOARDS", "17", UNRULY_LIBRARY).find("reports 17 boards"),
              std::string::npos);
    HostedAIBControl::Options noHost = Options(UNRULY_LIBRARY);
    for (const char* program : {"/no/such/host", "/bin/true"}) {
        noHost.Program = program;
        EXPECT_NE(TroubleOf([&] { HostedAIBControl(noHost).OpenAIBAPI(); }).find("install Ombrix"),
                  std::string::npos);
    }
}

TEST_F(HostedLibrary, ThatLiesWritesTooFarPrintsOrEndsDoesNoHarm) {
    HostedAIBControl library(Options(UNRULY_LIBRARY));
    ASSERT_EQ(library.OpenAIBAPI(), 1);
    std::int32_t value = 7;
    AccessoryInfoBlock record;
    EXPECT_EQ(library.GetAccessoryInfo(0, record), Status::NoError);
    EXPECT_EQ(Decode(record).Module, std::string(256, 'x'));
    EXPECT_EQ(library.GetADC(0, 1, value), Status::HardwareError);
    EXPECT_EQ(library.GetADC(0, 2, value), Status::HardwareError);
    EXPECT_EQ(library.MFCGetFlowrate(0, 0, value), Status::HardwareError);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(library.GetADC(0, 0, value), Status::NoError);
    EXPECT_EQ(value, 65535);
    EXPECT_EQ(TroubleOf([&] { library.ReadReg(0, 3, value); }),
              "The board library has ended unexpectedly in ReadReg (exit status 3)");
    EXPECT_EQ(library.GetGPI(0, 0, value), Status::Timeout);
    EXPECT_NE(TroubleOf([&] { library.DumpEEPROM(0, "x"); }).find("unexpectedly in DumpEEPROM"),
              std::string::npos);
    EXPECT_EQ(library.GetVariable(0, 5000, value), Status::NoError) << "more than a pipe holds";
    EXPECT_NE(Log().find("Board library: opened"), std::string::npos) << Log();
    EXPECT_LT(m_Log.size(), 1050U);
}

} // namespace
} // namespace ombrix
