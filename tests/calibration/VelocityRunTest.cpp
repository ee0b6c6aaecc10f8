#include "calibration/CalibrationBench.h"
#include "calibration/judge/CurveFit.h"
#include "support/FullDisk.h"
#include "support/WorkbookProbe.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace ombrix {
namespace {

using Kind = CalibrationKind;

std::vector<std::string> LinesOf(const std::filesystem::path& file) {
    std::istringstream text(ReadWholeFile(file));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);)
        lines.push_back(line.substr(0, line.size() - 1)); // without the CR
    return lines;
}

/// The measurements of a system run as its log tells them.
std::array<ChannelMeasurement, AirChannels> ReadingsOf(const std::vector<std::string>& log) {
    std::array<ChannelMeasurement, AirChannels> measured;
    std::size_t channel = 0;
    for (const std::string& line : log) {
        int number = 0;
        int demand = 0;
        int reading = 0;
        if (std::sscanf(line.c_str(), "> > Calibrating Channel: %d < <", &number) == 1)
            channel = static_cast<std::size_t>(number);
        if (std::sscanf(line.c_str(), "Point %d,%d,%d", &number, &demand, &reading) != 3)
            continue;
        ChannelMeasurement& target = measured.at(channel);
        if (target.Demand.size() < 10) {
            EXPECT_EQ(number, static_cast<int>(target.Demand.size())) << "rising";
            target.Demand.push_back({demand});
            target.Rising.push_back({.Reading_bits = reading});
        } else {
            EXPECT_EQ(number, static_cast<int>(9 - target.Falling.size())) << "falling";
            target.Falling.insert(target.Falling.begin(), {.Reading_bits = reading});
        }
    }
    return measured;
}

TEST(VelocityInitialisation, AFreshUnitGetsATableThatItsAuditsConfirm) {
    CalibrationBench bench("fresh");
    std::string number = "M9200777A";
    const ACUSetUp::Initialisation outcome = bench.SetUp.RunACUInitialisation(number, true, false);
    EXPECT_TRUE(outcome.Passed);
    EXPECT_TRUE(outcome.AllStored);
    ASSERT_EQ(bench.Told().size(), 1U) << "the question alone: " << bench.Told().back();
    EXPECT_EQ(bench.Told()[0], "Are you sure you want to run:\r\n\r\n"
                               "  2 x Velocity System Calibrations\r\n"
                               "  2 x Velocity Audit Calibrations (PV16)");
    EXPECT_EQ(bench.Stages.Results, std::vector<std::string>(4, "Run: Passed"));
    EXPECT_TRUE(bench.Stages.Closed);
    EXPECT_LT(bench.Bench.FlowLater_bits(), TestBench::NoFlow_bits);

    // What is in the EPROM, read by a record that knows nothing of the run.
    const ACURecord stored = bench.Stored();
    ASSERT_TRUE(stored.ACUInitialised);
    EXPECT_EQ(stored.ACUMFCNumber(), "M9200777A");
    EXPECT_TRUE(stored.LastCalDone_Velocity_System().Passed);
    EXPECT_TRUE(stored.LastCalDone_Velocity_Audit().Passed);
    EXPECT_EQ(stored.VelocityAuditUser.substr(0, 8), "QUILLON ");
    EXPECT_GT(stored.VelocityAuditDate.Days(), stored.VelocitySystemDate.Days());

    // Four logs; the second system run's readings give the stored table to the bit.
    std::vector<std::vector<std::string>> logs;
    for (const auto& file : outcome.Files) {
        EXPECT_TRUE(std::filesystem::exists(file)) << file;
        if (file.extension() == ".txt")
            logs.push_back(LinesOf(file));
    }
    ASSERT_EQ(logs.size(), 4U);
    ASSERT_EQ(outcome.Files.size(), 4U + 4U + 2U) << "logs, reports, audit sheets";
    WorkbookProbe system(ReadWholeFile(outcome.Files[1]));
    WorkbookProbe audit(ReadWholeFile(outcome.Files.back()));
    EXPECT_EQ(system.Value("Report", "M11"), "New segments");
    EXPECT_EQ(audit.Value("Report", "M11"), "Stored segments");
    EXPECT_EQ(audit.Value("Report", "D10"), "Audit passed");
    EXPECT_EQ(logs[1][3], "Calibration Type,System");
    EXPECT_EQ(logs[2][3], "Calibration Type,Audit");
    const auto measured = ReadingsOf(logs[1]);
    for (std::size_t channel = 0; channel < AirChannels; ++channel) {
        EXPECT_EQ(stored.VelocityCal.at(channel), FitSegments(measured.at(channel))) << channel;
        EXPECT_NEAR(measured.at(channel).Rising[0].Reading_bits, 655, 60)
            << "not measured at the pre-charge";
    }
}

class VelocityRunTest : public ::testing::Test {
  protected:
    void Use(const std::string& bench, const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<CalibrationBench>(bench, faults);
        m_Before = m_Bench->Eprom();
    }
    /// A run alone, as an operator starts it. All air is off afterwards, whatever happens.
    CalibrationOutcome Run(Kind kind) {
        const CalibrationOutcome outcome = m_Bench->SetUp.RunVelocity(kind);
        EXPECT_FALSE(m_Bench->Bench.TheStation.Procedures.Running());
        EXPECT_EQ(m_Bench->Board.DAC(0) + m_Bench->Board.DAC(1), 0);
        return outcome;
    }
    void ExpectUntouched() {
        EXPECT_EQ(m_Bench->Eprom(), m_Before);
        const ACURecord stored = m_Bench->Stored();
        const ACURecord& record = m_Bench->Record().Record();
        EXPECT_EQ(record.VelocityCal, stored.VelocityCal);
        EXPECT_EQ(record.VelocitySystemDate, stored.VelocitySystemDate);
        EXPECT_EQ(record.VelocityAuditDate, stored.VelocityAuditDate);
    }
    bool Told(const std::string& text) const {
        const auto told = m_Bench->Told();
        return std::any_of(told.begin(), told.end(), [&text](const std::string& message) {
            return message.find(text) != std::string::npos;
        });
    }
    static bool Contains(const CalibrationOutcome& outcome, const std::string& line) {
        const auto lines = LinesOf(outcome.Files.at(0));
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }
    void AnswerWith(std::initializer_list<Answer> answers) {
        m_Bench->Bench.Messages.Answers.assign(answers);
    }

    std::unique_ptr<CalibrationBench> m_Bench;
    std::vector<std::int32_t> m_Before;
};

TEST_F(VelocityRunTest, HysteresisFailsTheRunAndLeavesEverythingAsItWas) {
    Use("acu", {"hysteresis:0,132"});
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_EQ(outcome.Ended, End::Failed);
    EXPECT_FALSE(outcome.Saved);
    EXPECT_EQ(m_Bench->Stages.Results, std::vector<std::string>{"Run: Failed"});
    EXPECT_TRUE(Told("The System Calibration Failed\r\n\r\n"
                     "The data collected from channel 1 was not acceptable"));
    EXPECT_TRUE(Contains(outcome, " -> Hysteresis Check - Failed"));
    EXPECT_FALSE(Contains(outcome, "> > Calibrating Channel: 1 < <"))
        << "the second channel would be measured for nothing";
    ExpectUntouched();
}

TEST_F(VelocityRunTest, OneFailingChannelKeepsBothFromBeingStored) {
    Use("acu", {"hysteresis:1,132"});
    EXPECT_FALSE(Run(Kind::System).Passed);
    EXPECT_TRUE(Told("The data collected from channel 2 was not acceptable"));
    ExpectUntouched();
}

TEST_F(VelocityRunTest, AGainErrorIsCalibratedAwayUnlessItComesLater) {
    Use("acu", {"gain:0,3"});
    EXPECT_FALSE(Run(Kind::Audit).Passed) << "the factory's table knows nothing of it";
    EXPECT_TRUE(Told("Channel 1 failed the audit calibration"));
    EXPECT_TRUE(Told("please contact Quillon."));
    EXPECT_FALSE(m_Bench->Record().Record().LastCalDone_Velocity_Audit().Passed);
    EXPECT_TRUE(Run(Kind::System).Saved);
    EXPECT_TRUE(Run(Kind::Audit).Passed);
}

TEST_F(VelocityRunTest, WithoutAirItFailsAndIsStoredOnlyByAnOperatorWhoInsists) {
    Use("acu", {"no-air"});
    EXPECT_FALSE(Run(Kind::Audit).Passed);
    AnswerWith({Answer::Ok, Answer::No});
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_EQ(outcome.Ended, End::Failed);
    EXPECT_FALSE(outcome.Saved);
    const Message& question = *(m_Bench->Bench.Messages.Shown.end() - 2);
    EXPECT_EQ(question.Text, "Channel 1 does not follow the demand: the readings do not rise with "
                             "the demand.\r\n\r\nWould you like to save the calibration?");
    EXPECT_TRUE(question.DefaultsToRefusal && question.DeclinedUnattended);
    EXPECT_TRUE(Told("Calibration Coefficients NOT Saved"));
    EXPECT_EQ(m_Bench->Stages.Results.back(), "Run: Failed");
    ASSERT_EQ(m_Bench->Stages.Warnings.size(), 2U);
    EXPECT_TRUE(
        Contains(outcome, "Warning: The readings of channel 1 do not rise with the demand."));
}

TEST_F(VelocityRunTest, LosingTheDataTakesTwoAnswers) {
    Use("acu");
    AnswerWith({Answer::Ok, Answer::No, Answer::No});
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_TRUE(outcome.Saved);
    const std::vector<std::string> told = m_Bench->Told();
    ASSERT_EQ(told.size(), 4U);
    EXPECT_EQ(told[0], "Caution - this procedure will reset the calibration parameters\r\n\r\n"
                       "If you wish to continue, please ensure:\r\n"
                       "  - The air supply is connected and turned on\r\n"
                       "  - The power supply is connected and turned on\r\n\r\n"
                       "Click OK to Start or Cancel to exit.");
    EXPECT_EQ(m_Bench->Bench.Messages.Shown[0].Title, "Air Velocity System Calibration");
    EXPECT_EQ(told[1], "Would you like to save the calibration?");
    EXPECT_EQ(told[2], "Are you sure you want to lose the calibration data?");
    EXPECT_EQ(told[3], "Calibration Coefficients Saved");
    EXPECT_NE(m_Bench->Eprom(), m_Before);
}

TEST_F(VelocityRunTest, NothingIsAuditedWhereThereIsNoTable) {
    Use("fresh");
    EXPECT_EQ(Run(Kind::Audit).Ended, End::Stopped);
    EXPECT_TRUE(Told("no velocity calibration to audit"));
    EXPECT_EQ(m_Bench->Eprom(), m_Before);
}

TEST_F(VelocityRunTest, AnInterruptAtTheQuestionDoesNotSave) {
    for (const Kind kind : {Kind::System, Kind::Audit}) {
        Use("acu");
        AnswerWith({Answer::Ok, Answer::No, Answer::No});
        m_Bench->Bench.Messages.WhileAsked = [this](const Message& message) {
            if (message.Text.find("Would you like to save the") != std::string::npos)
                m_Bench->Cancel();
        };
        const OleDate audit = m_Bench->Record().Record().VelocityAuditDate;
        const CalibrationOutcome outcome = Run(kind);
        EXPECT_EQ(outcome.Ended, End::Cancelled);
        EXPECT_FALSE(outcome.Saved);
        EXPECT_EQ(m_Bench->Eprom(), m_Before);
        EXPECT_EQ(m_Bench->Record().Record().VelocityAuditDate, audit);
    }
}

TEST_F(VelocityRunTest, AnAuditIsWrittenDownOnlyWhenTheReportIsWanted) {
    Use("acu");
    AnswerWith({Answer::Ok, Answer::No});
    EXPECT_TRUE(Run(Kind::Audit).Passed);
    EXPECT_EQ(m_Bench->Eprom(), m_Before);
    EXPECT_TRUE(Told("The Audit Calibration has passed.\r\n\r\n"
                     "Would you like to save the data as a report?"));
    AnswerWith({Answer::Ok, Answer::Yes, Answer::No});
    EXPECT_TRUE(Run(Kind::Audit).Passed);
    EXPECT_NE(m_Bench->Eprom(), m_Before);
}

TEST_F(VelocityRunTest, AUnitWithoutValvesTakesItsTimeAtTheStart) {
    Use("plain");
    const std::vector<std::pair<double, std::int32_t>> expected = {
        {14.0, 6553}, {44.0, 655}, {46.0, 2621}, {59.0, 2621}, {61.0, 5243}};
    std::vector<std::int32_t> seen;
    for (const auto& [time_s, bits] : expected)
        m_Bench->Bench.Events.At(
            time_s, [this, &seen] { seen.push_back(m_Bench->Bench.Bench.Board(0).DAC(0)); });
    m_Bench->Bench.Events.At(62.0, [this] {
        EXPECT_EQ(m_Bench->Stages.Span_s, 615.0F);
        EXPECT_NEAR(m_Bench->Stages.Progress_s, 62.0F, 0.2F);
        EXPECT_EQ(m_Bench->Stages.Lines[0], "Air Velocity System Calibration - Phase 1 of 2");
        EXPECT_EQ(m_Bench->Stages.Lines[1], "Demand:  5243 bits");
        EXPECT_TRUE(m_Bench->Stages.Lines[2].starts_with("Current:  "));
        EXPECT_EQ(m_Bench->Stages.Lines[3], "Time left:  334 s");
        m_Bench->Cancel();
    });
    EXPECT_EQ(Run(Kind::System).Ended, End::Cancelled);
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(seen.at(i), expected.at(i).second) << expected.at(i).first;
}

struct CancelCase {
    const char* Phase;
    const char* Bench;
    Kind What;
    /// Seconds after the start; 0 declines the opening prompt.
    double At_s;
    /// What the second status line says then.
    const char* Status;
};

class CancelTest : public VelocityRunTest, public ::testing::WithParamInterface<CancelCase> {};

TEST_P(CancelTest, LeavesAirOffAndTheEpromUntouched) {
    const CancelCase& c = GetParam();
    Use(c.Bench);
    std::string status;
    if (c.At_s == 0.0)
        AnswerWith({Answer::Cancel});
    else
        m_Bench->Bench.Events.At(c.At_s, [this, &status] {
            status = m_Bench->Stages.Lines[1];
            m_Bench->Cancel();
        });
    const CalibrationOutcome outcome = Run(c.What);
    EXPECT_EQ(outcome.Ended, End::Cancelled);
    EXPECT_FALSE(outcome.Passed || outcome.Saved);
    EXPECT_TRUE(status.starts_with(c.Status)) << status;
    EXPECT_EQ(m_Bench->Stages.Results, std::vector<std::string>{"Aborted"});
    EXPECT_EQ(m_Bench->Told().size(), 1U) << "no box after the opening prompt";
    EXPECT_LT(m_Bench->Bench.FlowLater_bits(), TestBench::NoFlow_bits);
    EXPECT_TRUE(Contains(outcome, "Calibration cancelled by the operator"));
    ExpectUntouched();
}

INSTANTIATE_TEST_SUITE_P(
    Phases, CancelTest,
    ::testing::Values(CancelCase{"Prompt", "acu", Kind::System, 0.0, ""},
                      CancelCase{"PreFlow", "plain", Kind::Audit, 5.0, "Pre-flow:  6553 bits"},
                      CancelCase{"SweepUp", "acu", Kind::System, 40.0, "Demand:  5243 bits"},
                      CancelCase{"SweepDown", "acu", Kind::Audit, 295.0, "Demand:  150.0 ml/min"},
                      CancelCase{"ZeroWait", "acu", Kind::System, 305.0, "Waiting at zero demand"},
                      CancelCase{"Step", "acu", Kind::Audit, 345.0, "Calculating Data..."}),
    [](const auto& info) { return info.param.Phase; });

TEST_F(VelocityRunTest, WhatIsDeclinedOrDrivesNothingLeavesTheOperatorsOutputsAlone) {
    const auto initialise = [this](std::string number, bool velocity, bool pressure) {
        m_Bench->SetUp.RunACUInitialisation(number, velocity, pressure);
    };
    const std::function<void()> commands[] = {
        [this] { m_Bench->SetUp.RunVelocity(Kind::System); },
        [this] { m_Bench->SetUp.RunVelocity(Kind::Audit); },
        [this] { m_Bench->SetUp.RunPressure(Kind::System); },
        [&] { initialise("M1", true, true); },
        [&] { initialise(ACUSetUp::MFCNumberPlaceholder, true, false); },
        [&] { // agreed to, but there is no run of the pressure
            AnswerWith({Answer::Yes});
            initialise("M1", false, true);
        }};
    for (const auto& command : commands) {
        Use("acu");
        m_Bench->Bench.TheStation.Outputs.Set(m_Bench->Board, 0, 20000);
        AnswerWith({Answer::Cancel});
        m_Bench->Bench.Messages.Texts = {std::nullopt};
        command();
        EXPECT_EQ(m_Bench->Board.DAC(0), 20000) << &command - commands;
        const auto mark = FindMark(m_Bench->Bench.World, 301);
        ASSERT_TRUE(mark) << "the operator drives the board";
        EXPECT_EQ(mark->Procedure, "driving by hand");
    }
}

struct LossCase {
    const char* Name;
    const char* Fault;
    Kind What;
};

class BoardLostTest : public VelocityRunTest, public ::testing::WithParamInterface<LossCase> {};

TEST_P(BoardLostTest, EndsTheRunAsFailedAfterASecond) {
    Use("acu", {GetParam().Fault});
    const double started_s = static_cast<double>(m_Bench->Bench.Time.Counter()) * 1e-9;
    const CalibrationOutcome outcome = m_Bench->SetUp.RunVelocity(GetParam().What);
    const double lasted_s = static_cast<double>(m_Bench->Bench.Time.Counter()) * 1e-9 - started_s;
    EXPECT_LT(lasted_s, 22.0);
    EXPECT_EQ(outcome.Ended, End::Stopped);
    EXPECT_FALSE(outcome.Passed || outcome.Saved);
    EXPECT_NE(outcome.Error, "");
    EXPECT_TRUE(Told("The calibration has been stopped.\r\n\r\nThe board does not answer"));
    EXPECT_EQ(m_Bench->Stages.Results, std::vector<std::string>{"Run: Failed"});
    EXPECT_TRUE(LinesOf(outcome.Files.at(0))
                    .back()
                    .starts_with("Calibration stopped: The board does not answer: "));
    EXPECT_TRUE(m_Bench->Board.DAC(0) == 0 || m_Bench->Bench.TheStation.AirMayFlow)
        << "the outputs were told to be off";
}

INSTANTIATE_TEST_SUITE_P(Faults, BoardLostTest,
                         ::testing::Values(LossCase{"Unplugged", "unplug@20", Kind::System},
                                           LossCase{"NoAnswer", "status:32", Kind::Audit}),
                         [](const auto& info) { return info.param.Name; });

TEST_F(VelocityRunTest, ALostBoardEndsTheWholeSequence) {
    Use("acu", {"unplug@20"});
    std::string number = "M1";
    const ACUSetUp::Initialisation outcome =
        m_Bench->SetUp.RunACUInitialisation(number, true, false);
    EXPECT_FALSE(outcome.Passed);
    EXPECT_EQ(outcome.Ended, End::Stopped);
    EXPECT_EQ(m_Bench->Stages.Names.size(), 4U);
    EXPECT_EQ(m_Bench->Stages.Results, std::vector<std::string>{"Run: Failed"});
}

TEST_F(VelocityRunTest, AFullDiskDoesNotLoseTheCalibration) {
    Use("acu");
    FullDisk full(m_Bench->Bench.Files);
    m_Bench->WorkbookFiles = &full;
    AnswerWith({Answer::Ok, Answer::Yes, Answer::Ok, Answer::No, Answer::No});
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_TRUE(outcome.Saved);
    EXPECT_FALSE(outcome.AllStored);
    EXPECT_NE(m_Bench->Eprom(), m_Before);
    ASSERT_EQ(outcome.Files.size(), 2U);
    EXPECT_EQ(outcome.Files[1].parent_path(), m_Bench->Bench.Folder.Path() / "Kept");
}

TEST_F(VelocityRunTest, ARecordWithoutPointsIsNotCalibrated) {
    Use("acu");
    PutWord(m_Bench->Board, 32, 1);
    m_Bench->Record().ReadEPROMValues();
    const CalibrationOutcome outcome = Run(Kind::System);
    EXPECT_FALSE(outcome.Passed);
    EXPECT_TRUE(Contains(outcome, " - Skipped as the record has 1 calibration points"));
}

} // namespace
} // namespace ombrix
