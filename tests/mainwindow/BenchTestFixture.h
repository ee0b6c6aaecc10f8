#pragma once

#include "board/BenchProcedure.h"
#include "board/DACSliders.h"
#include "calibration/clsACUCalibration.h"
#include "platform/FolderDrive.h"
#include "support/FullDisk.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ombrix {

using End = ProcedureOutcome::End;

/// Sliders that remember what they were told to show.
class ShownSliders final : public DACSliders {
  public:
    explicit ShownSliders(Station& station) : m_Board(station) {}

    std::vector<std::pair<std::int32_t, std::int32_t>> Shown;

    void SetValue(std::int32_t channel, std::int32_t position) override {
        m_Board.SetValue(channel, position);
    }
    void Show(std::int32_t channel, std::int32_t position) override {
        Shown.emplace_back(channel, position);
    }

  private:
    BoardDACSliders m_Board;
};

/// A station on a simulated bench, in virtual time, on a disk that can be full.
class BenchTestFixture : public ::testing::Test {
  protected:
    void Use(const std::string& bench, const std::vector<std::string>& faults = {}) {
        m_Sliders.reset(); // what works on an earlier bench goes before it
        m_Station.reset();
        m_Bench = std::make_unique<TestBench>(bench, faults);
        m_Disk = std::make_unique<FullDisk>(m_Bench->Files);
        m_World =
            std::make_unique<Platform>(Platform{m_Bench->Time, m_Bench->Events, m_Bench->Messages,
                                                *m_Disk, m_Bench->Documents, m_Bench->End});
        m_Station = std::make_unique<Station>(
            BoardServices{m_Bench->Bench, *m_World,
                          [this] { return std::make_shared<clsACUCalibration>(*m_World); }});
        m_Sliders = std::make_unique<ShownSliders>(*m_Station);
        m_Station->g_CurrentAIB = Board(0);
        m_Station->g_CurrentAIB->Calibration().ReadEPROMValues(*m_Station->g_CurrentAIB);
    }
    std::shared_ptr<clsAIB> Board(std::int32_t index) {
        m_Station->g_AIBList.AIBCount();
        return m_Station->g_AIBList.AIB(index);
    }
    void At(double at_s, std::function<void()> action) {
        m_Bench->Events.At(at_s, std::move(action));
    }
    double Now_s() const {
        return static_cast<double>(m_Bench->Time.Counter()) /
               static_cast<double>(m_Bench->Time.Frequency());
    }
    /// The only file of a test. A line that was cut short shows as one more at the end.
    static std::vector<std::string> LinesOf(const ProcedureOutcome& outcome) {
        EXPECT_EQ(outcome.Files.size(), 1U);
        const std::string content = ReadWholeFile(outcome.Files.at(0));
        std::vector<std::string> lines;
        std::size_t start = 0;
        for (std::size_t end = content.find("\r\n"); end != std::string::npos;
             end = content.find("\r\n", start)) {
            lines.push_back(content.substr(start, end - start));
            start = end + 2;
        }
        if (start < content.size())
            lines.push_back("cut short: " + content.substr(start));
        return lines;
    }
    static std::vector<std::string> Fields(const std::string& line) {
        std::vector<std::string> fields(1);
        for (const char character : line) {
            if (character == ',')
                fields.emplace_back();
            else
                fields.back() += character;
        }
        return fields;
    }
    void ExpectLeftSafely() {
        EXPECT_FALSE(m_Station->Procedures.Running());
        for (std::int32_t index = 0; index < m_Station->g_AIBList.AIBCount(); ++index) {
            for (std::int32_t channel = 0; channel < clsAIB::DACChannels; ++channel)
                EXPECT_EQ(Board(index)->DAC(channel), 0) << index << " " << channel;
        }
    }

    std::unique_ptr<TestBench> m_Bench;
    std::unique_ptr<FullDisk> m_Disk;
    std::unique_ptr<Platform> m_World;
    std::unique_ptr<Station> m_Station;
    std::unique_ptr<ShownSliders> m_Sliders;
};

} // namespace ombrix
