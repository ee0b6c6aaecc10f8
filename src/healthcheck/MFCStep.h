#pragma once

#include "board/Station.h"
#include "board/procedure/HiResTimer.h"
#include "board/procedure/ProcedureWait.h"
#include "healthcheck/HealthCheckViews.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace ombrix {

class Worksheet;

/// One timed step of a sequence: a demand for each air channel and a duration. While it runs it
/// records samples, at most one every 20 ms.
class MFCStep {
  public:
    /// Columns of a sample: time in ms from the start of the sequence, DAC and reading of
    /// channel 1, DAC and reading of channel 2 (bits, 0 to 65535), pressure (raw).
    static constexpr std::int32_t Columns = 6;
    /// Samples that a step can hold; at the shortest spacing 200 s.
    static constexpr std::int32_t DataCapacity = 10000;
    static constexpr float SampleSpacing_s = 0.02F;
    /// With fewer samples of its last two seconds a step is not judged.
    static constexpr std::int32_t FewestEndSamples = 5;
    using Sample = std::array<std::int32_t, Columns>;

    /// @param ch1Demand, ch2Demand fractions of full scale, 0 to 1
    /// @param prevStep the step before it in the sequence, none for the first; must outlive it
    void Init(std::int32_t stepIndex, float ch1Demand, float ch2Demand, float duration_s,
              const MFCStep* prevStep);

    float Duration_s() const { return m_Duration_s; }
    /// Time from the start of the sequence at which the step ends.
    float EndTime_s() const { return m_EndTime_s; }
    /// The demand as a fraction, 0 to 1, in spite of its name. Channels are 0 and 1; another
    /// channel throws std::out_of_range, here and below.
    float DemandValue_Percent(std::int32_t channel) const;
    /// Highest and lowest reading of a channel and the sample that reached it first; -1 = none.
    float MaxValue(std::int32_t channel) const;
    std::int32_t MaxValueIndex(std::int32_t channel) const;
    std::int32_t MinValue(std::int32_t channel) const;
    std::int32_t MinValueIndex(std::int32_t channel) const;
    std::int32_t DataCount() const { return m_DataCount; }
    /// A sample's column. @throws std::out_of_range
    std::int32_t data(std::int32_t row, std::int32_t column) const;
    /// The record was full before the step ended; it took no more samples then.
    bool RecordFull() const { return m_RecordFull; }
    /// The sequence has moved on: the step has run to its end.
    void EndStep() { m_Ended = true; }
    bool Ended() const { return m_Ended; }
    /// It has run to its end, with samples enough to judge it by.
    bool IsMeasured() const;

    /// Tells the current board the demands and prepares the record. The timer is the sequence's.
    void StartStep(HiResTimer& timer, Station& station);
    /// Takes a sample if one is due, and shows it; true when one was stored. A reading that
    /// fails is not stored. @throws BoardError when the board has not answered for a second
    bool RecordDataPoint(AIB& board, const GraphSurfaces* graphs, ValueLabels* labels);
    /// The sample that was stored last. @throws std::out_of_range without one
    const Sample& LastSample() const;
    /// Adds a sample that was recorded earlier to a step that is not run.
    void AddSample(const Sample& sample);
    /// Time at which the next sample is due.
    double NextSampleTime_s() const { return m_LastAttempt_s + SampleSpacing_s; }

    /// Writes the samples from a row down, leaving out those that add nothing to the picture;
    /// advances the row. Row 0 stands for row 2, the first below the headings.
    void ExportData(std::int32_t& row, Worksheet& sheet) const;
    /// Writes the step's line of the overview: "-" stands where there is no sample and, for a
    /// step that is not measured, in the place of its end values and their evaluation.
    void ExportStepData(std::int32_t row, Worksheet& sheet) const;
    /// Mean of a column over the last part of the record, in Single precision; 0 when the
    /// record does not reach back beyond it.
    float Get_EndVal(std::int32_t column, float window_ms) const;
    /// The end value of a channel that the report shows: the mean reading of the last seconds.
    float EndValue(std::int32_t channel) const;

  private:
    struct Extremes {
        std::int32_t MinValue = 0;
        std::int32_t MinIndex = -1;
        std::int32_t MaxValue = 0;
        std::int32_t MaxIndex = -1;
    };

    /// How many of the last samples lie within that time of the very last one.
    std::int32_t RowsWithin(float window_ms) const;
    bool ReadSample(AIB& board, Sample& sample);
    void NoteExtremes(const Sample& sample);
    void Draw(const GraphSurfaces& graphs, const Sample& sample) const;
    bool IsWorthKeeping(std::int32_t row, std::int32_t lastKept) const;
    std::vector<std::int32_t> KeptRows() const;
    std::string StepDescription() const;

    std::int32_t m_StepIndex = 0;
    HiResTimer* m_Timer = nullptr;
    float m_Duration_s = 0.0F;
    float m_EndTime_s = 0.0F;
    std::array<float, 2> m_DemandValue{};
    std::array<Extremes, 2> m_Extremes;
    std::int32_t m_DataCount = 0;
    std::vector<Sample> m_Data;
    const MFCStep* m_PrevStep = nullptr;
    /// Which pressure sensor the unit has, as its record says.
    std::int32_t m_PressureConfig = 0;
    /// Times are compared in full resolution, not in the whole milliseconds of the record.
    double m_LastAttempt_s = -std::numeric_limits<double>::infinity();
    bool m_RecordFull = false;
    bool m_Ended = false;
    AnswerWatch m_Answers;
};

} // namespace ombrix
