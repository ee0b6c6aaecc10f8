#include "board/unit/CalibrationSummary.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

namespace ombrix {

ColouredText ShowLastCalibration(const LastCalibration& calibration, bool initialised) {
    constexpr Colour passedBlue{0, 0, 255};
    constexpr Colour failedRed{255, 0, 0};
    constexpr Colour neverGrey{128, 128, 128};
    constexpr Colour notInitialisedOrange{192, 64, 0};
    if (!initialised)
        return {"ACU Data Not Initialised", notInitialisedOrange};
    if (!(calibration.CalDate.Days() > 0.0))
        return {"Never", neverGrey};
    return {DateText(calibration.CalDate, "dd/mm/yyyy hh:nn") + " - " + Trimmed(calibration.User),
            calibration.Passed ? passedBlue : failedRed};
}

CalibrationSummary SumUp(const ACURecord& record) {
    const bool initialised = record.ACUInitialised;
    return {initialised,
            ShowLastCalibration(record.LastCalDone_Velocity_System(), initialised),
            ShowLastCalibration(record.LastCalDone_Velocity_Audit(), initialised),
            ShowLastCalibration(record.LastCalDone_Pressure_System(), initialised),
            ShowLastCalibration(record.LastCalDone_Pressure_Audit(), initialised),
            record.MFCSerialNumber_Clean()};
}

CalibrationSummary ReadCalibrationSummary(ACUCalibration& unit) {
    unit.ReadEPROMValues();
    return SumUp(unit.Record());
}

} // namespace ombrix
