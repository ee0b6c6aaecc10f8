#pragma once

#include "board/Station.h"
#include "calibration/CalibrationBench.h"
#include "platform/os/Clocks.h"
#include "platform/os/FolderDrive.h"
#include "platform/os/ProgramLog.h"
#include "simulator/SimulatedBench.h"
#include "soak/SoakDisk.h"
#include "soak/WatchedLibrary.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/TemporaryFolder.h"
#include "support/TestBench.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace ombrix::soak {

/// Events with one action that happens when the clock has reached its time.
class SoakEvents final : public EventPump {
  public:
    explicit SoakEvents(const VirtualClock& clock) : m_Clock(clock) {}

    void At(double time_s, std::function<void()> action) {
        m_Due_s = time_s;
        m_Action = std::move(action);
    }
    /// What is done when a procedure goes on for longer than it may.
    void NotAfter(double time_s, std::function<void()> action) {
        m_Limit_s = time_s;
        m_PastLimit = std::move(action);
    }
    void Forget() { m_Action = m_PastLimit = nullptr; }
    void EndProgram() { m_Ending = true; }

    void ProcessPendingEvents() override {
        if (m_Action && MonotonicSeconds(m_Clock) >= m_Due_s)
            std::exchange(m_Action, nullptr)();
        if (m_PastLimit && MonotonicSeconds(m_Clock) >= m_Limit_s)
            std::exchange(m_PastLimit, nullptr)();
    }
    bool ProgramEnding() const override { return m_Ending; }

  private:
    const VirtualClock& m_Clock;
    double m_Due_s = 0.0;
    std::function<void()> m_Action;
    double m_Limit_s = 0.0;
    std::function<void()> m_PastLimit;
    bool m_Ending = false;
};

/// An operator who agrees to everything but to try again, as an unattended station does.
class SoakOperator final : public Operator {
  public:
    Answer Ask(const Message& message) override;
    std::optional<std::string> AskText(const std::string& prompt, const std::string& proposed,
                                       const std::string& title) override;
    bool Unattended() const override { return true; }

    /// The texts of the messages since the last question for them, a line each.
    std::string TakeMessages() { return std::exchange(m_Shown, {}); }

  private:
    std::string m_Shown;
};

/// What outlives a program: the time, the disk and the bench with its boards.
struct SoakWorld {
    /// @param root real folder of the data
    SoakWorld(const std::string& bench, std::uint64_t seed, const std::filesystem::path& root);

    VirtualClock Time;
    std::filesystem::path Root;
    FolderDrive Folder;
    SoakDisk Files{Folder};
    SimulatedBench Bench;
    WatchedLibrary Library{Bench};

    SimulatedBoard& Board() { return Bench.Board(0); }
    double Now_s() const { return MonotonicSeconds(Time); }
};

/// A program from its start to its end, wired as the real ones are, its operator unattended.
class SoakProgram {
  public:
    explicit SoakProgram(SoakWorld& world);

    static constexpr const char* Templates = R"(C:\Program Files\Ombrix\Templates\)";

    /// Detects the boards as the program's start does and reads the record of the first.
    bool Detect();
    AIB& Board() { return *TheStation.CurrentAIB; }
    ReportTools Reports(OpenExcelView& wait) {
        return {TheStation,
                [this] { return std::make_unique<XlsxApplication>(World.Files, m_Converter); },
                wait, Templates};
    }

    SoakWorld& World;
    SoakEvents Events{World.Time};
    SoakOperator Answers;
    LoggedOperator Messages{Answers, Ports};
    RecordedDocuments Documents;
    ThrowingEnd End;
    Platform Ports{World.Time, Events, Messages, World.Files, Documents, End, {"soak", "0", "", 1}};
    Station TheStation;

  private:
    SameContent m_Converter;
};

} // namespace ombrix::soak
