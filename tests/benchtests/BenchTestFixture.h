#pragma once

#include "benchtests/BenchTest.h"
#include "board/procedure/Outcome.h"
#include "board/unit/ACUCalibration.h"
#include "platform/os/FolderDrive.h"
#include "support/FullDisk.h"
#include "support/TestBench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace ombrix {

/// A station on a simulated bench, in virtual time, on a disk that can be full.
class BenchTestFixture : public ::testing::Test {
  protected:
    void Use(const std::string& bench, const std::vector<std::string>& faults = {}) {
        m_Station.reset(); // works on the earlier bench
        m_Bench = std::make_unique<TestBench>(bench, faults);
        m_Disk = std::make_unique<FullDisk>(m_Bench->Files);
        m_World =
            std::make_unique<Platform>(Platform{m_Bench->Time, m_Bench->Events, m_Bench->Messages,
                                                *m_Disk, m_Bench->Documents, m_Bench->End});
        m_Station = std::make_unique<Station>(BoardServices{m_Bench->Bench, *m_World});
        m_Station->CurrentAIB = Board(0);
        m_Station->Calibration().ReadEPROMValues();
    }
    std::shared_ptr<AIB> Board(std::int32_t index) {
        m_Station->AIBList.AIBCount();
        return m_Station->AIBList.AIB(index);
    }
    void At(double at_s, std::function<void()> action) {
        m_Bench->Events.At(at_s, std::move(action));
    }
    double Now_s() const {
        return static_cast<double>(m_Bench->Time.Counter()) /
               static_cast<double>(m_Bench->Time.Frequency());
    }
    /// The only file of a test, of which no line may be cut short.
    static std::vector<std::string> LinesOf(const Outcome& outcome) {
        EXPECT_EQ(outcome.Files.size(), 1U);
        return LinesOf(outcome.Files.at(0));
    }
    static std::vector<std::string> LinesOf(const std::filesystem::path& file) {
        std::istringstream content(ReadWholeFile(file));
        std::vector<std::string> lines;
        for (std::string line; std::getline(content, line); lines.push_back(line)) {
            EXPECT_TRUE(line.ends_with('\r') && !content.eof()) << "cut short: " << line;
            line.pop_back();
        }
        return lines;
    }
    static std::vector<std::string> Fields(const std::string& line) {
        std::istringstream stream(line + ",");
        std::vector<std::string> fields;
        for (std::string field; std::getline(stream, field, ',');)
            fields.push_back(field);
        return fields;
    }
    /// Each value where it is not the one before it.
    template <class Value>
    static std::vector<Value> Changes(std::vector<Value> values) {
        values.erase(std::unique(values.begin(), values.end()), values.end());
        return values;
    }
    /// A view that keeps what it is told.
    BenchTestView View() {
        return {.Caption = [this](const std::string& text) { m_Captions.push_back(text); },
                .Stage = [this](const std::string& text) { m_Stages.push_back(text); }};
    }
    /// Cancels the test that runs.
    void Cancel() { m_Station->Procedures.Cancel(); }
    /// Every output at zero; a board that has refused the zeros holds what it last took, and the
    /// operator was told.
    void ExpectLeftSafely() {
        EXPECT_FALSE(m_Station->Procedures.Running());
        for (std::int32_t index = 0; index < m_Station->AIBList.AIBCount(); ++index) {
            for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
                EXPECT_TRUE(Board(index)->DAC(channel) == 0 || m_Station->AirMayFlow)
                    << index << " " << channel;
        }
    }

    std::unique_ptr<TestBench> m_Bench;
    std::unique_ptr<FullDisk> m_Disk;
    std::unique_ptr<Platform> m_World;
    std::unique_ptr<Station> m_Station;
    std::vector<std::string> m_Captions;
    std::vector<std::string> m_Stages;
};

} // namespace ombrix
