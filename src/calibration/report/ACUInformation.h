#pragma once

#include "reports/ReportFile.h"

#include <string>

namespace ombrix {

/// What became of the information workbook.
struct InformationReport : StoredReport {
    /// What it does not hold and should; the operator has been told.
    std::string Lack{};
};

/// The record and the EPROM of the unit behind the current board as a workbook.
InformationReport OutputACUData(const ReportTools& tools);

} // namespace ombrix
