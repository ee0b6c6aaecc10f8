#include "terminal/OmbrixctlTest.h"

namespace ombrix {
namespace {

TEST_F(OmbrixctlTest, ARunWhoseProgramWasKilledGetsItsReport) {
    // Killed outright, there is no JSON to take.
    const std::string killed = fmt::format(
        "timeout -s KILL 0.4 '{}' --data-root '{}' --simulate --yes --time-scale 40 calibrate "
        "velocity-system >/dev/null 2>&1",
        OMBRIXCTL, m_Folder.Path().string());
    EXPECT_NE(std::system(killed.c_str()), 0);
    EXPECT_EQ(RunSimulated("adc").Status, 0);
    EXPECT_NE(Errors().find("ombrixctl report --journal '"), std::string::npos);

    const json journals = Run("report").Result["journals"];
    ASSERT_EQ(journals.size(), 1U);
    const std::string journal = journals[0]["file"];
    const Outcome report = Run("report --journal '" + journal + "'");
    EXPECT_EQ(report.Status, 0) << Errors();
    ASSERT_EQ(report.Result["files"].size(), 1U);
    EXPECT_TRUE(std::filesystem::exists(report.Result["files"][0].get<std::string>()));
    EXPECT_TRUE(Run("report").Result["journals"].empty());
    EXPECT_EQ(Run("history").Result["runs"].at(0)["verdict"], "interrupted");
    ReplaceWholeFile(journal, ReadWholeFile(journal).insert(9, "x"));
    EXPECT_EQ(Run("report --journal '" + journal + "'").Status, 4);
}

TEST_F(OmbrixctlTest, AHistoryThatWasChangedFailsItsCheck) {
    EXPECT_EQ(RunSimulated("--yes --time-scale max calibrate pressure-audit").Status, 0)
        << Errors();
    EXPECT_EQ(Run("units --due").Result["units"].at(0)["serial"], 301) << "it has no velocity run";
    const Outcome whole = Run("history --verify");
    EXPECT_EQ(whole.Status, 0);
    EXPECT_EQ(whole.Result["records"], 1);
    EXPECT_TRUE(whole.Result["firstBroken"].is_null());
    const std::filesystem::path file = m_Folder.Path() / "History" / "ACU00301.jsonl";
    std::string text = ReadWholeFile(file);
    EXPECT_EQ(Run("history").Result["runs"].at(0)["number"], 1);
    ReplaceWholeFile(file, text.replace(text.find("\"passed\""), 8, "\"failed\""));
    const Outcome broken = Run("history --verify");
    EXPECT_EQ(broken.Status, 1);
    EXPECT_EQ(broken.Result["records"], 0);
    EXPECT_EQ(broken.Result["firstBroken"], 1);
    EXPECT_NE(broken.Result["error"].get<std::string>().find("ACU00301"), std::string::npos);
}

} // namespace
} // namespace ombrix
