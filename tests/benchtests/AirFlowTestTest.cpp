#include "benchtests/AirFlowTest.h"

#include "benchtests/BenchTestFixture.h"

#include <cmath>

namespace ombrix {
namespace {

constexpr std::int32_t Measure = 1;
constexpr std::int32_t NoRole = 999;

class AirFlowTestTest : public BenchTestFixture {
  protected:
    AirFlowResult Run() {
        AirFlowTest test(*m_Station);
        const AirFlowResult result = test.TestAirFlow(View());
        ExpectLeftSafely();
        return result;
    }
    /// Gives a board another serial number, read with the opening of the library.
    void Renumber(std::int32_t index, std::int32_t serial) {
        m_Bench->Bench.Board(index).SetIdentity(0, serial);
        std::int32_t count = 0;
        m_Station->AIBList.OpenAIBAPI(count);
    }
};

TEST_F(AirFlowTestTest, ScheduleIsRunAndSampledOnceATick) {
    Use("airflow");
    At(100.0, [this] { EXPECT_EQ(Board(Measure)->DAC(0), 65534); });
    const AirFlowResult result = Run();
    EXPECT_EQ(result.Ended, End::Passed);
    EXPECT_EQ(result.Files.at(0).filename(), "_AirTest_20240315_140509.csv");
    EXPECT_NEAR(Now_s(), 381.0, 0.1);
    std::vector<std::string> lines = LinesOf(result);
    EXPECT_EQ(lines[0], "Timer,Switch,DemandCh0,DemandCh1,FlowCh0,FlowCh1,MeasureCh0,,"
                        "Timer,Switch,FlowCh0,FlowCh1,MeasureCh0");
    lines.erase(lines.begin());
    EXPECT_EQ(static_cast<std::int32_t>(lines.size()), result.Lines);
    EXPECT_NEAR(result.Lines, 381 * 64, 2);

    std::vector<std::string> demands;
    double last_s = -1.0;
    for (const std::string& line : lines) {
        const std::vector<std::string> fields = Fields(line);
        ASSERT_EQ(fields.size(), 13U) << line;
        EXPECT_GT(std::stod(fields[0]), last_s);
        last_s = std::stod(fields[0]);
        demands.push_back(fields[1] + "," + fields[2] + "," + fields[3]);
    }
    EXPECT_EQ(Changes(demands),
              (std::vector<std::string>{"35000, 0,19660", "0, 0,19660", "0, 0,39320", "0, 0,58981",
                                        "0, 3146,0", "35000, 3146,0", "35000, 3932,0",
                                        "35000, 4718,0", "35000, 5505,0", "35000, 6291,0",
                                        "35000, 7078,0", "35000, 7864,0", "35000, 8650,0",
                                        "35000, 9437,0", "35000, 0,0"}));
}

TEST_F(AirFlowTestTest, LineHoldsBitsAndTheSameInMillilitres) {
    Use("airflow");
    const std::vector<std::string> lines = LinesOf(Run());
    // In the middle of the last measurement, with the large channel on the line.
    const std::vector<std::string> fields = Fields(lines.at(360 * 64));
    EXPECT_EQ(fields[0], "359.9844");
    EXPECT_NEAR(std::stod(fields[4]), 9437, 60);
    EXPECT_LT(std::stod(fields[5]), TestBench::NoFlow_bits);
    EXPECT_NEAR(std::stod(fields[6]), 9437.0 / 65534 * 32767, 40) << "half scale on that board";
    EXPECT_EQ(fields[7], "");
    EXPECT_EQ(fields[8], "359.9844");
    EXPECT_EQ(fields[9], "100");
    EXPECT_NEAR(std::stod(fields[10]), 9437 * 2500.0 / 32767, 5);
    EXPECT_NEAR(std::stod(fields[12]), 72.0, 0.6);
    const double measured_bits = std::stod(fields[12]) / 0.015259254723787308;
    EXPECT_NEAR(measured_bits, std::round(measured_bits), 1e-6);

    EXPECT_EQ(m_Captions.front(), "Switch: 0  -  0.00");
    for (std::string& caption : m_Captions)
        caption.erase(caption.find_last_of(' ') + 1);
    EXPECT_EQ(Changes(m_Captions),
              (std::vector<std::string>{"Switch: 0  -  ", "Measure: 1  -  ", "Measure: 2  -  ",
                                        "Measure: 3  -  ", "Switch: 4  -  ", "Measure: 5  -  ",
                                        "Measure: 6  -  ", "Measure: 7  -  ", "Measure: 8  -  ",
                                        "Measure: 9  -  ", "Measure: 10  -  ", "Measure: 11  -  ",
                                        "Measure: 12  -  ", "Measure: 13  -  ", "End: "}));
}

TEST_F(AirFlowTestTest, ValveMovesEightSecondsAfterItsDemand) {
    struct Case {
        const char* Bench;
        std::int32_t FlowIndex;
        /// The pin on which the valve's output shows.
        std::int32_t Pin;
    };
    for (const Case& c : {Case{"airflow", 0, 8}, Case{"pair", 1, 0}}) {
        Use(c.Bench);
        Renumber(c.FlowIndex, 427);
        Renumber(1 - c.FlowIndex, 347);
        Board(c.FlowIndex)->ConfigureGPIO(1);
        Board(c.FlowIndex)->SetExtGPO(8);
        // The second move is 8 + 3 * 30 s, then 8 s with the other channel's demand away.
        for (const auto& [at_s, level] : {std::pair{7.9, 1}, {8.1, 0}, {105.9, 0}, {106.1, 1}}) {
            At(at_s, [this, &c, at_s = at_s, level = level] {
                std::int32_t now = -1;
                Board(c.FlowIndex)->GetGPI(c.Pin, now);
                EXPECT_EQ(now, level) << c.Bench << " " << at_s;
            });
        }
        EXPECT_EQ(Run().Ended, End::Passed);
    }
}

TEST_F(AirFlowTestTest, MissingBoardsAreToldAndNothingIsDriven) {
    struct Case {
        std::int32_t First;
        std::int32_t Second;
        const char* Told;
    };
    std::vector<Case> cases = {{NoRole, NoRole, "tAIB_Flow AND tAIB_Measure are Nothing!"},
                               {NoRole, 347, "tAIB_Flow is Nothing!"}};
    for (const std::int32_t flow : {161, 306, 400, 417, 422, 424, 427})
        cases.push_back({flow, NoRole, "tAIB_Measure is Nothing!"});
    for (const Case& c : cases) {
        Use("airflow");
        Renumber(0, c.First);
        Renumber(1, c.Second);
        Board(0)->SetDAC(0, 0);
        const AirFlowResult result = Run();
        EXPECT_EQ(result.Ended, End::Stopped);
        EXPECT_EQ(result.MissingBoards, c.Told);
        ASSERT_EQ(m_Bench->Messages.Shown.size(), 1U);
        EXPECT_EQ(m_Bench->Messages.Shown[0].Text, c.Told);
        EXPECT_EQ(m_Bench->Messages.Shown[0].Icon, MessageIcon::Information);
        EXPECT_EQ(LinesOf(result).size(), 1U);
        EXPECT_LT(Now_s(), 0.1);
    }
}

} // namespace
} // namespace ombrix
