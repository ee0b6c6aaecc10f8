#include "calibration/run/CalibrationLog.h"

#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"

#include <utility>

namespace ombrix {

void CalibrationLog::OpenCalibrationLog(const std::string& prefix,
                                        const std::string& serialNumber) {
    CloseCalibrationLog();
    const OleDate now = m_World.Time.Now();
    const std::string name = prefix + "_" + DateText(now, "yymmdd_hhnnss") + ".txt";
    m_Files.clear();
    m_AllStored = true;
    try {
        m_File.emplace(
            LineFile::BeginAnywhere(m_World, "calibration log",
                                    GetSystemFolder(m_World.Files, Paths::CalibrationLogs, name)));
    } catch (const DriveError& error) {
        NoteTrouble(error.what());
    }
    LogCalibration("ACU Calibration," + serialNumber);
    LogCalibration("Date," + DateText(now, "dd/mm/yyyy hh:nn:ss"));
    LogCalibration("");
}

void CalibrationLog::LogCalibration(std::string_view line) {
    if (!m_File)
        return;
    try {
        m_File->WriteHeading(line); // a log that goes on elsewhere is whole there
        m_Files = m_File->Files();
        if (!m_File->Trouble().empty())
            NoteTrouble(m_File->Trouble());
    } catch (const DriveError& error) {
        NoteTrouble(error.what());
        m_File.reset();
    }
}

void CalibrationLog::CloseCalibrationLog() {
    m_File.reset();
    // Not while air is driven: a question that waits for somebody would hold up the run.
    if (!m_Trouble.empty())
        m_World.Messages.Ask(
            {std::exchange(m_Trouble, {}), MessageIcon::Warning, MessageButtons::Ok});
}

void CalibrationLog::NoteTrouble(const std::string& trouble) {
    m_Trouble = trouble;
    m_AllStored = false;
}

} // namespace ombrix
