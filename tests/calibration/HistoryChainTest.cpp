#include "calibration/history/HistoryChain.h"

#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <functional>

namespace ombrix {
namespace {

using ChainLines = std::vector<std::string>;

ChainLines LinesOf(const std::string& text) {
    ChainLines lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size() - 1);
        lines.push_back(text.substr(at, end + 1 - at));
        at = end + 1;
    }
    return lines;
}

/// A history of an earlier version with one line, then four of a chain.
class HistoryChainTest : public testing::Test {
  protected:
    HistoryChainTest() {
        m_Bench.Files.CreateFolder(R"(C:\History\)");
        m_Bench.Files.ReplaceFile(HistoryPath(301), "{\"when\":\"2025-01-01\"}\n");
        for (int run = 1; run <= 4; ++run)
            Append(run);
        m_Head = m_Bench.Files.ReadFile(R"(C:\History\ACU00301.head)");
    }

    void Append(int run) {
        AppendToChain(m_Bench.Files, m_Bench.Time, 301, {{"run", run}, {"verdict", "passed"}});
    }
    std::string Text() const { return m_Bench.Files.ReadFile(HistoryPath(301)); }
    ChainCheck Check() const { return CheckChain(m_Bench.Files, 301); }
    void Edit(const std::function<void(ChainLines&)>& edit) {
        ChainLines lines = LinesOf(Text());
        edit(lines);
        std::string text;
        for (const std::string& line : lines)
            text += line;
        m_Bench.Files.ReplaceFile(HistoryPath(301), text);
    }

    TestBench m_Bench;
    /// As it was after the four.
    std::string m_Head;
};

TEST_F(HistoryChainTest, NamesTheFirstLineThatWasChangedRemovedOrPutIn) {
    const ChainCheck whole = Check();
    EXPECT_EQ(whole.FirstBroken, std::nullopt) << whole.Reason;
    EXPECT_EQ(whole.Records, 4);
    EXPECT_EQ(whole.Unchained, 1);
    struct Forgery {
        const char* What;
        std::function<void(ChainLines&)> Edit;
        int FirstBroken;
    };
    const auto at = [](ChainLines& lines, int index) { return lines.begin() + index; };
    const std::vector<Forgery> forgeries = {
        {"a verdict", [](auto& l) { l[2].replace(l[2].find("passed"), 6, "failed"); }, 2},
        {"a line from before the chain",
         [](auto& l) { l[0].replace(l[0].find("2025"), 4, "2024"); }, 1},
        {"a removed line from before the chain", [&](auto& l) { l.erase(at(l, 0)); }, 1},
        {"the first removed", [&](auto& l) { l.erase(at(l, 1)); }, 1},
        {"one removed in the middle", [&](auto& l) { l.erase(at(l, 3)); }, 3},
        {"the last removed", [](auto& l) { l.pop_back(); }, 4},
        {"all removed", [](auto& l) { l.clear(); }, 1},
        {"one put in", [&](auto& l) { l.insert(at(l, 3), "{\"run\":9}\n"); }, 3},
        {"one put in at the end", [](auto& l) { l.push_back("{\"run\":9}\n"); }, 5},
        {"one doubled", [&](auto& l) { l.insert(at(l, 3), l[2]); }, 3},
        {"two exchanged", [](auto& l) { std::swap(l[2], l[3]); }, 2},
        {"a fingerprint removed", [](auto& l) { l[4] = "{\"run\":4}\n"; }, 4},
        {"a fingerprint changed", [](auto& l) { l[3][l[3].size() - 5] ^= 1; }, 3},
    };
    const std::string text = Text();
    for (const Forgery& forgery : forgeries) {
        m_Bench.Files.ReplaceFile(HistoryPath(301), text);
        m_Bench.Files.ReplaceFile(R"(C:\History\ACU00301.head)", m_Head);
        Edit(forgery.Edit);
        const ChainCheck check = Check();
        EXPECT_EQ(check.FirstBroken, forgery.FirstBroken) << forgery.What << ": " << check.Reason;
        EXPECT_FALSE(check.Reason.empty()) << forgery.What;
        Append(5); // goes on, and mends nothing
        EXPECT_EQ(Check().FirstBroken.value_or(0), std::min(forgery.FirstBroken, 5))
            << forgery.What;
    }
}

TEST_F(HistoryChainTest, AHistoryMadeAgainIsNotTheOneThatWasWritten) {
    m_Bench.Files.RemoveFile(HistoryPath(301));
    m_Bench.Files.RemoveFile(R"(C:\History\ACU00301.head)");
    for (int run = 1; run <= 5; ++run)
        Append(10 * run);
    EXPECT_EQ(Check().FirstBroken, std::nullopt) << "history and head together hold";
    m_Bench.Files.ReplaceFile(R"(C:\History\ACU00301.head)", m_Head);
    EXPECT_EQ(Check().FirstBroken, 4);
    Append(60);
    EXPECT_EQ(Check().FirstBroken, 4) << "another run mends nothing";
}

TEST_F(HistoryChainTest, WhatACrashHasCutOffLeavesAChainThatVerifies) {
    const std::string text = Text();
    const std::string last = LinesOf(text).back();
    for (const std::size_t kept : {std::size_t{1}, last.size() / 2, last.size() - 3}) {
        m_Bench.Files.ReplaceFile(HistoryPath(301), text + last.substr(0, kept));
        m_Bench.Files.ReplaceFile(R"(C:\History\ACU00301.head)", m_Head);
        EXPECT_EQ(Check().FirstBroken, std::nullopt) << kept << Check().Reason;
        Append(5);
        EXPECT_EQ(Check().FirstBroken, std::nullopt) << kept << Check().Reason;
        EXPECT_EQ(Check().Records, 5);
    }
    m_Bench.Files.ReplaceFile(R"(C:\History\ACU00301.head)", m_Head);
    m_Bench.Files.ReplaceFile(HistoryPath(301), text.substr(0, text.size() - 1));
    Append(5);
    EXPECT_EQ(Check().Records, 5) << "only the end of the line was missing";
}

TEST_F(HistoryChainTest, AnotherProgramThatKeepsWritingIsAnError) {
    const auto held = m_Bench.Files.TryLock(R"(C:\History\writing.lock)", "");
    ASSERT_NE(held, nullptr);
    EXPECT_THROW(Append(5), DriveError);
    EXPECT_EQ(Check().Records, 4);
}

} // namespace
} // namespace ombrix
