#include "healthcheck/MFCStep.h"

#include "board/Outputs.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "reports/layout/HealthCheckLayout.h"
#include "spreadsheet/Cells.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

namespace Overview = HealthCheckLayout::Overview;
namespace Data = HealthCheckLayout::Data;

constexpr float EndWindow_ms = 1000.0F * Overview::EndWindow_s;
constexpr Colour DemandColour{192, 192, 192};
constexpr Colour Channel1Colour{0, 0, 255};
constexpr Colour Channel2Colour{0, 255, 0};

template <class... Args>
void Show(ValueLabels& labels, std::size_t label, fmt::format_string<Args...> text,
          Args&&... args) {
    fmt::memory_buffer buffer; // short texts stay on the stack
    fmt::format_to(std::back_inserter(buffer), text, std::forward<Args>(args)...);
    labels.SetCaption(label, std::string_view(buffer.data(), buffer.size()));
}

} // namespace

void MFCStep::Init(std::int32_t stepIndex, float ch1Demand, float ch2Demand, float duration_s,
                   const MFCStep* prevStep) {
    *this = MFCStep();
    m_StepIndex = stepIndex;
    m_DemandValue = {ch1Demand, ch2Demand};
    m_Duration_s = duration_s;
    m_PrevStep = prevStep;
    m_EndTime_s = prevStep == nullptr ? duration_s : prevStep->EndTime_s() + duration_s;
}

float MFCStep::DemandValue_Percent(std::int32_t channel) const {
    return m_DemandValue.at(Index(channel));
}

float MFCStep::MaxValue(std::int32_t channel) const {
    return static_cast<float>(m_Extremes.at(Index(channel)).MaxValue);
}

std::int32_t MFCStep::MaxValueIndex(std::int32_t channel) const {
    return m_Extremes.at(Index(channel)).MaxIndex;
}

std::int32_t MFCStep::MinValue(std::int32_t channel) const {
    return m_Extremes.at(Index(channel)).MinValue;
}

std::int32_t MFCStep::MinValueIndex(std::int32_t channel) const {
    return m_Extremes.at(Index(channel)).MinIndex;
}

std::int32_t MFCStep::data(std::int32_t row, std::int32_t column) const {
    return m_Data.at(Index(row)).at(Index(column));
}

const MFCStep::Sample& MFCStep::LastSample() const {
    return m_Data.at(Index(m_DataCount - 1));
}

void MFCStep::AddSample(const Sample& sample) {
    NoteExtremes(sample);
    m_Data.push_back(sample);
    ++m_DataCount;
}

void MFCStep::StartStep(HiResTimer& timer, Station& station) {
    m_Timer = &timer;
    m_PressureConfig = station.Calibration().Record().DigitalPressureConfig;
    // What is refused is told again while the step waits, and ends the run when that goes on.
    for (const std::int32_t channel : {0, 1})
        station.Outputs.Set(*station.CurrentAIB, channel,
                            SliderScale::DemandOfShare(DemandValue_Percent(channel)));
    m_Data.assign(Index(DataCapacity), Sample{});
}

bool MFCStep::RecordDataPoint(AIB& board, const GraphSurfaces* graphs, ValueLabels* labels) {
    const double elapsed_s = m_Timer->ElapsedTime();
    if (static_cast<float>(elapsed_s - m_LastAttempt_s) < SampleSpacing_s)
        return false;
    Sample sample{};
    if (m_DataCount == DataCapacity || !ReadSample(board, sample)) {
        m_RecordFull = m_DataCount == DataCapacity;
        m_LastAttempt_s = elapsed_s;
        return false;
    }
    m_LastAttempt_s = m_Timer->ElapsedTime();
    sample[0] = RoundHalfEven(m_LastAttempt_s * 1000.0);
    NoteExtremes(sample);
    if (labels != nullptr) {
        Show(*labels, 0, "{}  :  {}", sample[1], sample[2]);
        Show(*labels, 1, "{}  :  {}", sample[3], sample[4]);
        Show(*labels, 2, "{}", sample[5]);
        Show(*labels, 3, "{}", sample[2] - sample[1]);
        Show(*labels, 4, "{}", sample[4] - sample[3]);
    }
    if (graphs != nullptr)
        Draw(*graphs, sample);
    m_Data[Index(m_DataCount)] = sample;
    ++m_DataCount;
    return true;
}

bool MFCStep::ReadSample(AIB& board, Sample& sample) {
    constexpr std::int32_t analogSensor = 0;
    constexpr std::int32_t digitalSensor = 1;
    constexpr std::int32_t analogPressureChannel = 2;
    // All are read every time, so that a sample takes the same time on every unit. Only what is
    // used can spoil one.
    const std::array<AIBStatus, 2> channels = {board.GetADC(0, sample[2]),
                                               board.GetADC(1, sample[4])};
    std::int32_t analogPressure = 0;
    const AIBStatus analog = board.GetADC(analogPressureChannel, analogPressure);
    std::int32_t digitalPressure = 0;
    const AIBStatus digital = board.ReadReg(AIB::PressureRegister, digitalPressure);
    const AIBStatus pressure = m_PressureConfig == analogSensor    ? analog
                               : m_PressureConfig == digitalSensor ? digital
                                                                   : Status::NoError;
    AIBStatus worst = Status::NoError;
    for (const AIBStatus status : {channels[0], channels[1], pressure})
        worst = status != Status::NoError ? status : worst;
    const BoardAnswer answer{worst, !board.Reaches(0)};
    m_Answers.Note(answer, m_Timer->ElapsedTime());
    if (!answer.Taken())
        return false;
    sample[1] = board.DAC(0);
    sample[3] = board.DAC(1);
    sample[5] = m_PressureConfig == analogSensor    ? analogPressure
                : m_PressureConfig == digitalSensor ? digitalPressure
                                                    : 0;
    return true;
}

void MFCStep::NoteExtremes(const Sample& sample) {
    for (const std::size_t channel : {std::size_t{0}, std::size_t{1}}) {
        const std::int32_t reading = sample.at(2 + 2 * channel);
        Extremes& extremes = m_Extremes.at(channel);
        if (extremes.MinIndex == -1 || reading < extremes.MinValue) {
            extremes.MinValue = reading;
            extremes.MinIndex = m_DataCount;
        }
        if (extremes.MaxIndex == -1 || extremes.MaxValue < reading) {
            extremes.MaxValue = reading;
            extremes.MaxIndex = m_DataCount;
        }
    }
}

void MFCStep::Draw(const GraphSurfaces& graphs, const Sample& sample) const {
    const bool continuesStep = m_DataCount > 0;
    const bool continuesSequence = m_PrevStep != nullptr && m_PrevStep->DataCount() > 0;
    if (!continuesStep && !continuesSequence)
        return;
    const Sample& last = continuesStep ? m_Data[Index(m_DataCount - 1)]
                                       : m_PrevStep->m_Data[Index(m_PrevStep->DataCount() - 1)];
    const double x1 = last[0] / 1000.0;
    const double x2 = sample[0] / 1000.0;
    graphs[0]->Line(x1, last[1], x2, sample[1], DemandColour);
    graphs[0]->Line(x1, last[2], x2, sample[2], Channel1Colour);
    graphs[1]->Line(x1, last[3], x2, sample[3], DemandColour);
    graphs[1]->Line(x1, last[4], x2, sample[4], Channel2Colour);
    graphs[2]->Line(x1, last[5], x2, sample[5], Channel1Colour);
    if (!continuesStep)
        return; // a step of the demand is no difference worth a line
    graphs[3]->Line(x1, last[2] - last[1], x2, sample[2] - sample[1], Channel1Colour);
    graphs[4]->Line(x1, last[4] - last[3], x2, sample[4] - sample[3], Channel2Colour);
}

std::int32_t MFCStep::RowsWithin(float window_ms) const {
    if (m_DataCount == 0)
        return 0;
    const float threshold = static_cast<float>(LastSample()[0]) - window_ms;
    std::int32_t before = m_DataCount;
    while (before > 0 && threshold < static_cast<float>(data(before - 1, 0)))
        --before;
    return m_DataCount - before;
}

float MFCStep::Get_EndVal(std::int32_t column, float window_ms) const {
    const std::int32_t rows = RowsWithin(window_ms);
    if (rows == 0 || rows == m_DataCount)
        return 0.0F;
    float sum = 0.0F;
    for (std::int32_t row = m_DataCount - 1; row >= m_DataCount - rows; --row)
        sum += static_cast<float>(data(row, column));
    return sum / static_cast<float>(rows);
}

float MFCStep::EndValue(std::int32_t channel) const {
    return Get_EndVal(2 + 2 * channel, EndWindow_ms);
}

bool MFCStep::IsMeasured() const {
    const std::int32_t rows = RowsWithin(EndWindow_ms);
    const bool reachesBack = rows < m_DataCount || m_Duration_s * 1000.0F <= EndWindow_ms;
    return m_Ended && !m_RecordFull && rows >= FewestEndSamples && reachesBack;
}

// What a step writes into the report workbook.

namespace {

constexpr std::int32_t LongestGap_ms = 250;
constexpr float FullScale = 65535.0F;
constexpr std::size_t DataColumns = 4;

std::string Area(char first, char last, std::int32_t row, std::size_t rows) {
    return fmt::format("{}{}:{}{}", first, row, last, static_cast<std::size_t>(row) + rows - 1);
}

std::string PercentText(float fraction) {
    return FixedText(fraction * 100.0F, 1);
}

} // namespace

bool MFCStep::IsWorthKeeping(std::int32_t row, std::int32_t lastKept) const {
    if (data(row, 0) - data(lastKept, 0) >= LongestGap_ms || row == m_DataCount - 1)
        return true;
    const bool isExtreme =
        std::any_of(m_Extremes.begin(), m_Extremes.end(), [row](const Extremes& extremes) {
            return row == extremes.MinIndex || row == extremes.MaxIndex;
        });
    const Sample& sample = m_Data.at(static_cast<std::size_t>(row));
    const Sample& kept = m_Data.at(static_cast<std::size_t>(lastKept));
    return isExtreme ||
           !std::equal(sample.begin() + 1, sample.begin() + 1 + DataColumns, kept.begin() + 1);
}

std::vector<std::int32_t> MFCStep::KeptRows() const {
    std::vector<std::int32_t> kept = {0};
    for (std::int32_t row = 1; row < m_DataCount; ++row) {
        if (IsWorthKeeping(row, kept.back()))
            kept.push_back(row);
    }
    return kept;
}

void MFCStep::ExportData(std::int32_t& row, Worksheet& sheet) const {
    if (m_DataCount == 0)
        return;
    if (row == 0)
        row = Data::FirstRow;
    const std::vector<std::int32_t> rows = KeptRows();
    std::vector<float> times;
    std::vector<std::int32_t> readings;
    std::vector<float> fractions;
    std::vector<std::int32_t> pressures;
    times.reserve(rows.size());
    readings.reserve(rows.size() * DataColumns);
    fractions.reserve(rows.size() * DataColumns);
    pressures.reserve(rows.size());
    for (const std::int32_t kept : rows) {
        const Sample& sample = m_Data.at(static_cast<std::size_t>(kept));
        times.push_back(static_cast<float>(sample[0]) / 1000.0F);
        for (std::size_t column = 1; column <= DataColumns; ++column) {
            readings.push_back(sample.at(column));
            fractions.push_back(static_cast<float>(sample.at(column)) / FullScale);
        }
        pressures.push_back(sample[5]);
    }
    sheet.SetValues(Area(Data::Time, Data::Time, row, rows.size()), CellBlock<float>{times, 1});
    sheet.SetValues(Area(Data::FirstBits, Data::LastBits, row, rows.size()),
                    CellBlock<std::int32_t>{readings, DataColumns});
    sheet.SetValues(Area(Data::FirstShare, Data::LastShare, row, rows.size()),
                    CellBlock<float>{fractions, DataColumns});
    sheet.SetValues(Area(Data::Pressure, Data::Pressure, row, rows.size()),
                    CellBlock<std::int32_t>{pressures, 1});
    row += static_cast<std::int32_t>(rows.size());
}

void MFCStep::ExportStepData(std::int32_t row, Worksheet& sheet) const {
    const auto write = [row, &sheet](char column, const CellValue& value) {
        sheet.SetValue(Cell(column, row), value);
    };
    write(Overview::Step, fmt::format("Step {}", m_StepIndex + 1));
    write(Overview::Ch1Demand, m_DemandValue[0]);
    write(Overview::Ch2Demand, m_DemandValue[1]);
    write(Overview::Duration, m_Duration_s);
    const CellValue none = std::string(Overview::NotEvaluated);
    const auto extreme = [this, &none](std::int32_t bits) {
        return m_DataCount > 0 ? CellValue(bits) : none;
    };
    write(Overview::Ch1Min, extreme(m_Extremes[0].MinValue));
    write(Overview::Ch1Max, extreme(m_Extremes[0].MaxValue));
    write(Overview::Ch2Min, extreme(m_Extremes[1].MinValue));
    write(Overview::Ch2Max, extreme(m_Extremes[1].MaxValue));
    if (IsMeasured()) {
        write(Overview::Ch1End, EndValue(0));
        write(Overview::Ch2End, EndValue(1));
    } else {
        for (const char column :
             {Overview::Ch1End, Overview::Ch2End, Overview::Ch1Evaluation, Overview::Ch2Evaluation})
            write(column, none);
    }
    write(Overview::Description, StepDescription());
}

std::string MFCStep::StepDescription() const {
    if (m_PrevStep == nullptr)
        return "First in Sequence";
    const auto [demand1, demand2] = m_DemandValue;
    const auto [previous1, previous2] = m_PrevStep->m_DemandValue;
    if (demand1 > 0.0F)
        return fmt::format("CH1 to {}%", PercentText(demand1));
    if (demand2 > 0.0F)
        return fmt::format("CH2 to {}% from {}", PercentText(demand2),
                           previous2 != 0.0F ? PercentText(previous2) : "Zero");
    if (previous1 != 0.0F || previous2 != 0.0F)
        return "To Zero from " + PercentText(std::max(previous1, previous2));
    return "Stay at Zero";
}

} // namespace ombrix
