#pragma once

#include "benchtests/TestRigJobs.h"
#include "board/Station.h"
#include "board/procedure/Outcome.h"
#include "board/procedure/ProcedureWait.h"
#include "platform/os/LineFile.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace ombrix {

/// Tells whether the inputs of a ramp followed the outputs that feed them.
///
/// The ramp itself applies no criterion: it drives and records, and the recording is what is
/// examined. But the operator is shown a step as passed or failed, and neither may be said of
/// something that nobody has looked at. So the settled readings of each level are held against
/// the value that was sent. The tolerance is wide enough for any two converters in order and far
/// too narrow for an open wire, a dead channel or a short circuit.
class LoopThroughCheck {
  public:
    /// One per cent of full scale.
    static constexpr std::int32_t Tolerance_bits = 655;

    explicit LoopThroughCheck(const RampStep& ramp) : m_Ramp(ramp) {}

    void BeginLevel(std::int32_t output_bits);
    /// @param levelTime_s since the level began; the first half of it is for settling
    void Note(double levelTime_s, const std::array<std::optional<std::int32_t>, 4>& inputs);
    /// A channel has followed when most of its readings have: one that failed does not count.
    void EndLevel();

    bool Followed() const { return m_Deviation.empty(); }
    /// The first channel and level that did not follow; empty when all did.
    const std::string& Deviation() const { return m_Deviation; }

  private:
    struct Channel {
        int Readings = 0;
        int Strays = 0;
        std::int32_t LastStray_bits = 0;
    };

    RampStep m_Ramp;
    std::int32_t m_Output_bits = 0;
    std::array<Channel, 4> m_Channels{};
    std::string m_Deviation;
};

/// Samples the two boards of a ramp into the rig's file, a line a sample.
class RampLog {
  public:
    using Channels = std::array<std::optional<std::int32_t>, AIB::DACChannels>;

    /// @throws DriveError
    RampLog(LineFile& file, AIB& output, AIB& input);

    /// Reads both boards and writes a line. @param now_s time since the ramp started
    /// @return what the inputs of the input board read; a reading that has failed is an empty
    /// field of the line @throws DriveError, BoardError
    Channels Take(double now_s);

    std::int64_t Lines() const { return m_Lines; }

  private:
    struct WatchedBoard {
        AIB& Board;
        std::array<AnswerWatch, AIB::DACChannels> Watches{};
    };

    static Channels OutputsOf(const WatchedBoard& board);
    static Channels ReadInputs(WatchedBoard& board, double now_s);

    LineFile& m_File;
    WatchedBoard m_Output;
    WatchedBoard m_Input;
    std::int64_t m_Lines = 0;
};

/// A step of the job as the operator sees it.
struct TestRigStep {
    std::string Name;
    RigStatus Status = RigStatus::Queued;
    /// What was wrong with a failed one.
    std::string Remark;
};

/// What became of a job of the test rig; failed with the remark of the first step that was.
struct TestRigResult : Outcome {
    std::vector<TestRigStep> Steps;
    /// Samples in the file; each step begins it anew.
    std::int64_t Lines = 0;

    /// None when no step has failed.
    const TestRigStep* FirstFailed() const;
};

/// Where a job of the test rig shows.
class TestRigView {
  public:
    virtual ~TestRigView() = default;

    /// The list of the steps, whenever one of them has another status.
    virtual void ShowSteps(const std::vector<TestRigStep>& steps) = 0;
    virtual void BeginProgress(const RampStep& ramp) = 0;
    virtual void ShowProgress(double elapsed_s) = 0;
};

/// The run of a test rig job on the detected boards. However it ends, every output of every
/// board is at zero. One object serves one run; Station::Procedures must be free when it starts.
class TestRigRun {
  public:
    static constexpr double SampleInterval_s = 0.05;

    TestRigRun(Station& station, TestRigView& view);

    /// What a job needs and is not there; nothing when it can run.
    static std::optional<std::string> Missing(Station& station, std::int32_t kind);

    TestRigResult Run(std::int32_t kind);

  private:
    bool RunSteps(const std::vector<RampStep>& ramps);
    bool RunJobStep(const RampStep& ramp, TestRigStep& step);
    bool RunRamp(const RampStep& ramp, RampLog& log, LoopThroughCheck& check);
    void SetOutputs(const RampStep& ramp, std::int32_t value_bits);
    void ZeroAllOutputs();
    void SetStatus(TestRigStep& step, RigStatus status);
    AIB& Board(std::int32_t index) { return *m_Boards.at(static_cast<std::size_t>(index)); }

    Station& m_Station;
    TestRigView& m_View;
    ProcedureWait m_Wait;
    std::vector<std::shared_ptr<AIB>> m_Boards;
    TestRigResult m_Result;
};

} // namespace ombrix
