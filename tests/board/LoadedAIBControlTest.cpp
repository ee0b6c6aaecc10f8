#include "board/LoadedAIBControl.h"

#include "board/AIBList.h"
#include "support/TestBench.h"

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

} // namespace
} // namespace ombrix
