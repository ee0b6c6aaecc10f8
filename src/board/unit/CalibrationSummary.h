#pragma once

#include "board/unit/ACUCalibration.h"
#include "platform/text/Colour.h"

#include <optional>
#include <string>

namespace ombrix {

/// A text and the colour that it shows in.
struct ColouredText {
    std::string Text;
    Colour TextColour;
};

/// What is shown of a last calibration: its date and user, blue when it passed and red when it
/// failed; "Never" in grey; or, in orange, that the record is not initialised.
ColouredText ShowLastCalibration(const LastCalibration& calibration, bool initialised);

/// The state of an ACU's record as the main window and the terminal show it.
struct CalibrationSummary {
    /// Nothing when the record could not be read; MFCNumber is empty then.
    std::optional<bool> ACUInitialised;
    ColouredText VelocitySystem;
    ColouredText VelocityAudit;
    ColouredText PressureSystem;
    ColouredText PressureAudit;
    /// Reduced to A–Z and 0–9.
    std::string MFCNumber;
};

/// Sums up a record.
CalibrationSummary SumUp(const ACURecord& record);

/// Reads the record of a unit from its board's EPROM and sums it up.
CalibrationSummary ReadCalibrationSummary(ACUCalibration& unit);

} // namespace ombrix
