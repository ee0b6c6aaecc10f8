#include "calibration/report/ACUInformation.h"

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
        const InformationReport report = OutputACUData(Bench.Reports);
        Name = report.File.value().filename();
        return ProbeOf(report.File);
    }

    CalibrationBench Bench;
    AIB& Board;
    std::string Name;
};

TEST(ACUInformation, ShowsBoardAndRecord) {
    Information information("acu");
    WorkbookProbe book = information.Made();
    const ACURecord& record = information.Bench.Record().Record();
    EXPECT_EQ(information.Name, "ACU_Information_ACU00301.xls");
    // E32: the demand of point 9 of 10.
    EXPECT_EQ(
        Cells(book, "ACU",
              {"I4", "C5", "C8", "I10", "I11", "C14", "C19", "D35", "E32", "I20", "L15", "K24"}),
        (std::vector<std::string>{"Ombrix", "USB", "301", "2", "Yes", "Yes", "QUILLON", "200",
                                  "52427", "4", "1000", "Yes"}));
    EXPECT_NEAR(std::stod(book.Value("ACU", "C15")), record.VelocitySystemDate.Days(), 1e-6);
    EXPECT_EQ(book.NumberFormat("ACU", "C15"), "yyyy-mm-dd hh:mm:ss");
    EXPECT_EQ(std::stof(book.Value("ACU", "C24")), record.VelocityCal[0].M[0]);
    EXPECT_EQ(std::stof(book.Value("ACU", "D45")), record.VelocityCal[1].C[8]);
    EXPECT_EQ(std::stof(book.Value("ACU", "L29")), record.PressureCoeff[2]);
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
    // The words at addresses 8, 16 and 512.
    EXPECT_EQ(Cells(book, "EPROM", {"C7", "C9", "I5"}),
              (std::vector<std::string>{"EPROM Data Version (USB)", "Channel 1 capacity",
                                        "Velocity system passed"}));
}

TEST(ACUInformation, AFreshUnitWasNeverCalibrated) {
    Information information("fresh");
    EpromGuard guard(information.Bench.Bench.TheStation, "test");
    information.Bench.Record().SaveFreshHeader(guard);
    information.Bench.Record().ReadEPROMValues();
    WorkbookProbe book = information.Made();
    // L15: a sensor that is not there has no scale.
    EXPECT_EQ(Cells(book, "ACU", {"C15", "C18", "I15", "I18", "C14", "L14", "L15", "J24"}),
              (std::vector<std::string>{"Never", "Never", "Never", "Never", "No", "No", "", ""}));
}

TEST(ACUInformation, AFireWireBoardKeepsItsVersionInTheFirstWord) {
    Information information("pair", {}, 1);
    WorkbookProbe book = information.Made();
    EXPECT_EQ(book.Value("EPROM", "C5"), "EPROM Data Version (FireWire)");
}

TEST(ACUInformation, ARecordOfRandomBitsGivesNoErrorCells) {
    Information information("acu");
    // An infinite slope, a date of no calendar.
    PutWord(information.Board, 88, 0x7F800000);
    PutWord(information.Board, 500, 0x7FEFFFFF);
    information.Bench.Record().ReadEPROMValues();
    WorkbookProbe book = information.Made();
    EXPECT_EQ(book.Value("ACU", "C24"), "(no number)");
    EXPECT_EQ(book.Value("ACU", "C15"), "(no date)");
}

TEST(ACUInformation, WordsThatCannotBeReadStayEmptyAndAreCounted) {
    Information information("acu", {"status:2@ReadEEPROM"});
    WorkbookProbe book = information.Made();
    EXPECT_EQ(book.Value("EPROM", "F5"), "");
    EXPECT_EQ(Cells(book, "ACU", {"I10", "I11", "C14", "C15", "E32"}), std::vector<std::string>(5));
    EXPECT_EQ(information.Bench.Told().front(),
              "512 of the 512 words of the EPROM could not be read. Their cells, and those of the "
              "ACU's record, are empty.");
}

} // namespace
} // namespace ombrix
