// Every procedure that drives, on a board that refuses one of the outputs it needs.
#include "terminal/OmbrixctlTest.h"

namespace ombrix {
namespace {

struct RefusedCase {
    std::string Bench;
    std::string Command;
    /// Operations of the library, one refused at a time, and what messages call the output.
    std::vector<std::pair<std::string, std::string>> Refused;
};

class RefusedOutputs : public OmbrixctlTest, public ::testing::WithParamInterface<RefusedCase> {
  protected:
    std::string Eprom() const {
        std::string all;
        for (const auto& file : std::filesystem::directory_iterator(m_Folder.Path() / "simulator"))
            if (file.path().filename().string().starts_with("EPROM"))
                all += ReadWholeFile(file.path());
        return all;
    }
};

TEST_P(RefusedOutputs, StopTheProcedureAtOnceAndNothingIsStored) {
    const std::string bench = "--simulate=" + GetParam().Bench + " --time-scale max --yes ";
    Run(bench + "detect");
    const std::string before = Eprom();
    for (const auto& [operation, output] : GetParam().Refused) {
        // Without LibreOffice: it would take most of the time.
        const Outcome refused = Run(
            bench + "--fault status:32@" + operation + " " + GetParam().Command, "", "env PATH=/");
        EXPECT_EQ(refused.Status, 1) << operation;
        const std::string error = refused.Result["error"];
        EXPECT_TRUE(error.find("does not take what it is told: " + output) != std::string::npos ||
                    error.find("has refused outputs") != std::string::npos)
            << operation << ": " << error;
        EXPECT_FALSE(refused.Result.value("passed", false)) << operation;
        EXPECT_EQ(Eprom(), before) << operation;
    }
}

const std::vector<std::pair<std::string, std::string>> DigitalAir = {{"MFCSetFlowrate", "MFC 0"}};
const std::vector<std::pair<std::string, std::string>> Analog = {{"SetDAC", "DAC 0"}};
const std::vector<std::pair<std::string, std::string>> Calibration = {
    {"MFCSetFlowrate", "MFC 0"},
    {"SetDAC", "DAC 2"},
    {"SetExtGPO", "extended output 8"},
    {"ClearExtGPO", "extended output 8"}};

INSTANTIATE_TEST_SUITE_P(
    EveryProcedure, RefusedOutputs,
    ::testing::Values(
        RefusedCase{"acu", "calibrate velocity-system", Calibration},
        RefusedCase{"acu", "calibrate velocity-audit", Calibration},
        RefusedCase{
            "acu",
            "calibrate pressure-system",
            {{"MFCSetFlowrate", "MFC 0"}, {"SetDAC", "DAC 2"}, {"SetExtGPO", "extended output 8"}}},
        RefusedCase{
            "acu", "calibrate pressure-audit", {{"MFCSetFlowrate", "MFC 0"}, {"SetDAC", "DAC 2"}}},
        RefusedCase{"acu", "health-check --short", DigitalAir},
        RefusedCase{"acu", "test mfc", DigitalAir},
        RefusedCase{"acu", "test air-sweep", {{"MFCSetFlowrate", "MFC 0"}, {"SetDAC", "DAC 2"}}},
        RefusedCase{"acu", "test speed", {{"MFCSetFlowrate", ""}, {"SetDAC", ""}}},
        RefusedCase{"plain", "calibrate velocity-system", Analog},
        RefusedCase{"plain", "calibrate pressure-system", Analog},
        RefusedCase{"plain", "health-check --low-ch1", Analog},
        RefusedCase{"pair",
                    "--board 1 calibrate velocity-system",
                    {{"ConfigureGPIO", "the directions of the pins"},
                     {"SetGPO", "pin 0"},
                     {"ClearGPO", "pin 0"}}},
        RefusedCase{"rig", "test rig", Analog},
        RefusedCase{"airflow",
                    "test air-flow",
                    {{"SetDAC", "DAC 0"},
                     {"SetGPO", "pin 0"},
                     {"SetExtGPO", "extended output 8"},
                     {"ClearExtGPO", "extended output 8"}}}));

} // namespace
} // namespace ombrix
