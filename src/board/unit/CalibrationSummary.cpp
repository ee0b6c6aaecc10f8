#include "board/unit/CalibrationSummary.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

namespace ombrix {

namespace {

constexpr Colour NotKnownOrange{192, 64, 0};

} // namespace

ColouredText ShowLastCalibration(const LastCalibration& calibration, bool initialised) {
    constexpr Colour passedBlue{0, 0, 255};
    constexpr Colour failedRed{255, 0, 0};
    constexpr Colour neverGrey{128, 128, 128};
    if (!initialised)
        return {"ACU Data Not Initialised", NotKnownOrange};
    if (!(calibration.CalDate.Days() > 0.0))
        return {"Never", neverGrey};
    return {DateText(calibration.CalDate, "dd/mm/yyyy hh:nn") + " - " + Trimmed(calibration.User),
            calibration.Passed ? passedBlue : failedRed};
}

CalibrationSummary SumUp(const ACURecord& record) {
    if (!record.IsRead()) {
        const ColouredText unread{"EPROM cannot be read", NotKnownOrange};
        return {std::nullopt, unread, unread, unread, unread, ""};
    }
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
