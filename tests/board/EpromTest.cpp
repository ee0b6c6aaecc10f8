#include "board/AIB.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class EpromTest : public ::testing::Test {
  protected:
    TestBench m_Bench{"fresh"};
    AIB& m_Board = m_Bench.Detect();
    AIB::EpromWriting m_Writing{m_Board};

    std::int32_t Word(std::int32_t address) {
        std::int32_t word = 0;
        m_Board.ReadEPROM(address, word);
        return word;
    }
};

TEST_F(EpromTest, EncodingsAreThoseOfUnitsInTheField) {
    std::int32_t address = 100;
    m_Board.WriteEPROMSng(address, 1.5F);
    EXPECT_EQ(address, 104);
    EXPECT_EQ(Word(100), 1069547520);
    m_Board.WriteEPROMDate(address, OleDate(36526.0));
    EXPECT_EQ(address, 112);
    EXPECT_EQ(Word(104), 0);
    EXPECT_EQ(Word(108), 0x40E1D5C0);
    m_Board.WriteEPROMString(address, "AB€", 8);
    EXPECT_EQ(address, 120);
    EXPECT_EQ(Word(112), 0x00804241);
    EXPECT_EQ(Word(116), 0);
}

struct TextCase {
    std::int32_t Length;
    std::int32_t Words;
};

TEST_F(EpromTest, TextsTakeWholeWords) {
    for (const auto& [length, words] :
         {TextCase{0, 0}, TextCase{12, 3}, TextCase{13, 4}, TextCase{32, 8}}) {
        std::int32_t address = 0;
        m_Board.WriteEPROMString(address, "text", length);
        EXPECT_EQ(address, 4 * words) << length;
        std::string text;
        address = 0;
        m_Board.ReadEPROMString(address, text, length);
        EXPECT_EQ(address, 4 * words) << length;
        EXPECT_EQ(text, length == 0 ? "" : "text");
    }
}

TEST_F(EpromTest, ErasedFieldsReadAsTheyShould) {
    std::int32_t address = 0;
    OleDate date(1.0);
    m_Board.ReadEPROMDate(address, date);
    EXPECT_EQ(date, OleDate());
    m_Board.WriteEPROM(4, 0x40E1D5C0);
    address = 0;
    m_Board.ReadEPROMDate(address, date);
    EXPECT_EQ(date, OleDate(36526.0)) << "only the erased half counts as 0";
    std::string text;
    m_Board.ReadEPROMString(address, text, 3);
    EXPECT_EQ(text, "ÿÿÿ");
}

TEST(EpromFaults, TheAddressAdvancesPastWhatCouldNotBeTransferred) {
    TestBench bench("fresh", {"status:32@WriteEEPROM", "status:3@ReadEEPROM"});
    AIB& board = bench.Detect();
    const AIB::EpromWriting writing(board);
    std::int32_t address = 100;
    EXPECT_EQ(board.WriteEPROMLng(address, 1), 32);
    EXPECT_EQ(address, 104);
    OleDate date(7.0);
    EXPECT_EQ(board.ReadEPROMDate(address, date), 3);
    EXPECT_EQ(address, 112);
    EXPECT_EQ(date, OleDate());
    std::string text;
    EXPECT_EQ(board.ReadEPROMString(address, text, 12), 0);
    EXPECT_EQ(address, 124);
}

} // namespace
} // namespace ombrix
