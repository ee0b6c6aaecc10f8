#include "board/eprom/EpromGuard.h"

#include "board/eprom/PartialWrite.h"
#include "platform/os/ProgramLog.h"
#include "platform/text/Paths.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

class EpromGuardTest : public ::testing::Test {
  protected:
    void Use(const std::vector<std::string>& faults) {
        m_Bench = std::make_unique<TestBench>("acu", faults);
        m_Bench->Detect();
        m_Before = Image();
    }
    void SetUp() override { Use({}); }

    std::string Image() { return m_Bench->Bench.Board(0).Eprom().Image(); }
    std::string File(const std::string& path) { return m_Bench->Files.ReadFile(path); }
    std::string Log() { return File(LogPath(m_Bench->Time)); }
    std::vector<std::string> Backups() { return m_Bench->Files.FilesIn(Paths::Backups); }
    void WriteCapacity(EpromGuard& guard) {
        EpromWords words;
        std::int32_t address = 16;
        words.WriteEPROMSng(address, 4000.0F);
        guard.Write(words);
    }
    static EpromWords SpareWord() {
        EpromWords words;
        words.WriteEPROM(1040, 5);
        return words;
    }

    std::unique_ptr<TestBench> m_Bench;
    std::string m_Before;
};

TEST_F(EpromGuardTest, AProcedureSavesTheContentOnceAndLogsWhatItChanges) {
    EXPECT_THROW(m_Bench->TheStation.CurrentAIB->WriteEPROM(1040, 5), std::logic_error);
    EpromGuard guard(m_Bench->TheStation, "Left/Right: \"new\"");
    WriteCapacity(guard);
    guard.Write(SpareWord());
    ASSERT_EQ(Backups(),
              std::vector<std::string>{"ACU00301_20240315_140509_Left_Right_ _new_.bin"});
    EXPECT_EQ(File(Paths::Backups + Backups()[0]), m_Before);
    EXPECT_NE(Log().find("EPROM 16 Channel 1 capacity: 5000 → 4000\n"), std::string::npos) << Log();
    EXPECT_NE(Log().find("EPROM 1040: -1 → 5\n"), std::string::npos) << Log();
    EpromGuard(m_Bench->TheStation, "Left/Right: \"new\"").MakeReady();
    ASSERT_EQ(Backups().size(), 2U);
    EXPECT_EQ(File(Paths::Backups + Backups()[0]), Image()); // "… (2).bin" sorts first
    m_Bench->Bench.Board(0).SetIdentity(1, 302);
    EXPECT_THROW(WriteCapacity(guard), EpromError) << "exchanged during the procedure";
}

TEST_F(EpromGuardTest, ABoardThatDoesNotHoldWhatWasWrittenIsFoundOut) {
    Use({"eprom-flip"});
    EpromGuard guard(m_Bench->TheStation, "test");
    try {
        WriteCapacity(guard);
        FAIL() << "not found out";
    } catch (const EpromMismatch& mismatch) {
        ASSERT_EQ(mismatch.Words().size(), 1U);
        EXPECT_EQ(mismatch.Words()[0].Address, 16);
        EXPECT_NE(std::string(mismatch.what())
                      .find("16 Channel 1 capacity: 4000 written, 4000.0002 read"),
                  std::string::npos)
            << mismatch.what();
    }
    EXPECT_NE(Log().find("EPROM reads back wrong: 16 Channel 1 capacity"), std::string::npos);
}

TEST_F(EpromGuardTest, WorkThatIsBrokenOffIsLoggedAndPassedOn) {
    EpromGuard guard(m_Bench->TheStation, "test");
    EpromWords words = SpareWord();
    words.WriteEPROM(1044, 6);
    EXPECT_THROW(guard.Write(words,
                             [](std::int32_t address) {
                                 if (address > 1040)
                                     throw std::runtime_error("broken off");
                                 return true;
                             }),
                 std::runtime_error);
    EXPECT_NE(Log().find("EPROM 1040: -1 → 5\n"), std::string::npos);
}

TEST_F(EpromGuardTest, AnEpromWrittenInPartIsNotedUntilItIsWhole) {
    const auto noted = [this] { return FindPartialWrite(m_Bench->World, 301); };
    const auto write = [this](const char* purpose, const EpromWords& words, int longest = 512) {
        EpromGuard(m_Bench->TheStation, purpose).Write(words, [&](std::int32_t /*address*/) {
            return longest-- > 0;
        });
    };
    EpromWords words = SpareWord();
    words.WriteEPROM(1044, 6);
    write("first", words, 1);
    ASSERT_TRUE(noted());
    EXPECT_EQ(noted()->Purpose, "first");
    EXPECT_EQ(ReadWholeFile(noted()->Backup), m_Before);
    write("another", SpareWord());
    EXPECT_TRUE(noted()) << "one of its words has not been written";
    write("again", words);
    EXPECT_FALSE(noted());

    EpromGuard setUp(m_Bench->TheStation, "set-up");
    setUp.KeepOpen();
    WriteCapacity(setUp);
    EXPECT_TRUE(noted()) << "there is more to come";
    EXPECT_TRUE(setUp.PutBack());
    EXPECT_FALSE(noted());

    Use({"eprom-readonly"});
    EXPECT_THROW(write("refused", words), EpromMismatch);
    EXPECT_FALSE(noted()) << "nothing has been changed";
}

struct Trouble {
    const char* Name;
    const char* Fault;
    std::function<void(TestBench&, BoardClaims& other)> Before;
    const char* Reason;
    const char* Remedy;
};
class RefusalTest : public EpromGuardTest, public ::testing::WithParamInterface<Trouble> {};

TEST_P(RefusalTest, NamesReasonAndRemedyAndWritesNothing) {
    const Trouble& trouble = GetParam();
    Use({trouble.Fault});
    m_Bench->World.Program = {"ombrix", "1.2.3", "bench7", 4711};
    BoardClaims other(m_Bench->World);
    trouble.Before(*m_Bench, other);
    EpromGuard guard(m_Bench->TheStation, "test");
    try {
        WriteCapacity(guard);
        FAIL() << "not refused";
    } catch (const EpromError& error) {
        const std::string text = error.what();
        EXPECT_NE(text.find(trouble.Reason), std::string::npos) << text;
        EXPECT_NE(text.find(trouble.Remedy), std::string::npos) << text;
    }
    EXPECT_EQ(Image(), m_Before);
    EXPECT_TRUE(Backups().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Troubles, RefusalTest,
    ::testing::Values(
        Trouble{"OtherProgram", "no-air", [](TestBench&, BoardClaims& other) { other.Claim(301); },
                "is in use by ombrix, process 4711 on bench7", "end it"},
        Trouble{"OtherBoard", "no-air",
                [](TestBench& bench, BoardClaims&) { bench.Bench.Board(0).SetIdentity(1, 302); },
                "reports serial number 302 now; it was detected with 301", "detect the boards"},
        Trouble{"NoBoard", "unplug@5",
                [](TestBench& bench, BoardClaims&) { bench.Time.Advance(6.0); },
                "detected with serial number 301, reports none now", "detect the boards"},
        Trouble{"UnsteadyLink", "eprom-unsteady", [](TestBench&, BoardClaims&) {},
                "The link to the board is unsteady", "check the cable"}),
    [](const auto& info) { return info.param.Name; });

TEST_F(EpromGuardTest, ABoardWithoutASerialNumberIsForItsIdentityAlone) {
    m_Bench->Bench.Board(0).SetIdentity(1, 0);
    m_Bench->Detect();
    EXPECT_THROW(EpromGuard(m_Bench->TheStation, "test").MakeReady(), EpromError);
    EpromGuard(m_Bench->TheStation, "test", EpromGuard::Identity::MayBeMissing).MakeReady();
    EXPECT_EQ(Backups().size(), 1U);
}

TEST(EpromFields, DifferencesAreShownAsTheFieldsAreMeant) {
    struct Case {
        std::int32_t Address;
        std::vector<std::int32_t> Old;
        std::vector<std::int32_t> New;
        const char* Text;
    };
    for (const Case& c : std::vector<Case>{
             {8, {2}, {1}, "8 Data version: 2 → 1"},
             {1040, {-1}, {7}, "1040: -1 → 7"},
             {20, {-1}, {0x43480000}, "20 Channel 2 capacity: (erased) → 200"},
             {24,
              {0x7F800001},
              {0x7F800000},
              "24 Channel 3 capacity: (no number) (0x7F800001) → (no number) (0x7F800000)"},
             {496,
              {0, 0x40E1D5C0},
              {0, 0},
              "496 Velocity system date: 01/01/2000 00:00:00 → never"},
             {1024,
              {0x4D202020, 0x20202020, 0x20202020},
              {0x0000324D, -1, -1},
              "1024 MFC number: \"   M\" → \"M2\""}}) {
        EpromImage before;
        EpromImage after;
        for (std::size_t word = 0; word < c.Old.size(); ++word) {
            const std::int32_t address = c.Address + 4 * static_cast<std::int32_t>(word);
            before.SetWord(address, c.Old[word]);
            after.SetWord(address, c.New[word]);
        }
        const auto differences = EpromDifferences(before, after);
        ASSERT_EQ(differences.size(), 1U) << c.Text;
        EXPECT_EQ(DifferenceText(differences[0]), c.Text);
    }
}

} // namespace
} // namespace ombrix
