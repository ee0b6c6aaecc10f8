#pragma once

#include "spreadsheet/Spreadsheet.h"

#include <string>
#include <vector>

namespace ombrix {

/// A sequence of steps as a health check exports it, with made-up readings: a first-order
/// response with a little ripple.
struct SampleSequence {
    std::string Name;
    /// Demands of channel 1, one a step; channel 2 stays at zero.
    std::vector<float> Demands;
    float StepTime_s = 12.0F;
    float SampleSpacing_s = 0.05F;
    /// The reading stays that share of full scale below its demand.
    float Error = 0.0F;
};

/// Fills a workbook made from the health check's template, the way the program does.
/// @return the row of the overview where a further sequence would go
int FillSampleReport(Workbook& book, const std::vector<SampleSequence>& sequences);

/// The sequences of a short report: 4 sheets, 3 steps each, about 600 rows a sheet.
std::vector<SampleSequence> ShortReport();

} // namespace ombrix
