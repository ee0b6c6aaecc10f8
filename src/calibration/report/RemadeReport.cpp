#include "calibration/report/RemadeReport.h"

#include "calibration/report/AuditSheets.h"
#include "calibration/report/CalibrationReport.h"
#include "calibration/unit/ACUCalibration.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace ombrix {

namespace {

/// While it lives, workbooks are saved into a folder that is not there yet.
class OwnSaveFolder {
  public:
    OwnSaveFolder(Station& station, const clsACUCalibration& record)
        : m_Station(station),
          m_Usual(std::exchange(station.g_AutoSaveFolder, AutoSaveFolderName(station, record))) {
        const std::string name = station.g_AutoSaveFolder;
        for (int number = 2; station.World.Files.FolderExists(station.g_AutoSaveFolder); ++number)
            station.g_AutoSaveFolder = fmt::format("{} ({})", name, number);
    }
    OwnSaveFolder(const OwnSaveFolder&) = delete;
    OwnSaveFolder& operator=(const OwnSaveFolder&) = delete;
    ~OwnSaveFolder() { m_Station.g_AutoSaveFolder = std::move(m_Usual); }

  private:
    Station& m_Station;
    std::string m_Usual;
};

CalibrationServices At(const CalibrationServices& services, OleDate date) {
    CalibrationServices dated = services;
    dated.DateOfReports = date;
    return dated;
}

/// Nobody has declined the sheet of an audit that was cut off when all had been measured.
bool WantsAuditSheet(const RecordedRun& run) {
    return CalibrationKindOf(run.Kind) == CalibrationKind::Audit &&
           run.AuditSheet.value_or(!run.Ended && run.Complete);
}

void MakeVelocityReport(const CalibrationServices& services, const clsACUCalibration& record,
                        const RecordedRun& run, RemadeReport& remade) {
    const CalibrationServices atStart = At(services, run.Start);
    CalibrationReport report(atStart, record);
    if (!report.Open(run.Velocity.Kind)) {
        remade.AllStored = false;
        return;
    }
    report.Fill(run.Velocity, run.Passed);
    if (WantsAuditSheet(run))
        AddWorkbook(remade, CreateAuditSheet_PV16(At(services, run.MeasuredAt), record,
                                                  run.Velocity, true));
    AddWorkbook(remade, report.Save(run.Velocity.Kind));
}

void MakePressureSheet(const CalibrationServices& services, const clsACUCalibration& record,
                       const RecordedRun& run, RemadeReport& remade) {
    std::array<float, 5> flows_ml_m{};
    for (std::size_t i = 0; i < std::min(run.Pressure.size(), flows_ml_m.size()); ++i)
        flows_ml_m.at(i) = run.Pressure.at(i).Flow_ml_m;
    AddWorkbook(remade,
                CreateAuditSheet_PV17(At(services, run.MeasuredAt), record, flows_ml_m, true));
}

} // namespace

RemadeReport MakeReport(const CalibrationServices& services, const RecordedRun& run) {
    Station& station = services.TheStation;
    const clsACUCalibration record(station.World, station.Claims, run.Unit, run.Serial);
    const OwnSaveFolder folder(station, record);
    RemadeReport remade;
    if (IsVelocity(run.Kind))
        MakeVelocityReport(services, record, run, remade);
    else if (WantsAuditSheet(run) || (!run.Ended && run.Kind == RunKind::PressureAudit))
        MakePressureSheet(services, record, run, remade);
    return remade;
}

} // namespace ombrix
