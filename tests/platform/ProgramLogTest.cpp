#include "platform/os/ProgramLog.h"

#include "board/procedure/DrivingProcedure.h"
#include "platform/text/Paths.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

namespace ombrix {
namespace {

std::string Log(const TestBench& bench) {
    return bench.Files.ReadFile(LogPath(bench.Time));
}

TEST(ProgramLog, OldLogsGoAndTheLastLinesAreThoseOfTheTwoNewest) {
    TestBench bench; // 15 March 2024
    bench.Files.CreateFolder(Paths::Logs);
    for (const char* name : {"ombrix_20231231.log", "ombrix_20240114.log", "ombrix_20240115.log",
                             "ombrix_20240314.log", "ombrix_20240315.log", "ombrix_notes.txt"})
        bench.Files.ReplaceFile(std::string(Paths::Logs) + name, std::string(name) + "\nsecond\n");
    RemoveOldLogs(bench.World);
    EXPECT_EQ(bench.Files.FilesIn(Paths::Logs),
              (std::vector<std::string>{"ombrix_20240115.log", "ombrix_20240314.log",
                                        "ombrix_20240315.log", "ombrix_notes.txt"}));
    EXPECT_EQ(LastLogLines(bench.Files, 3), "second\nombrix_20240315.log\nsecond\n");
    EXPECT_EQ(LastLogLines(bench.Files, 2000),
              "ombrix_20240314.log\nsecond\nombrix_20240315.log\nsecond\n");
}

TEST(ProgramLog, WhatIsShownIsNotedWithItsAnswer) {
    TestBench bench;
    LoggedOperator messages(bench.Messages, bench.World);
    messages.Ask({"Write it?\r\n\r\nReally?", MessageIcon::Warning, MessageButtons::YesNo});
    messages.AskText("Number:", "301", "");
    const std::string log = Log(bench);
    for (const char* line : {"Warning: Write it? |  | Really?\n", "Answer: Yes\n",
                             "Question: Number:\n", "Answer: \"301\"\n"})
        EXPECT_NE(log.find(line), std::string::npos) << line << log;
}

TEST(ProgramLog, ProceduresAreNotedWithTheirOutcome) {
    struct Case {
        std::function<bool()> Body;
        const char* Line;
    };
    for (const Case& c : {Case{[] { return true; }, "The sweep: completed"},
                          Case{[] { return false; }, "The sweep: cancelled"},
                          Case{[]() -> bool { throw DriveError("full"); }, "not stored: full"},
                          Case{[]() -> bool { throw std::runtime_error("!"); }, "failed: !"},
                          Case{[]() -> bool { throw ProgramEnded{}; }, "left by an error"}}) {
        TestBench bench;
        Outcome outcome;
        try {
            RunBenchProcedure(bench.TheStation, "sweep", {}, outcome, c.Body);
        } catch (const ProgramEnded&) {
            EXPECT_STREQ(c.Line, "left by an error");
        }
        EXPECT_NE(Log(bench).find("The sweep: begun\n"), std::string::npos);
        EXPECT_NE(Log(bench).find(c.Line), std::string::npos) << Log(bench);
    }
}

} // namespace
} // namespace ombrix
