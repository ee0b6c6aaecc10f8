// What a step writes into the report workbook.
#include "healthcheck/MFCStep.h"
#include "platform/text/Text.h"
#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

constexpr std::int32_t FirstDataRow = 2;
constexpr std::int32_t LongestGap_ms = 250;
constexpr float EndWindow_ms = 2000.0F;
constexpr float FullScale = 65535.0F;
constexpr std::size_t DataColumns = 4;

std::string Area(char first, char last, std::int32_t row, std::size_t rows) {
    return fmt::format("{}{}:{}{}", first, row, last, static_cast<std::size_t>(row) + rows - 1);
}

std::string PercentText(float fraction) {
    return FixedText(fraction * 100.0F, 1);
}

} // namespace

bool clsMFCStep::IsWorthKeeping(std::int32_t row, std::int32_t lastKept) const {
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

std::vector<std::int32_t> clsMFCStep::KeptRows() const {
    std::vector<std::int32_t> kept = {0};
    for (std::int32_t row = 1; row < m_DataCount; ++row) {
        if (IsWorthKeeping(row, kept.back()))
            kept.push_back(row);
    }
    return kept;
}

void clsMFCStep::ExportData(std::int32_t& row, Worksheet& sheet) const {
    if (m_DataCount == 0)
        return;
    if (row == 0)
        row = FirstDataRow;
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
    sheet.SetValues(Area('A', 'A', row, rows.size()), CellBlock<float>{times, 1});
    sheet.SetValues(Area('B', 'E', row, rows.size()),
                    CellBlock<std::int32_t>{readings, DataColumns});
    sheet.SetValues(Area('F', 'I', row, rows.size()), CellBlock<float>{fractions, DataColumns});
    sheet.SetValues(Area('J', 'J', row, rows.size()), CellBlock<std::int32_t>{pressures, 1});
    row += static_cast<std::int32_t>(rows.size());
}

void clsMFCStep::ExportStepData(std::int32_t row, Worksheet& sheet) const {
    const auto write = [row, &sheet](char column, const CellValue& value) {
        sheet.SetValue(fmt::format("{}{}", column, row), value);
    };
    write('B', fmt::format("Step {}", m_StepIndex + 1));
    write('C', m_DemandValue[0]);
    write('D', m_DemandValue[1]);
    write('E', m_Duration_s);
    write('F', m_Extremes[0].MinValue);
    write('G', m_Extremes[0].MaxValue);
    write('H', m_Extremes[1].MinValue);
    write('I', m_Extremes[1].MaxValue);
    write('J', Get_EndVal(2, EndWindow_ms));
    write('K', Get_EndVal(4, EndWindow_ms));
    write('L', StepDescription());
}

std::string clsMFCStep::StepDescription() const {
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
