#include "calibration/run/CalibrationLog.h"

#include "platform/os/ProgramLog.h"
#include "platform/ports/Folders.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"

#include <utility>

namespace ombrix {

void CalibrationLog::OpenCalibrationLog(const std::string& prefix,
                                        const std::string& serialNumber) {
    CloseCalibrationLog();
    const OleDate now = m_World.Time.Now();
    m_Name = prefix + "_" + DateText(now, "yymmdd_hhnnss") + ".txt";
    m_Lines.clear();
    m_Files.clear();
    m_AllStored = true;
    try {
        Open(GetSystemFolder(m_World.Files, Paths::CalibrationLogs, m_Name));
    } catch (const DriveError& error) {
        GoOnElsewhere(error.what());
    }
    LogCalibration("ACU Calibration," + serialNumber);
    LogCalibration("Date," + DateText(now, "dd/mm/yyyy hh:nn:ss"));
    LogCalibration("");
}

void CalibrationLog::LogCalibration(std::string_view line) {
    m_Lines.emplace_back(line);
    try {
        Store(line);
    } catch (const DriveError& error) {
        GoOnElsewhere(error.what());
    }
}

void CalibrationLog::CloseCalibrationLog() {
    m_File.reset();
    // Not while air is driven: a question that waits for somebody would hold up the run.
    if (!m_Trouble.empty())
        m_World.Messages.Ask(
            {std::exchange(m_Trouble, {}), MessageIcon::Warning, MessageButtons::Ok});
}

void CalibrationLog::Open(const std::string& path) {
    m_File = m_World.Files.OpenForWriting(path);
    m_Files.push_back(m_File->RealPath());
}

void CalibrationLog::Store(std::string_view line) {
    if (m_File)
        m_File->Write(std::string(line) + "\r\n");
}

void CalibrationLog::GoOnElsewhere(const std::string& reason) {
    m_File.reset();
    // The second place has failed as well: the operator knows, and the run must not end for it.
    if (!m_AllStored)
        return;
    m_AllStored = false;
    std::string outcome;
    try {
        Open(Paths::Temporary + m_Name);
        for (const std::string& line : m_Lines)
            Store(line);
        outcome = "It goes on in the folder for temporary files:\r\n\r\n   " +
                  m_Files.back().string() + "\r\n\r\nPlease move it to a safe place.";
    } catch (const DriveError& error) {
        m_File.reset();
        outcome = std::string("It cannot be kept in the folder for temporary files either:") +
                  "\r\n\r\n" + error.what();
    }
    m_Trouble = "The calibration log cannot be written:\r\n\r\n" + reason + "\r\n\r\n" + outcome;
    WriteLog(m_World, m_Trouble);
}

} // namespace ombrix
