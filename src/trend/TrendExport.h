#pragma once

#include "trend/TrendData.h"
#include "trend/TrendFile.h"

#include <filesystem>
#include <vector>

namespace ombrix {

/// A trace that is shown, and in what.
struct ShownTrace {
    std::size_t Group = 0;
    std::size_t Trace = 0;
    TrendUnit Unit = TrendUnit::Bits;
};

/// What is to be written: the traces that are shown, in the stretch of time that is.
struct TrendSelection {
    std::vector<ShownTrace> Traces{};
    double From_s = 0.0;
    double To_s = 0.0;
};

/// Writes the samples of a selection as CSV: a line for every time at which one of the traces has
/// a sample; a trace that has none then, or a gap, has an empty field. Lines end with CR LF, the
/// decimal sign is a point. The file has its name when it is whole. May run on a thread of its
/// own, with a copy of the data. A cancelled one leaves nothing.
/// @throws DriveError
void ExportTrendCsv(const std::filesystem::path& path, const TrendData& data,
                    const TrendSelection& selection, TrendProgress& progress);

} // namespace ombrix
