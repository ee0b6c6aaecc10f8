// The program ended in every way while it drives air: what the bench's outputs are then.
#include "simulator/SimulatorFiles.h"
#include "terminal/OmbrixctlTest.h"

#include <chrono>
#include <csignal>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace ombrix {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

class Endings : public OmbrixctlTest {
  protected:
    /// Starts a program that ends by a signal at the latest, its input at its end.
    pid_t Start(const std::string& program, const std::string& arguments) const {
        const std::string line = fmt::format("exec '{}' {} {} </dev/null >/dev/null 2>'{}'",
                                             program, Folders(), arguments, ErrorFile().string());
        const pid_t child = ::fork();
        if (child == 0) {
            ::execl("/bin/sh", "sh", "-c", line.c_str(), nullptr);
            ::_exit(127);
        }
        return child;
    }
    /// What the outputs of all boards were told last, added up.
    std::int64_t Outputs() const {
        std::int64_t sum = 0;
        for (const fs::path& file : Files("simulator", "OUTPUTS", ".txt")) {
            std::istringstream text(ReadWholeFile(file));
            std::string name;
            int channel = 0;
            for (std::int64_t value = 0; text >> name >> channel >> value;)
                sum += value;
        }
        return sum;
    }
    std::size_t Marks() const { return Files("Claims", "AIB", ".running").size(); }

    template <class Condition>
    static bool Await(Condition condition) {
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (!condition() && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(2ms);
        return condition();
    }
    static int End(pid_t child, int signal) {
        ::kill(child, signal);
        int status = 0;
        ::waitpid(child, &status, 0);
        return status;
    }
    void ExpectSafe() const {
        EXPECT_EQ(Outputs(), 0);
        EXPECT_EQ(Marks(), 0U);
    }

    std::vector<fs::path> Files(const char* folder, const char* start, const char* ending) const {
        std::vector<fs::path> files;
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(m_Folder.Path() / folder, none)) {
            const std::string name = entry.path().filename().string();
            if (name.starts_with(start) && name.ends_with(ending))
                files.push_back(entry.path());
        }
        return files;
    }
};

struct Driving {
    const char* Arguments;
    /// From the first air to the signal: another phase of the procedure.
    std::chrono::milliseconds Later = 0ms;
};

class EndedWhileDriving : public Endings,
                          public ::testing::WithParamInterface<std::tuple<Driving, int>> {};

constexpr const char* Sweep = "--simulate --time-scale 20 test air-sweep";

INSTANTIATE_TEST_SUITE_P(
    Procedures, EndedWhileDriving,
    ::testing::Combine(
        ::testing::Values(Driving{Sweep}, Driving{Sweep, 350ms},
                          Driving{"--simulate=plain --time-scale 20 health-check --short"},
                          Driving{"--simulate --yes --time-scale 40 test mfc"},
                          Driving{"--simulate=rig --time-scale 20 test rig"},
                          Driving{"--simulate=airflow --time-scale 20 test air-flow"}),
        ::testing::Values(SIGINT, SIGTERM, SIGHUP, SIGKILL)));
INSTANTIATE_TEST_SUITE_P(
    Calibrations, EndedWhileDriving,
    ::testing::Combine(
        ::testing::Values(Driving{"--simulate --yes --time-scale 200 calibrate velocity-system"},
                          Driving{"--simulate --yes --time-scale 40 calibrate pressure-audit"}),
        ::testing::Values(SIGKILL)));

TEST_P(EndedWhileDriving, NoAirFlowsAfterwardsOrTheNextStartSwitchesItOff) {
    const auto& [driving, signal] = GetParam();
    const pid_t child = Start(OMBRIXCTL, driving.Arguments);
    ASSERT_TRUE(Await([this] { return Outputs() > 0; })) << Errors();
    std::this_thread::sleep_for(driving.Later);
    const int status = End(child, signal);
    if (signal != SIGKILL) {
        EXPECT_EQ(WEXITSTATUS(status), 1) << "cancelled";
        ExpectSafe();
        return;
    }
    EXPECT_GT(Outputs(), 0) << "the bench holds what it was told";
    const std::string bench = std::string(driving.Arguments).substr(0, 18);
    EXPECT_EQ(Run(bench.substr(0, bench.find(' ')) + " detect").Status, 0);
    ExpectSafe();
    EXPECT_NE(Errors().find("left the outputs of board"), std::string::npos) << Errors();
    Run(bench.substr(0, bench.find(' ')) + " detect");
    EXPECT_EQ(Errors(), "") << "told once";
}

TEST_F(Endings, BoardIsOneForProgramsOfEveryDataFolder) {
    const pid_t other = Start(OMBRIXCTL, Sweep);
    ASSERT_TRUE(Await([this] { return Outputs() > 0; }));
    const TemporaryFolder elsewhere;
    m_Data = elsewhere.Path();
    EXPECT_EQ(RunSimulated("dac 0 100").Status, 1);
    EXPECT_NE(Errors().find("in use by ombrixctl"), std::string::npos) << Errors();
    End(other, SIGKILL);
    EXPECT_EQ(RunSimulated("detect").Status, 0);
    EXPECT_NE(Errors().find("left the outputs of board 301 on"), std::string::npos) << Errors();
    EXPECT_EQ(Marks(), 0U);
}

TEST_F(Endings, BoardThatDoesNotAnswerKeepsItsMarkUntilItTakesTheZeros) {
    EXPECT_EQ(RunSimulated("--time-scale max --fault unplug@5 test air-sweep").Status, 1);
    EXPECT_GT(Outputs(), 0);
    EXPECT_NE(Errors().find("AIR MAY STILL BE FLOWING"), std::string::npos);
    EXPECT_NE(Errors().find("close the air supply"), std::string::npos);
    EXPECT_EQ(Run("--simulate=plain adc").Status, 1) << "the marked board is missing";
    EXPECT_NE(Errors().find("is not there now: AIR MAY STILL BE FLOWING"), std::string::npos);
    EXPECT_EQ(RunSimulated("--fault status:32@SetDAC detect").Status, 1);
    EXPECT_NE(Errors().find("AIR MAY STILL BE FLOWING"), std::string::npos);
    EXPECT_EQ(Marks(), 1U);
    EXPECT_EQ(RunSimulated("detect").Status, 0);
    ExpectSafe();
}

TEST_F(Endings, WhatACommandSetsStaysForTheNextOne) {
    EXPECT_EQ(RunSimulated("dac 2 12344").Status, 0);
    EXPECT_EQ(RunSimulated("adc").Status, 0);
    EXPECT_EQ(Errors(), "") << "it was set on purpose";
    EXPECT_EQ(Outputs(), 12344);
    EXPECT_EQ(Marks(), 0U);
}

TEST_F(Endings, SpeedTestLeavesNoSetPointAtABoardWithAnalogMFCs) {
    for (const char* bench : {"--simulate=plain", "--simulate=pair --board 1"}) {
        EXPECT_EQ(Run(std::string(bench) + " test speed").Status, 0) << Errors();
        ExpectSafe();
    }
}

TEST_F(Endings, BoardOfAnotherProgramIsNeitherDrivenNorSwitchedOff) {
    const pid_t other = Start(OMBRIXCTL, Sweep);
    ASSERT_TRUE(Await([this] { return Outputs() > 0; }));
    const std::string holder = fmt::format("ombrixctl, process {} on", other);
    for (const char* command :
         {"dac 0 0", "uart set 0 0", "test air-sweep", "health-check --short",
          "--yes calibrate velocity-audit", "eprom write 48 1", "--yes eprom fill 0",
          "mfc-number M1", "--yes clear-pressure", "--yes identity --serial 302 --setup both"}) {
        const Outcome refused = RunSimulated(command);
        EXPECT_NE(refused.Status, 0) << command;
        EXPECT_NE(refused.Result["error"].get<std::string>().find(holder), std::string::npos)
            << refused.Result["error"];
    }
    const Outcome detected = RunSimulated("detect");
    EXPECT_EQ(detected.Status, 1) << "it has not been programmed";
    EXPECT_EQ(detected.Result["boards"][0]["programmed"], false);
    EXPECT_EQ(detected.Result["boards"][0]["mfcReady"], false);
    EXPECT_NE(detected.Result["error"].get<std::string>().find(holder), std::string::npos);
    EXPECT_EQ(RunSimulated("adc").Status, 0);
    EXPECT_NE(Errors().find("Board 301 is in use by " + holder), std::string::npos);
    EXPECT_GT(Outputs(), 0);
    EXPECT_EQ(Marks(), 1U);
    End(other, SIGTERM);
    ExpectSafe();
    EXPECT_EQ(RunSimulated("dac 0 0").Status, 0);
}

TEST_F(Endings, AKillAmidTheEpromIsToldUntilTheContentFromBeforeIsBack) {
    const std::string before = RunSimulated("info").Result["mfcNumber"];
    const pid_t killed =
        Start(OMBRIXCTL, "--simulate --yes --fault latency:5@WriteEEPROM eprom fill 5");
    ASSERT_TRUE(Await([this] { return !Files("Claims", "AIB", ".eprom").empty(); }));
    std::this_thread::sleep_for(300ms);
    End(killed, SIGKILL);
    const Outcome told = RunSimulated("info");
    EXPECT_EQ(told.Status, 1);
    EXPECT_EQ(told.Result["writtenInPart"]["purpose"], "EPROM To All");
    const auto backups = Files("Backups", "ACU00301", ".bin");
    ASSERT_EQ(backups.size(), 1U);
    EXPECT_NE(Errors().find("ombrixctl eprom restore"), std::string::npos);
    EXPECT_NE(Errors().find(backups[0].string()), std::string::npos) << Errors();
    EXPECT_EQ(RunSimulated("--yes eprom restore '" + backups[0].string() + "'").Status, 0);
    const Outcome whole = RunSimulated("info");
    EXPECT_EQ(whole.Status, 0);
    EXPECT_EQ(whole.Result["writtenInPart"], nullptr);
    EXPECT_EQ(whole.Result["mfcNumber"], before);
}

TEST_F(Endings, WindowProgramRecoversAtItsStartAndEndsWithADialogOpen) {
    ASSERT_TRUE(::setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0);
    const pid_t killed = Start(OMBRIXCTL, Sweep);
    ASSERT_TRUE(Await([this] { return Outputs() > 0; }));
    End(killed, SIGKILL);
    const pid_t window = Start(OMBRIX, "--simulate");
    EXPECT_TRUE(Await([this] { return Marks() == 0; }));
    std::this_thread::sleep_for(100ms); // the message about it stands by now
    const int status = End(window, SIGTERM);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    ExpectSafe();
}

/// The board library in its host: the simulated bench as a library of its own, in real time.
class HostedEndings : public Endings {
  protected:
    HostedEndings() {
        PrepareSimulatorFolder(m_Folder.Path()); // for the FPGA files
        ::setenv("AIB_SIMULATOR_FOLDER", (m_Folder.Path() / "simulator").c_str(), 1);
    }
    ~HostedEndings() override {
        for (const char* name : {"AIB_SIMULATOR_FOLDER", "AIB_SIMULATOR_FAULTS"})
            ::unsetenv(name);
    }
    std::string Log() const {
        std::string text;
        for (const fs::path& file : Files("Logs", "ombrix_", ".log"))
            text += ReadWholeFile(file);
        return text;
    }
    const std::string m_Library = "--library '" SIMULATED_LIBRARY "' --call-timeout 0.3 ";
};

TEST_F(HostedEndings, HostSwitchesOffWhatAKilledProgramHasDriven) {
    const pid_t child = Start(OMBRIXCTL, m_Library + "health-check --short");
    ASSERT_TRUE(Await([this] { return Outputs() > 0; })) << Errors();
    const auto killed = std::chrono::steady_clock::now();
    End(child, SIGKILL);
    EXPECT_TRUE(Await([this] { return Outputs() == 0; }));
    EXPECT_LT(std::chrono::steady_clock::now() - killed, 200ms);
    EXPECT_EQ(Marks(), 1U) << "the operator is told of it";
    EXPECT_EQ(Run(m_Library + "detect").Status, 0) << Errors();
    ExpectSafe();
    EXPECT_EQ(Run(m_Library + "dac 2 12345").Status, 0);
    EXPECT_EQ(Outputs(), 12345) << "a program that ends as it should leaves what it has set";
}

TEST_F(HostedEndings, ProgramOutlivesALibraryThatHangsOrCrashes) {
    for (const auto& [fault, told] :
         {std::pair{"crash@GetADC:9",
                    "The board library has ended unexpectedly in GetADC (signal 11)"},
          {"hang@GetADC:9", "AIB Timeout"}}) {
        ::setenv("AIB_SIMULATOR_FAULTS", fault, 1);
        const Outcome outcome = Run(m_Library + "test air-sweep --delay 100 --step 4000");
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_NE(outcome.Result["error"].get<std::string>().find(told), std::string::npos)
            << outcome.Result;
        EXPECT_NE(Log().find("Outputs of board 0 have been set to zero"), std::string::npos);
        ExpectSafe();
    }
    const Outcome unruly = Run("--library '" UNRULY_LIBRARY "' detect");
    EXPECT_EQ(unruly.Status, 3) << "no FPGA file of that number";
    EXPECT_NE(Log().find("Board library: opened"), std::string::npos) << "and not on the terminal";
}

} // namespace
} // namespace ombrix
