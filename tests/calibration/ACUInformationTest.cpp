#include "calibration/ACUInformation.h"

#include "calibration/CalibrationBench.h"
#include "calibration/MeasuredChannels.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class Information {
  public:
    explicit Information(const std::string& bench, const std::vector<std::string>& faults = {},
                         std::int32_t board = 0)
        : Bench(bench, faults, board), Board(Bench.Board) {}
    WorkbookProbe Made() {
        const WorkbookOutcome outcome = OutputACUData(Bench.Services, Board);
        Name = outcome.File.value().filename();
        return ProbeOf(outcome.File);
    }

    CalibrationBench Bench;
    clsAIB& Board;
    std::string Name;
};

TEST(ACUInformation, ShowsBoardAndRecord) {
    Information information("acu");
    WorkbookProbe book = information.Made();
    const ACURecord& record = information.Board.Calibration().Record();
    EXPECT_EQ(information.Name, "ACU_Information_ACU00301.xls");
    EXPECT_EQ(book.Value("ACU", "I4"), "Ombrix");
    EXPECT_EQ(book.Value("ACU", "C5"), "USB");
    EXPECT_EQ(book.Value("ACU", "C8"), "301");
    EXPECT_EQ(book.Value("ACU", "I10"), "2");
    EXPECT_EQ(book.Value("ACU", "I11"), "Yes");
    EXPECT_EQ(book.Value("ACU", "C14"), "Yes");
    EXPECT_NEAR(std::stod(book.Value("ACU", "C15")), record.m_VelocitySystemDate.Days(), 1e-6);
    EXPECT_EQ(book.NumberFormat("ACU", "C15"), "yyyy-mm-dd hh:mm:ss");
    EXPECT_EQ(book.Value("ACU", "C19"), "QUILLON");
    EXPECT_EQ(book.Value("ACU", "D35"), "200");
    EXPECT_EQ(std::stof(book.Value("ACU", "C24")), record.m_VelocityCal[0].M[0]);
    EXPECT_EQ(std::stof(book.Value("ACU", "D45")), record.m_VelocityCal[1].C[8]);
    EXPECT_EQ(book.Value("ACU", "E32"), "52427") << "the demand of point 9 of 10";
    EXPECT_EQ(book.Value("ACU", "I20"), "4");
    EXPECT_EQ(book.Value("ACU", "L15"), "1000");
    EXPECT_EQ(book.Value("ACU", "K24"), "Yes");
    EXPECT_EQ(std::stof(book.Value("ACU", "L29")), record.m_PressureCoeff[2]);
}

TEST(ACUInformation, DumpsEveryWordOfTheEprom) {
    Information information("acu");
    const std::vector<std::int32_t> words = information.Bench.Eprom();
    WorkbookProbe book = information.Made();
    constexpr std::size_t rows = 128;
    std::size_t first = 0;
    for (const char* column : {"F", "L", "R", "X"}) {
        for (const std::size_t row : {0U, 1U, 77U, 127U})
            EXPECT_EQ(book.Value("EPROM", column + std::to_string(5 + row)),
                      std::to_string(words.at(first + row)))
                << column << row;
        first += rows;
    }
    EXPECT_EQ(book.Value("EPROM", "C7"), "EPROM Data Version (USB)");
    EXPECT_EQ(book.Value("EPROM", "C9"), "Channel 1 capacity") << "address 16";
    EXPECT_EQ(book.Value("EPROM", "I5"), "Velocity system passed") << "address 512";
}

TEST(ACUInformation, AFreshUnitWasNeverCalibrated) {
    Information information("fresh");
    information.Board.Calibration().Init_VelocityHeader();
    information.Board.Calibration().ReadEPROMValues(information.Board);
    WorkbookProbe book = information.Made();
    for (const char* address : {"C15", "C18", "I15", "I18"})
        EXPECT_EQ(book.Value("ACU", address), "Never") << address;
    EXPECT_EQ(book.Value("ACU", "C14"), "No");
    EXPECT_EQ(book.Value("ACU", "L14"), "No");
    EXPECT_EQ(book.Value("ACU", "L15"), "") << "a sensor that is not there has no scale";
    EXPECT_EQ(book.Value("ACU", "J24"), "");
}

TEST(ACUInformation, AFireWireBoardKeepsItsVersionInTheFirstWord) {
    Information information("pair", {}, 1);
    WorkbookProbe book = information.Made();
    EXPECT_EQ(book.Value("EPROM", "C5"), "EPROM Data Version (FireWire)");
    EXPECT_EQ(book.Value("EPROM", "C6"), "-");
}

TEST(ACUInformation, ARecordOfRandomBitsGivesNoErrorCells) {
    Information information("acu");
    // An infinite slope, a date of no calendar.
    information.Board.WriteEPROM(88, 0x7F800000);
    information.Board.WriteEPROM(500, 0x7FEFFFFF);
    information.Board.Calibration().ReadEPROMValues(information.Board);
    WorkbookProbe book = information.Made();
    EXPECT_EQ(book.Value("ACU", "C24"), "(no number)");
    EXPECT_EQ(book.Value("ACU", "C15"), "(no date)");
}

TEST(ACUInformation, WordsThatCannotBeReadStayEmptyAndAreCounted) {
    Information information("acu", {"status:2@ReadEEPROM"});
    WorkbookProbe book = information.Made();
    EXPECT_EQ(book.Value("EPROM", "F5"), "");
    EXPECT_EQ(information.Bench.Told().front(),
              "512 of the 512 words of the EPROM could not be read. Their cells are empty.");
}

} // namespace
} // namespace ombrix
