#include "terminal/OmbrixctlTest.h"

#include <bit>

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, DetectListsTheBoards) {
    const Outcome outcome = Run("--simulate=pair detect");
    EXPECT_EQ(outcome.Result["ok"], true);
    ASSERT_EQ(outcome.Result["boards"].size(), 2U);
    const json& second = outcome.Result["boards"][1];
    EXPECT_EQ(second["index"], 1);
    EXPECT_EQ(second["bus"], "FireWire");
    EXPECT_EQ(second["serial"], 7);
    EXPECT_EQ(second["digitalSetup"], false);
    EXPECT_EQ(second["mfcReady"], true);
}

TEST_F(OmbrixctlTest, InfoTellsWhatTheLabelsShow) {
    const Outcome outcome = RunSimulated("info");
    EXPECT_EQ(outcome.Result["velocitySystem"], "12/03/2024 09:41 - QUILLON");
    EXPECT_EQ(outcome.Result["mfcNumber"], "M9200301A");
    EXPECT_EQ(Run("--simulate=fresh info").Result["pressureAudit"], "ACU Data Not Initialised");

    RunSimulated("eprom write 20 0"); // no capacity: the record is to be initialised
    RunSimulated("info", "no\\nyes\\n");
    EXPECT_EQ(RunSimulated("eprom read 20").Result["words"][0]["value"], 0) << "asked once only";
}

TEST_F(OmbrixctlTest, SelfTestHasAVerdict) {
    EXPECT_EQ(RunSimulated("self-test").Status, 0);
    const Outcome stuck = RunSimulated("--fault stuck-bit:3 self-test");
    EXPECT_EQ(stuck.Status, 1);
    EXPECT_EQ(stuck.Result["registersPassed"], false);
    EXPECT_EQ(stuck.Result["failedBits"], json::array({3}));
    EXPECT_EQ(RunSimulated("--fault not-ready:0 self-test").Result["mfcReady"], false);
}

TEST_F(OmbrixctlTest, WhatTheBoardDoesNotSayIsUnknown) {
    for (const char* command : {"self-test", "detect", "info"}) {
        const Outcome mute = RunSimulated(fmt::format("--fault status:32@GetVariable {}", command));
        EXPECT_EQ(mute.Status, 1) << command;
        EXPECT_NE(mute.Result.dump().find("\"mfcReady\":null"), std::string::npos) << command;
        EXPECT_NE(mute.Result["error"].get<std::string>().find("whether its MFCs are ready"),
                  std::string::npos);
    }
    for (const char* call : {"ReadReg", "WriteReg"}) {
        const Outcome mute = RunSimulated(fmt::format("--fault status:32@{} self-test", call));
        EXPECT_EQ(mute.Status, 1) << call;
        EXPECT_EQ(mute.Result["registersPassed"], nullptr) << call;
        EXPECT_EQ(mute.Result["failedBits"], json::array()) << call;
    }
}

TEST_F(OmbrixctlTest, InputsAndOutputs) {
    EXPECT_EQ(RunSimulated("dac 2 70000").Result["value"], 65534);
    EXPECT_EQ(RunSimulated("dac 2 -7").Result["value"], 0);
    RunSimulated("dac 0 30000");
    EXPECT_NEAR(RunSimulated("adc").Result["adc"][0].get<int>(), 30000, 200) << "a board holds it";
    const Outcome failed = RunSimulated("--fault status:32@ReadReg adc");
    EXPECT_EQ(failed.Status, 1);
    EXPECT_EQ(failed.Result["error"], "The pressure register cannot be read: AIB Timeout");
    EXPECT_TRUE(failed.Result["pressureRegister"].is_null());
    EXPECT_EQ(failed.Result["adc"].size(), 4U) << "what was answered is told";
}

TEST_F(OmbrixctlTest, WhatIsNotSentOrAskedIsNotShownAsIfItWere) {
    for (const std::string command : {"dac 0 30000", "uart set 0 100", "uart get 0", "adc"}) {
        const Outcome notReady = RunSimulated("--fault not-ready:0 " + command);
        EXPECT_EQ(notReady.Status, 1) << command;
        EXPECT_NE(notReady.Result["error"].get<std::string>().find("The MFCs are not ready."),
                  std::string::npos);
        EXPECT_TRUE(!notReady.Result.contains("value") || notReady.Result["value"].is_null());
        EXPECT_TRUE(!notReady.Result.contains("adc") || notReady.Result["adc"][0].is_null());
    }
    EXPECT_EQ(RunSimulated("--fault status:32@SetDAC dac 2 100").Status, 1);
}

TEST_F(OmbrixctlTest, AnEpromThatCannotBeReadIsNotShownAsABlankOne) {
    for (const std::string command : {"info", "eprom show", "pressure", "calibrate velocity-init",
                                      "calibrate pressure-audit", "health-check --short"}) {
        const Outcome unread = RunSimulated("--yes --fault status:3@ReadEEPROM " + command);
        EXPECT_EQ(unread.Status, 1) << command;
        EXPECT_NE(unread.Result["error"].get<std::string>().find(
                      "The EPROM of the board cannot be read: AIB Access Denied."),
                  std::string::npos)
            << command;
        EXPECT_TRUE(command != "info" || unread.Result.at("mfcNumber").is_null());
    }
    const Outcome named =
        RunSimulated("--yes --time-scale max --fault status:3@ReadEEPROM test mfc");
    EXPECT_NE(named.Result["files"][0].get<std::string>().find("ACU_301_UNKNOWN_"),
              std::string::npos);
}

TEST_F(OmbrixctlTest, EpromWordsAreReadAndWritten) {
    EXPECT_EQ(RunSimulated("eprom write 1040 -5").Result["value"], -5);
    const Outcome read = RunSimulated("eprom read 1036 2");
    EXPECT_EQ(read.Result["words"][1],
              json({{"address", 1040}, {"value", -5}, {"hex", "FFFFFFFB"}}));
    const Outcome flipped = RunSimulated("--fault eprom-flip eprom write 1040 6");
    EXPECT_EQ(flipped.Status, 4);
    EXPECT_EQ(flipped.Result["value"], 7);
    EXPECT_EQ(RunSimulated("eprom read 1040").Result["words"][0]["value"], 6);
}

TEST_F(OmbrixctlTest, AFillIsAskedFor) {
    EXPECT_EQ(RunSimulated("eprom fill 0", "no\\n").Status, 1);
    EXPECT_EQ(RunSimulated("eprom read 8").Result["words"][0]["value"], 2);
    EXPECT_EQ(RunSimulated("eprom fill 0", "what?\\ny\\n").Status, 0);
    EXPECT_EQ(RunSimulated("eprom read 2044").Result["words"][0]["value"], 0);
}

TEST_F(OmbrixctlTest, AnImageGoesOutAndComesBack) {
    const std::string image = (m_Folder.Path() / "image.bin").string();
    EXPECT_EQ(RunSimulated("eprom save '" + image + "'").Status, 0);
    EXPECT_EQ(ReadWholeFile(image), ReadWholeFile(m_Folder.Path() / "simulator/EPROM_301.bin"));
    RunSimulated("--yes eprom fill 0");
    EXPECT_EQ(RunSimulated("eprom restore '" + image + "'", "no\\n").Status, 1);
    EXPECT_NE(Errors().find("1024 MFC number: \"\" → \"M9200301A\""), std::string::npos)
        << Errors();
    EXPECT_EQ(RunSimulated("--yes eprom restore '" + image + "'").Status, 0);
    EXPECT_EQ(RunSimulated("info").Result["mfcNumber"], "M9200301A");
    EXPECT_EQ(RunSimulated("--yes --fault eprom-flip eprom restore '" + image + "'")
                  .Result["differences"]
                  .size(),
              512U);
    ReplaceWholeFile(image, "short");
    EXPECT_EQ(RunSimulated("eprom restore '" + image + "'").Status, 4);
    EXPECT_EQ(RunSimulated("eprom restore /no/such/file").Status, 4);
    EXPECT_EQ(Run("--simulate=fresh --eprom '" + image + "' info").Status, 4);
}

TEST_F(OmbrixctlTest, EpromShowNamesTheFieldsOfTheRecord) {
    constexpr std::int32_t aboveTenth = 0x3DCCCCCE; // in seven digits the same as 0.1
    RunSimulated(fmt::format("eprom write 752 {}", aboveTenth));
    const json record = RunSimulated("eprom show").Result["record"];
    EXPECT_EQ(std::bit_cast<std::int32_t>(record["PressureCoeff"][0].get<float>()), aboveTenth);
    EXPECT_EQ(record["PressureCoeff"][0].dump(), "0.10000001") << "and no more digits";
    EXPECT_EQ(record["ChannelCapacity"], json::array({5000.0, 200.0, 0.0, 0.0}));
    EXPECT_EQ(record["VelocitySystemDate"], "2024-03-12T09:41:00");
    EXPECT_EQ(record["VelocityCal"][0]["Demand"][9], 62257);
    const json blank = Run("--simulate=fresh eprom show").Result["record"];
    EXPECT_EQ(blank["ACUInitialised"], false);
    EXPECT_TRUE(blank["PressureAuditDate"].is_null());
}

TEST_F(OmbrixctlTest, IdentityAndMFCNumberAreStored) {
    const std::filesystem::path backups = m_Folder.Path() / "Backups";
    ReplaceWholeFile(backups, "a file in the way");
    EXPECT_EQ(RunSimulated("identity --serial 41 --setup both").Status, 4);
    EXPECT_EQ(RunSimulated("detect").Result["boards"][0]["serial"], 301);
    std::filesystem::remove(backups);
    const Outcome identity = RunSimulated("identity --serial 42 --setup digital");
    EXPECT_EQ(identity.Result["code"], 2);
    EXPECT_EQ(RunSimulated("detect").Result["boards"][0]["serial"], 42);
    RunSimulated("mfc-number 'M92-001 23Z'");
    EXPECT_EQ(RunSimulated("info").Result["mfcNumber"], "M9200123Z");
}

TEST_F(OmbrixctlTest, HealthCheckNamesItsSequencesAndItsReport) {
    const Outcome outcome = RunSimulated("--time-scale max health-check --short --low-ch2");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    ASSERT_EQ(outcome.Result["sequences"].size(), 5U);
    const json& low = outcome.Result["sequences"][4];
    EXPECT_EQ(low["sheet"], "Low - Ch2");
    EXPECT_NEAR(low["samples"].get<double>(), 10000.0, 30.0);
    EXPECT_EQ(low["completed"], 24);
    EXPECT_EQ(outcome.Result["complete"], true);
    const std::filesystem::path report = outcome.Result["files"].at(0).get<std::string>();
    EXPECT_EQ(report.parent_path(), m_Folder.Path() / "ACUs" / "ACU00301_M9200301A");
    EXPECT_TRUE(std::filesystem::is_regular_file(report));
}

TEST_F(OmbrixctlTest, HealthCheckUsesTheShareWhenItIsThere) {
    const TemporaryFolder share;
    ReplaceWholeFile(share.Path() / ".aibshare", "");
    const Outcome outcome = RunSimulated("--time-scale max --share '" + share.Path().string() +
                                         "' health-check --short");
    const std::string report = outcome.Result["files"].at(0);
    EXPECT_TRUE(report.starts_with(share.Path().string())) << report;
}

TEST_F(OmbrixctlTest, HealthCheckPromptsEndWithTheInput) {
    EXPECT_EQ(RunSimulated("--time-scale max health-check --pressure").Status, 1);
    EXPECT_EQ(RunSimulated("--time-scale max --yes health-check --pressure").Status, 0);
}

TEST_F(OmbrixctlTest, WrongUsageEndsWithItsStatusAndAClearText) {
    struct Case {
        const char* Arguments;
        int Status;
        const char* Error;
    };
    for (const Case& c :
         {Case{"", 2, "subcommand"},
          Case{"--simulate=moon detect", 2, "no simulated bench \"moon\""},
          Case{"--simulate --fault smoke detect", 2, "no fault"},
          Case{"--fault no-air detect", 2, "--simulate"},
          Case{"--simulate --time-scale 0 detect", 2, "number above 0"},
          Case{"--simulate --start-at 2026-02-30T10:20:30 detect", 2, "no date and time"},
          Case{"--simulate dac 4 0", 2, "CHANNEL"},
          Case{"--simulate eprom read 2048", 2, "2044"},
          Case{"--simulate eprom read 2040 3", 2, "at most 2"},
          Case{"--simulate eprom write 2 0", 2, "steps of 4"},
          Case{"--simulate eprom write 0 4294967296", 2, "VALUE"},
          Case{"--simulate identity --serial 1000 --setup both", 2, "--serial"},
          Case{"--simulate health-check", 2, "required"},
          Case{"--simulate --fpga-folder /none detect", 2, "Directory does not exist: /none"},
          Case{"--simulate mfc-number M9200123Z", 2, "is no MFC number"},
          Case{"--simulate mfc-number '日本'", 2, "cannot hold"},
          Case{"template check /", 4, "/ is a folder, not a file"},
          Case{"--simulate test air-sweep --step 0", 2, "--step"},
          Case{"--simulate test air-sweep --delay -1", 2, "--delay"},
          Case{"--simulate=none adc", 3, "No AIBs"},
          Case{"--simulate --board 1 adc", 3, "no board 1"},
          Case{"--library libNone.so adc", 3, "File not found: libNone.so"}}) {
        const Outcome outcome = Run(c.Arguments);
        EXPECT_EQ(outcome.Status, c.Status) << c.Arguments;
        const std::string error = outcome.Result["error"];
        EXPECT_NE(error.find(c.Error), std::string::npos) << error;
    }
}

TEST_F(OmbrixctlTest, ADataFolderThatCannotBeUsedIsNamed) {
    ReplaceWholeFile(m_Folder.Path() / "simulator", "a file in the way");
    EXPECT_EQ(RunSimulated("detect").Status, 4);
    EXPECT_NE(Errors().find("simulator"), std::string::npos);
}

TEST_F(OmbrixctlTest, AMissingFPGAFileEndsTheProgram) {
    RunSimulated("detect");
    std::filesystem::remove(m_Folder.Path() / "Program Files/Pulvatron/System/AIBCNF00.bin");
    EXPECT_EQ(RunSimulated("detect").Status, 3);
    EXPECT_NE(Errors().find("AIBCNF00.bin"), std::string::npos);
    const TemporaryFolder folder;
    const std::string option = "--time-scale max --fpga-folder '" + folder.Path().string() + "' ";
    EXPECT_EQ(RunSimulated(option + "detect").Status, 3);
    EXPECT_NE(Errors().find("   " + folder.Path().string() + "\n"), std::string::npos) << Errors();
    ReplaceWholeFile(folder.Path() / "AIBCNF00.bin", "FPGA");
    EXPECT_EQ(RunSimulated(option + "detect").Status, 0) << Errors();
    const std::string log = RunSimulated(option + "calibrate velocity-audit").Result["files"][0];
    EXPECT_TRUE(log.starts_with(m_Folder.Path().string())) << "the logs stay in the data folder";
}

} // namespace
} // namespace ombrix
