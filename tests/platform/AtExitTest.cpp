#include "platform/os/ProgramStop.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace ombrix {
namespace {

void SayOff() {
    std::fputs("off", stderr);
}

[[noreturn]] void ExitDeepInTheProgram() {
    const AtExit hook(SayOff);
    std::exit(1);
}

[[noreturn]] void ExitOnceItWasLeft() {
    { const AtExit hook(SayOff); }
    std::exit(0);
}

TEST(AtExit, AnExitThatUnwindsNothingCarriesItOutUnlessItWasLeftBefore) {
    EXPECT_EXIT(ExitDeepInTheProgram(), ::testing::ExitedWithCode(1), "^off$");
    EXPECT_EXIT(ExitOnceItWasLeft(), ::testing::ExitedWithCode(0), "^$");
}

} // namespace
} // namespace ombrix
