#pragma once

#include "reports/CalibrationWorkbooks.h"

namespace ombrix {

/// The ACU information workbook: the board's identity, the record and the raw EPROM.
WorkbookOutcome OutputACUData(const CalibrationServices& services, clsAIB& board);

} // namespace ombrix
