// What the program relies on of every board library: the loaded one, in the program or in a host,
// and the simulated bench.
#include "board/HostedAIBControl.h"
#include "board/LoadedAIBControl.h"
#include "platform/os/Clocks.h"
#include "platform/os/FolderDrive.h"
#include "simulator/SimulatedBench.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace ombrix {
namespace {

struct LibraryUnderTest {
    const char* Name;
    std::function<std::unique_ptr<AIBControl>(Clock&)> Make;
};

class AIBControlContract : public ::testing::TestWithParam<LibraryUnderTest> {
  protected:
    VirtualClock m_Clock;
    std::unique_ptr<AIBControl> m_Library = GetParam().Make(m_Clock);

    void SetUp() override { ASSERT_EQ(m_Library->OpenAIBAPI(), 1); }
};

TEST_P(AIBControlContract, TellsTheIdentity) {
    AccessoryInfoBlock record;
    EXPECT_EQ(m_Library->GetAccessoryInfo(0, record), Status::NoError);
    const AccessoryInfo info = Decode(record);
    EXPECT_EQ(info.BusType, 1);
    EXPECT_EQ(info.DevSerialNum, 301);
    EXPECT_EQ(info.Vendor.substr(0, 9), "Simulated");
    EXPECT_EQ(info.BuildDate.size(), 256U);
}

TEST_P(AIBControlContract, KeepsRegistersAndWords) {
    std::int32_t value = 0;
    EXPECT_EQ(m_Library->WriteReg(0, 16, 0x1234), Status::NoError);
    EXPECT_EQ(m_Library->ReadReg(0, 16, value), Status::NoError);
    EXPECT_EQ(value, 0x1234);
    for (const std::int32_t address : {0, 1024, 2044}) {
        EXPECT_EQ(m_Library->WriteEEPROM(0, address, -5 - address), Status::NoError);
        EXPECT_EQ(m_Library->ReadEEPROM(0, address, value), Status::NoError);
        EXPECT_EQ(value, -5 - address);
    }
}

TEST_P(AIBControlContract, RefusesWhatThereIsNot) {
    std::int32_t value = 77;
    EXPECT_NE(m_Library->ReadEEPROM(0, 2048, value), Status::NoError);
    EXPECT_NE(m_Library->ReadEEPROM(0, 2, value), Status::NoError);
    EXPECT_NE(m_Library->GetADC(0, 4, value), Status::NoError);
    EXPECT_NE(m_Library->GetGPI(0, 20, value), Status::NoError);
    EXPECT_NE(m_Library->ReadReg(1, 16, value), Status::NoError);
    EXPECT_NE(m_Library->UploadFPGAImage(0, "/no/such/file"), Status::NoError);
    EXPECT_EQ(value, 77);
}

TEST_P(AIBControlContract, PinsFollowTheirDirection) {
    std::int32_t level = 0;
    EXPECT_EQ(m_Library->ConfigureGPIO(0, 0b1000), Status::NoError);
    EXPECT_EQ(m_Library->SetGPO(0, 3), Status::NoError);
    m_Library->GetGPI(0, 3, level);
    EXPECT_EQ(level, 1);
    EXPECT_EQ(m_Library->ClearGPO(0, 3), Status::NoError);
    m_Library->GetGPI(0, 3, level);
    EXPECT_EQ(level, 0);
    // The power outputs show on their detect pins.
    m_Library->SetExtGPO(0, 9);
    m_Library->GetGPI(0, 9, level);
    EXPECT_EQ(level, 1);
    m_Library->ClearExtGPO(0, 9);
    m_Library->GetGPI(0, 9, level);
    EXPECT_EQ(level, 0);
}

TEST_P(AIBControlContract, TakesSetPointsAndParameters) {
    std::int32_t value = -1;
    EXPECT_EQ(m_Library->SetDAC(0, 3, 65535), Status::NoError);
    EXPECT_EQ(m_Library->MFCSetFlowrate(0, 1, 32000), Status::NoError);
    EXPECT_NE(m_Library->MFCSetFlowrate(0, 1, 32001), Status::NoError);
    EXPECT_EQ(m_Library->MFCGetFlowrate(0, 1, value), Status::NoError);
    EXPECT_GE(value, 0);
    EXPECT_EQ(m_Library->MFCSetParameter(0, {1, 128, 1, 32}, 0), Status::NoError);
    EXPECT_EQ(m_Library->MFCGetParameter(0, {1, 128, 8, 32}, value), Status::NoError);
    EXPECT_EQ(m_Library->GetVariable(0, 6, value), Status::NoError);
    EXPECT_EQ(value, 0x30000);
    EXPECT_EQ(m_Library->SetVariable(0, 7, 12), Status::NoError);
    m_Library->GetVariable(0, 7, value);
    EXPECT_EQ(value, 12);
}

TEST_P(AIBControlContract, DumpsTheEprom) {
    const TemporaryFolder folder;
    m_Library->WriteEEPROM(0, 4, 0x04030201);
    EXPECT_EQ(m_Library->DumpEEPROM(0, folder.Path() / "dump.bin"), Status::NoError);
    const std::string dump = ReadWholeFile(folder.Path() / "dump.bin");
    EXPECT_EQ(dump.size(), 2048U);
    EXPECT_EQ(dump.substr(4, 4), "\x01\x02\x03\x04");
    EXPECT_NE(m_Library->DumpEEPROM(0, folder.Path() / "none" / "dump.bin"), Status::NoError);
}

INSTANTIATE_TEST_SUITE_P(
    Libraries, AIBControlContract,
    ::testing::Values(
        LibraryUnderTest{
            "Simulated",
            [](Clock& clock) { return std::make_unique<SimulatedBench>(clock, BenchOptions{}); }},
        LibraryUnderTest{
            "Loaded", [](Clock&) { return std::make_unique<LoadedAIBControl>(SIMULATED_LIBRARY); }},
        LibraryUnderTest{"Hosted",
                         [](Clock&) {
                             return std::make_unique<HostedAIBControl>(HostedAIBControl::Options{
                                 .Program = BOARD_HOST, .Library = SIMULATED_LIBRARY});
                         }}),
    [](const auto& info) { return info.param.Name; });

} // namespace
} // namespace ombrix
