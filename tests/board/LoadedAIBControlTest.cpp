#include "board/LoadedAIBControl.h"

#include "board/AIBList.h"
#include "support/TestBench.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace ombrix {
namespace {

struct BadLibrary {
    const char* File;
    const char* Told;
};
class BadLibraryTest : public ::testing::TestWithParam<BadLibrary> {};

TEST_P(BadLibraryTest, IsToldInACriticalBoxAndCountsAsNoBoards) {
    TestBench bench;
    LoadedAIBControl library(GetParam().File);
    AIBList list({library, bench.World});
    std::int32_t count = 5;
    EXPECT_FALSE(list.OpenAIBAPI(count));
    EXPECT_EQ(count, 0);
    ASSERT_EQ(bench.Messages.Shown.size(), 1U);
    const Message& told = bench.Messages.Shown.front();
    EXPECT_EQ(told.Icon, MessageIcon::Critical);
    EXPECT_EQ(told.Buttons, MessageButtons::Ok);
    EXPECT_TRUE(told.Title.empty());
    EXPECT_NE(told.Text.find(GetParam().Told), std::string::npos) << told.Text;
}

INSTANTIATE_TEST_SUITE_P(Libraries, BadLibraryTest,
                         ::testing::Values(BadLibrary{"libNoSuchAIBControl.so",
                                                      "File not found: libNoSuchAIBControl.so"},
                                           BadLibrary{INCOMPLETE_LIBRARY,
                                                      "lacks the function \"GetAccessoryInfo\""}));

TEST(BadLibraryFile, OneThatIsThereIsNotSaidToBeMissing) {
    TestBench bench;
    const std::string sound = ReadWholeFile(INCOMPLETE_LIBRARY);
    const auto with = [&sound](std::size_t at, char byte) {
        std::string content = sound;
        content.at(at) = byte;
        return content;
    };
    for (const auto& [content, told] : {std::pair{std::string("#!/bin/sh\n"), "is no library"},
                                        {"", "is no library"},
                                        {with(18, '\x7F'), "is made for another kind of computer"},
                                        {with(4, '\x01'), "is made for another kind of computer"},
                                        {sound.substr(0, 100), "cannot be loaded"}}) {
        const std::string file = (bench.Folder.Path() / "libBad.so").string();
        ReplaceWholeFile(file, content);
        try {
            LoadedAIBControl(file).OpenAIBAPI();
            ADD_FAILURE() << told;
        } catch (const AIBLibraryError& error) {
            EXPECT_EQ(error.Number(), AIBLibraryError::NotLoadable);
            EXPECT_TRUE(std::string(error.what())
                            .starts_with(fmt::format("The board library {} {}.\r\n\r\n{}: ", file,
                                                     told, file)))
                << error.what();
        }
    }
}

} // namespace
} // namespace ombrix
