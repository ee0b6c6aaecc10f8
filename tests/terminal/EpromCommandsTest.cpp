#include "terminal/OmbrixctlTest.h"

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, ImagesAreComparedFieldByField) {
    const std::string image = (m_Folder.Path() / "image.bin").string();
    const std::string later = (m_Folder.Path() / "later.bin").string();
    RunSimulated("eprom save '" + image + "'");
    EXPECT_EQ(RunSimulated("eprom diff '" + image + "'").Result["fields"], json::array());
    RunSimulated("mfc-number M1");
    const json field = {
        {"address", 1024}, {"name", "MFC number"}, {"old", "\"M9200301A\""}, {"new", "\"M1\""}};
    EXPECT_EQ(RunSimulated("eprom diff '" + image + "'").Result["fields"], json::array({field}));
    RunSimulated("eprom save '" + later + "'");
    const Outcome files = Run("--simulate=none eprom diff '" + image + "' '" + later + "'");
    EXPECT_EQ(files.Status, 0) << "no board is needed";
    EXPECT_EQ(files.Result["fields"], json::array({field}));
    EXPECT_EQ(RunSimulated("eprom diff '" + ErrorFile().string() + "'").Status, 4);
}

TEST_F(OmbrixctlTest, AnotherUnitsBackupIsSaidToBeOne) {
    Run("--simulate=plain mfc-number M1");
    const auto backup = *std::filesystem::directory_iterator(m_Folder.Path() / "Backups");
    const std::string restore = "eprom restore '" + backup.path().string() + "'";
    constexpr const char* warning =
        "EPROM of another unit: ACU00303. It is about to go into ACU00301";
    EXPECT_EQ(RunSimulated(restore).Status, 1) << "asked, and not answered";
    EXPECT_NE(Errors().find(warning), std::string::npos) << Errors();
    Run("--simulate=plain " + restore);
    EXPECT_EQ(Errors().find("another unit"), std::string::npos) << Errors();
}

/// A line that writes the EPROM, and a field that it writes.
struct Writer {
    const char* Line;
    const char* Field;
};
class EpromWriterTest : public OmbrixctlTest, public ::testing::WithParamInterface<Writer> {
  protected:
    void SetUp() override {
        // An image that is not what the board holds, for the line that wants one.
        Run("--simulate=plain eprom show");
        m_Before = Eprom();
        std::string image = m_Before;
        image.replace(8, 4, 4, '\0');
        ReplaceWholeFile(m_Folder.Path() / "image.bin", image);
    }
    Outcome RunLine(const std::string& faults) const {
        return Run("--simulate=plain --yes --time-scale max " + faults + GetParam().Line, "",
                   "env -C '" + m_Folder.Path().string() + "'");
    }
    std::string Eprom() const { return ReadWholeFile(m_Folder.Path() / "simulator/EPROM_303.bin"); }

    std::string m_Before;
};

TEST_P(EpromWriterTest, FindsOutABoardThatLiesAndKeepsWhatItHeld) {
    const Outcome outcome = RunLine("--fault eprom-flip ");
    EXPECT_EQ(outcome.Status, 4);
    const std::string error = outcome.Result["error"];
    EXPECT_NE(error.find("does not hold what was written"), std::string::npos) << error;
    EXPECT_NE(error.find(GetParam().Field), std::string::npos) << error;
    EXPECT_FALSE(outcome.Result.value("saved", false));
    const std::filesystem::directory_iterator backup(m_Folder.Path() / "Backups");
    EXPECT_EQ(ReadWholeFile(backup->path()), m_Before);
}

TEST_P(EpromWriterTest, WritesAndDrivesNothingThatCannotBeSavedFirst) {
    ReplaceWholeFile(m_Folder.Path() / "Backups", "a file in the way");
    const Outcome outcome = RunLine("");
    EXPECT_EQ(outcome.Status, 4);
    const std::string error = outcome.Result["error"];
    EXPECT_NE(error.find("cannot be saved first"), std::string::npos) << error;
    EXPECT_EQ(Errors().find("Phase 1"), std::string::npos) << "no calibration began";
    EXPECT_EQ(Eprom(), m_Before);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, EpromWriterTest,
    ::testing::Values(Writer{"mfc-number M1", "1024 MFC number"},
                      Writer{"eprom write 48 1", "48 Demand 1"},
                      Writer{"eprom fill 0", "8 Data version"},
                      Writer{"eprom restore image.bin", "8 Data version"},
                      Writer{"clear-pressure", "600 Pressure present"},
                      Writer{"sensor 1000", "604 Max pressure"},
                      Writer{"calibrate velocity-init --mfc-number M1", "1024 MFC number"},
                      Writer{"calibrate pressure-system", "748 Base diameter"},
                      Writer{"calibrate pressure-audit", "652 Pressure audit date"}));

} // namespace
} // namespace ombrix
