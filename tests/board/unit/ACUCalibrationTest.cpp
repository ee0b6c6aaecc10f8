#include "board/eprom/EpromFields.h"
#include "board/eprom/EpromGuard.h"
#include "board/unit/CalibrationSummary.h"
#include "board/unit/RecordCoding.h"
#include "platform/text/Paths.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <bit>

namespace ombrix {
namespace {

namespace Map = ACUMemoryMap;

std::int32_t Bits(float value) {
    return std::bit_cast<std::int32_t>(value);
}

/// A unit whose EPROM is made to hold what a test needs.
class ACUCalibrationTest : public ::testing::Test {
  protected:
    void UseBench(const char* name, std::int32_t board = 0,
                  const std::vector<std::string>& faults = {}) {
        m_Bench = std::make_unique<TestBench>(name, faults);
        m_Board = &m_Bench->Detect(board);
    }
    void SetUp() override { UseBench("acu"); }

    void Put(std::int32_t address, std::int32_t word) { PutWord(*m_Board, address, word); }
    std::int32_t Word(std::int32_t address) {
        std::int32_t word = 0;
        m_Board->ReadEPROM(address, word);
        return word;
    }
    bool Read() { return Calibration().ReadEPROMValues(); }
    ACUCalibration& Calibration() { return m_Bench->TheStation.Calibration(); }
    const ACURecord& Record() { return Calibration().Record(); }
    const std::vector<Message>& Shown() { return m_Bench->Messages.Shown; }

    std::unique_ptr<TestBench> m_Bench;
    AIB* m_Board = nullptr;
};

TEST_F(ACUCalibrationTest, ReadsACalibratedUnit) {
    ASSERT_TRUE(Read());
    EXPECT_EQ(Record().ACUMFCNumber(), "M9200301A");
    EXPECT_EQ(Calibration().Unit().SerialNumberStr(), "ACU00301");
    EXPECT_FLOAT_EQ(Record().ChannelCapacity[0], 5000.0F);
    EXPECT_FLOAT_EQ(Record().ChannelCapacity[1], 200.0F);
    EXPECT_EQ(Record().VelocityCal[0].Demand[9], 62257);
    EXPECT_EQ(Record().VelocityCal[1].Demand, Record().VelocityCal[0].Demand);
    EXPECT_NEAR(Record().VelocityCal[1].M[8], 1.0F, 0.01F);
    EXPECT_EQ(Record().VelocityCal[2], ACUChannelCal{}) << "a channel without capacity";
    EXPECT_TRUE(Record().PressurePresent);
    EXPECT_FLOAT_EQ(Record().PressureScale, 1000.0F / 52427.2F);
    EXPECT_NEAR(Record().PressureOffset, -125.0F, 0.01F);
    EXPECT_NEAR(Record().PressureCoeff[0], 6553.4F, 0.1F);
    EXPECT_TRUE(Record().LastCalDone_Velocity_Audit().Passed);
    EXPECT_TRUE(Shown().empty());
}

TEST_F(ACUCalibrationTest, TheVersionDecidesWhetherThereIsARecord) {
    for (const std::int32_t version : {-1, 0, 3, 1, 4711}) {
        const bool initialised = version == 1 || version == 4711;
        Put(Map::DataVersion_USB, version);
        EXPECT_EQ(Read(), initialised) << version;
        EXPECT_EQ(Record().ACUInitialised, initialised) << version;
    }
}

TEST_F(ACUCalibrationTest, AFireWireBoardKeepsItsVersionElsewhere) {
    UseBench("pair", 1);
    EXPECT_TRUE(Read());
    Put(Map::DataVersion_FireWire, Map::AIBvMark);
    Put(Map::DataVersion_USB, 3);
    EXPECT_FALSE(Read());
    Put(Map::DataVersion_USB, 2);
    EXPECT_TRUE(Read());
    EXPECT_EQ(Record().ACUMFCNumber(), "M9200007E");
}

TEST_F(ACUCalibrationTest, AVersion1RecordHasNoPassedFlags) {
    Read();
    EXPECT_TRUE(Record().LastCalDone_Velocity_System().Passed);
    Put(Map::DataVersion_USB, 1);
    Read();
    EXPECT_FALSE(Record().LastCalDone_Velocity_System().Passed);
    EXPECT_FALSE(Record().LastCalDone_Velocity_Audit().Passed);
    EXPECT_TRUE(Record().LastCalDone_Pressure_System().Passed);
}

TEST_F(ACUCalibrationTest, AnUnsetCapacityAsksBeforeItInitialises) {
    for (const std::int32_t unset : {0, Bits(-1.0F), -1 /* erased: no number */}) {
        UseBench("acu");
        Put(Map::ChannelCapacity + 4, unset);
        m_Bench->Messages.Answers = {Answer::No};
        EXPECT_TRUE(Read());
        ASSERT_EQ(Shown().size(), 2U);
        EXPECT_EQ(Shown()[0].Text, "This ACU has not been initialised.\r\n\r\n"
                                   "Would you like to Initialise the EPROM now?");
        EXPECT_EQ(Shown()[1].Text, "There was an error reading the EPROM in the AIB");
        EXPECT_EQ(Word(Map::ChannelCapacity + 4), unset) << "nothing is written against a no";

        Read();
        EXPECT_EQ(m_Bench->Files.FilesIn(Paths::Backups).size(), 1U);
        EXPECT_EQ(Word(Map::ChannelCapacity), Bits(5000.0F));
        EXPECT_EQ(Word(Map::ChannelCapacity + 4), Bits(200.0F));
        EXPECT_EQ(Word(Map::CalibrationPoints), 10);
        EXPECT_EQ(Word(Map::HasSolenoidValves), -1);
    }
}

TEST_F(ACUCalibrationTest, TheQuestionBeforeAHeaderNamesWhatItReplaces) {
    for (const auto& [bench, board] : {std::pair("plain", 0), {"pair", 1}}) {
        UseBench(bench, board);
        const std::int32_t number = Word(Map::MFCNumber);
        Put(Map::ChannelCapacity + 4, 0);
        Put(Map::CalibrationPoints, 8);
        Put(Map::HasSolenoidValves, 0);
        Read();
        EXPECT_EQ(Shown().at(0).Text,
                  "This ACU has not been initialised.\r\n\r\n"
                  "Would you like to Initialise the EPROM now?\r\n\r\n"
                  "This changes in the EPROM:\r\n  Calibration points: 8 → 10\r\n"
                  "  Solenoid valves: no → yes");
        EXPECT_EQ(Word(Map::CalibrationPoints), 10);
        EXPECT_EQ(Word(Map::MFCNumber), number);
    }
}

TEST_F(ACUCalibrationTest, ACapacityThatWasReadWronglyCostsNoCalibration) {
    const std::int32_t capacity = Word(Map::ChannelCapacity + 4);
    const std::int32_t number = Word(Map::MFCNumber);
    Put(Map::ChannelCapacity + 4, 0);
    m_Bench->Messages.WhileAsked = [&](const Message& message) {
        if (message.Buttons == MessageButtons::YesNo)
            Put(Map::ChannelCapacity + 4, capacity); // what it has held all the time
    };
    Read();
    ASSERT_EQ(Shown().size(), 3U);
    EXPECT_NE(Shown()[1].Text.find("the link to the board is unsteady"), std::string::npos);
    EXPECT_EQ(Word(Map::MFCNumber), number) << "nothing is written";

    UseBench("acu", 0, {"status:2@ReadEEPROM"});
    Read();
    for (const Message& message : Shown())
        EXPECT_NE(message.Buttons, MessageButtons::YesNo) << "not known to be missing";
}

TEST_F(ACUCalibrationTest, NoCalibrationPointsAreAnError) {
    Put(Map::CalibrationPoints, 0);
    Read();
    ASSERT_EQ(Shown().size(), 2U);
    EXPECT_EQ(Shown()[0].Text, "Zero Calibration Points");
}

TEST_F(ACUCalibrationTest, WithoutAVelocityCalibrationNothingElseIsRead) {
    Put(Map::VelocitySystemDate, 0);
    Put(Map::VelocitySystemDate + 4, 0);
    Read();
    EXPECT_EQ(Record().VelocityCal[0], ACUChannelCal{});
    EXPECT_EQ(Record().LastCalDone_Velocity_Audit().CalDate, OleDate());
    EXPECT_EQ(Record().LastCalDone_Pressure_System().CalDate, OleDate());
    EXPECT_FLOAT_EQ(Record().PressureScale, 0.0F);
}

TEST_F(ACUCalibrationTest, AnUnknownSensorRangeIsToldAndReplaced) {
    Put(Map::MaxPressure, Bits(600.0F));
    Read();
    ASSERT_EQ(Shown().size(), 1U);
    EXPECT_EQ(Shown()[0].Text,
              "Un-recognised Pressure Value: 600\r\n\r\nUsing Default of 1000mBar");
    EXPECT_FLOAT_EQ(Record().MaxPressure, 1000.0F);
    Put(Map::MaxPressure, 0);
    Read();
    EXPECT_EQ(Shown().size(), 1U) << "0 is replaced silently";
    EXPECT_FLOAT_EQ(Record().MaxPressure, 1000.0F);
    Put(Map::PressureSystemDate, 0);
    Put(Map::PressureSystemDate + 4, 0);
    Read();
    EXPECT_FLOAT_EQ(Record().MaxPressure, 1000.0F) << "before any calibration too";
}

TEST_F(ACUCalibrationTest, AnErasedUserIsNobody) {
    Put(Map::VelocitySystemUser, -1);
    Read();
    EXPECT_EQ(Record().VelocitySystemUser, std::string(32, ' '));
}

TEST_F(ACUCalibrationTest, WritingTheWholeRecordStoresWhatWasRead) {
    Read();
    const std::string before = m_Bench->Bench.Board(0).Eprom().Image();
    for (std::int32_t address = 8; address < 1024; address += 4) {
        // Words that belong to no field must stay as they are.
        const bool isGap = (address >= 608 && address < 644) || address > 760 ||
                           (address > 36 && address < 48) || address == 12;
        if (!isGap)
            Put(address, 0x5A5A5A5A);
    }
    const AIB::EpromWriting writing(*m_Board);
    ACURecord record = Record();
    WriteEPROM(*m_Board, record, false);
    const std::string after = m_Bench->Bench.Board(0).Eprom().Image();
    // Beside the record's own fields: the unused demand areas of channels 1 to 3, the tables
    // of channels that do not exist, and the gap behind the velocity users.
    for (std::size_t address = 0; address < before.size(); address += 4) {
        const bool isUnused =
            (address >= 160 && address < 200) || (address >= 272 && address < 496) ||
            (address >= 584 && address < 600) || (address >= 732 && address < 748);
        if (!isUnused) {
            EXPECT_EQ(after.substr(address, 4), before.substr(address, 4)) << address;
        }
    }
}

TEST_F(ACUCalibrationTest, TheMFCNumberIsPaddedAndKeptAndNeverCut) {
    Read();
    EpromGuard guard(m_Bench->TheStation, "test");
    EXPECT_THROW(Calibration().SaveMFCNumber(guard, "m92-001 23Z and more"), std::invalid_argument);
    Calibration().SaveMFCNumber(guard, "m92-001 23Z");
    EXPECT_EQ(Word(Map::MFCNumber + 8), 0x205A3332) << "\"23Z \"";
    EXPECT_EQ(Record().MFCSerialNumber_Clean(), "9200123Z");
    Calibration().SaveMFCNumber(guard, "M1");
    Put(Map::MFCNumber, 0);
    Calibration().SaveMFCNumber(guard, "");
    EXPECT_EQ(Word(Map::MFCNumber), 0x2020314D) << "an empty number rewrites the present one";
    for (const std::int32_t word : {0, 4, 8})
        Put(Map::MFCNumber + word, -1);
    Read();
    EXPECT_EQ(Record().ACUMFCNumber(), "") << "erased";
    EXPECT_EQ(Record().NumberInNames(), "UNKNOWN");
}

TEST_F(ACUCalibrationTest, AnUncalibratedPressureStoresOnlyItsMark) {
    Read();
    const std::int32_t coefficient = Word(Map::PressureCoeff);
    const AIB::EpromWriting writing(*m_Board);
    ACURecord record = Record();
    WriteEPROM_PressureSystem(*m_Board, record, true);
    EXPECT_EQ(Word(Map::BaseDiameter), 0);
    EXPECT_EQ(Word(Map::PressureCoeff), coefficient);
}

TEST_F(ACUCalibrationTest, SummaryShowsWhatTheOperatorSees) {
    const ColouredText failed = ShowLastCalibration({OleDate(36526.5), "ME", false}, true);
    EXPECT_EQ(failed.Text, "01/01/2000 12:00 - ME");
    EXPECT_EQ(failed.TextColour, (Colour{255, 0, 0}));
    EXPECT_EQ(ShowLastCalibration({}, true).Text, "Never");
    EXPECT_EQ(ShowLastCalibration({}, true).TextColour, (Colour{128, 128, 128}));

    UseBench("fresh");
    EXPECT_EQ(ReadCalibrationSummary(Calibration()).ACUInitialised, false);
    EXPECT_TRUE(Shown().empty()) << "a blank unit is no reason for a message";
}

} // namespace
} // namespace ombrix
