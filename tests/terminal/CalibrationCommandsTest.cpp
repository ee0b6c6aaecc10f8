#include "support/WorkbookProbe.h"
#include "terminal/OmbrixctlTest.h"

#include <algorithm>

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, VelocityInitTakesAFreshUnitToItsDates) {
    const std::string fresh = "--simulate=fresh ";
    EXPECT_EQ(Run(fresh + "eprom show").Result["record"]["ACUInitialised"], false);
    const Outcome outcome =
        Run(fresh + "--yes --time-scale max calibrate velocity-init --mfc-number M9200777A");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    ASSERT_EQ(outcome.Result["stages"].size(), 4U);
    EXPECT_EQ(outcome.Result["stages"][3]["name"], "Velocity Audit Calibration (2 of 2)");
    for (const json& stage : outcome.Result["stages"])
        EXPECT_EQ(stage["result"], "Run: Passed");
    ASSERT_EQ(outcome.Result["files"].size(), 10U);
    for (const json& file : outcome.Result["files"]) {
        const std::filesystem::path path = file.get<std::string>();
        ASSERT_TRUE(std::filesystem::exists(path)) << path;
        if (path.extension() == ".xls") {
            EXPECT_TRUE(ReadWholeFile(path).starts_with(BinaryWorkbook)) << path;
        }
    }
    const json record = Run(fresh + "eprom show").Result["record"];
    EXPECT_EQ(record["ACUInitialised"], true);
    EXPECT_EQ(record["VelocitySystemUser"], "QUILLON");
    EXPECT_EQ(record["VelocityCal"][1]["Demand"][9], 62257);
    EXPECT_NEAR(record["VelocityCal"][0]["M"][4].get<double>(), 1.0, 0.01);
    EXPECT_EQ(Run(fresh + "info").Result["mfcNumber"], "M9200777A");
}

TEST_F(OmbrixctlTest, AnUnattendedInitialisationNeedsANumberThatFits) {
    const std::string line = "--simulate=fresh --yes --time-scale max calibrate velocity-init";
    EXPECT_EQ(Run(line).Status, 2);
    EXPECT_EQ(Run(line + " --mfc-number M9200302ABCDE").Status, 2);
    EXPECT_EQ(Run("--simulate=fresh --yes mfc-number M9200302ABCDE").Status, 2);
    const Outcome outcome = Run("--simulate=fresh --yes --time-scale max --fault unplug@1 "
                                "calibrate velocity-init --mfc-number M1");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Result["stages"][0]["result"], "Run: Failed");
    EXPECT_EQ(outcome.Result["stages"][1]["result"], "Pending");
    EXPECT_NE(outcome.Result["error"].get<std::string>().find("does not answer"),
              std::string::npos);
    EXPECT_EQ(Run("--simulate=fresh info").Result["mfcNumber"], "M1");
}

TEST_F(OmbrixctlTest, ASingleRunTellsWhatItCameTo) {
    const Outcome declined = RunSimulated("--time-scale max calibrate velocity-system");
    EXPECT_EQ(declined.Status, 1) << "the input has ended at the opening prompt";
    EXPECT_EQ(declined.Result["aborted"], true);

    const Outcome failed =
        RunSimulated("--time-scale max --yes --fault hysteresis:0,150 calibrate velocity-system");
    EXPECT_EQ(failed.Status, 1);
    EXPECT_EQ(failed.Result["passed"], false);
    EXPECT_EQ(failed.Result["saved"], false);
    EXPECT_EQ(failed.Result["files"].size(), 2U) << "log and report";

    const Outcome audit = RunSimulated("--time-scale max calibrate velocity-audit", "ok\\nno\\n");
    EXPECT_EQ(audit.Status, 0) << Errors();
    EXPECT_EQ(audit.Result["passed"], true);
    EXPECT_EQ(audit.Result["saved"], false) << "an audit stores no coefficients";
}

TEST_F(OmbrixctlTest, AnInterruptCancelsACalibration) {
    const Outcome outcome =
        RunUntilItDrives("--simulate --time-scale 20 --yes calibrate velocity-system");
    EXPECT_EQ(outcome.Status, 1);
    EXPECT_EQ(outcome.Result["aborted"], true);
    EXPECT_EQ(outcome.Result["error"], "ACU Calibration Aborted");
}

TEST_F(OmbrixctlTest, ClearPressureAsksAndReadsBack) {
    const auto coefficient = [this] {
        return RunSimulated("eprom read 752").Result["words"][0]["value"].get<int>();
    };
    EXPECT_EQ(RunSimulated("clear-pressure").Status, 1);
    EXPECT_NE(coefficient(), 0);
    EXPECT_EQ(RunSimulated("--yes clear-pressure").Status, 0);
    EXPECT_EQ(coefficient(), 0);
    EXPECT_EQ(RunSimulated("info").Result["pressureSystem"], "Never");
    const json below = RunSimulated("eprom read 596").Result["words"];
    EXPECT_EQ(below[0]["value"], -1) << "nothing beside the pressure part";
}

TEST_F(OmbrixctlTest, ThePressureIsCalibratedVerifiedAndRead) {
    const std::string plain = "--simulate=plain --yes --time-scale max ";
    const Outcome system = Run(plain + "calibrate pressure-system");
    EXPECT_EQ(system.Status, 0) << Errors();
    EXPECT_EQ(system.Result["saved"], true);
    const Outcome audit = Run(plain + "calibrate pressure-audit");
    EXPECT_EQ(audit.Status, 0) << Errors();
    EXPECT_EQ(audit.Result["files"].size(), 2U);
    EXPECT_NEAR(Run(plain + "pressure").Result["mBar"].get<double>(), 0.0, 0.5);
    EXPECT_EQ(Run("--simulate=fresh --yes calibrate pressure-audit").Status, 1);
}

TEST_F(OmbrixctlTest, ThePressureSensorIsDeclared) {
    const std::string plain = "--simulate=plain --yes --time-scale max ";
    const auto words = [&] { return Run(plain + "eprom read 600 2").Result["words"]; };
    EXPECT_EQ(Run(plain + "sensor 600").Status, 2);
    EXPECT_EQ(Run(plain + "sensor none").Result["sensor"], "none");
    EXPECT_EQ(words()[0]["value"].get<int>() | words()[1]["value"].get<int>(), 0);
    const std::string error = Run(plain + "calibrate pressure-system").Result["error"];
    EXPECT_NE(error.find("ombrixctl sensor"), std::string::npos) << error;
    EXPECT_EQ(Run(plain + "sensor 1000").Result["sensor"], "1000");
    EXPECT_EQ(words()[0]["value"], 16);
    EXPECT_EQ(words()[1]["value"], 1148846080) << "1000 as a Single";
    EXPECT_EQ(Run(plain + "sensor 400").Status, 0);
    EXPECT_NE(Errors().find("made with another sensor"), std::string::npos);
    EXPECT_EQ(Run(plain + "calibrate pressure-system").Status, 0);
}

TEST_F(OmbrixctlTest, ARecordingHasItsLines) {
    const Outcome outcome = RunSimulated("--time-scale max record --seconds 2.5");
    EXPECT_EQ(outcome.Status, 0);
    EXPECT_EQ(outcome.Result["lines"], 250);
    const std::string file = ReadWholeFile(outcome.Result["files"][0].get<std::string>());
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 251);
    EXPECT_EQ(RunSimulated("record --seconds 0").Status, 2);
}

TEST_F(OmbrixctlTest, TheInformationWorkbookIsNamed) {
    const Outcome outcome = RunSimulated("--yes info-workbook");
    EXPECT_EQ(outcome.Status, 0) << Errors();
    ASSERT_EQ(outcome.Result["files"].size(), 1U);
    const std::filesystem::path file = outcome.Result["files"][0].get<std::string>();
    EXPECT_EQ(file.filename(), "ACU_Information_ACU00301.xls");
    EXPECT_TRUE(ReadWholeFile(file).starts_with(BinaryWorkbook));

    const Outcome empty = RunSimulated("--yes --fault status:2@ReadEEPROM info-workbook");
    EXPECT_EQ(empty.Status, 1);
    EXPECT_NE(empty.Result["error"].get<std::string>().find("could not be read"),
              std::string::npos);
    EXPECT_EQ(empty.Result["files"].size(), 1U);
}

} // namespace
} // namespace ombrix
