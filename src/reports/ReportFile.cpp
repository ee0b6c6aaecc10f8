#include "reports/ReportFile.h"

#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"
#include "platform/text/Paths.h"
#include "reports/TemplateCheck.h"
#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <cstdlib>

namespace ombrix {

namespace {

void RequireFit(const Workbook& book, const ReportTemplate& report, const std::string& path) {
    const std::string reason = ReasonOf(CheckTemplate(book.Contents(), report));
    if (!reason.empty())
        throw UnsupportedTemplate(
            fmt::format("The template \"{}\" cannot be used: {}", path, reason));
}

} // namespace

OpenedWorkbook OpenWorkbookFromTemplate(const ReportTools& tools, const ReportTemplate& report) {
    Platform& world = tools.TheStation.World;
    const std::string path = tools.Templates + report.File;
    OpenedWorkbook opened;
    try {
        opened.Application = tools.Launcher();
        const auto file = FindTemplateFile(world.Files, path);
        if (!file) {
            world.Messages.Ask({"Unable to find File: \r\n\r\n  " + path, MessageIcon::Information,
                                MessageButtons::Ok});
            return opened;
        }
        opened.Book = &opened.Application->Add(*file);
        RequireFit(*opened.Book, report, *file);
        opened.Sheet = &opened.Book->Sheet(1);
    } catch (const SpreadsheetError& error) {
        opened.Book = nullptr;
        opened.Error = error.what();
    }
    return opened;
}

OpenedWorkbook OpenExcel(const ReportTools& tools, const std::string& message,
                         const ReportTemplate& report) {
    tools.Wait.Show(message);
    tools.TheStation.World.Events.ProcessPendingEvents();
    return OpenWorkbookFromTemplate(tools, report);
}

namespace {

void TellOfFailure(const ReportTools& tools, const std::string& heading,
                   const std::string& reason) {
    TellOperator(tools.TheStation.World, heading + "\r\n\r\n" + reason, MessageIcon::Critical);
}

/// A missing template has been told already.
void TellWhyNotOpened(const ReportTools& tools, const OpenedWorkbook& opened) {
    if (!opened && !opened.Error.empty())
        TellOfFailure(tools, "The report could not be opened.", opened.Error);
}

} // namespace

OpenedWorkbook OpenFilled(const ReportTools& tools, const std::string& message,
                          const ReportTemplate& report,
                          const std::function<void(Workbook&)>& fill) {
    OpenedWorkbook opened = OpenExcel(tools, message, report);
    if (!opened) {
        tools.Wait.Close();
        TellWhyNotOpened(tools, opened);
        return {};
    }
    try {
        fill(*opened.Book);
        tools.Wait.Close();
        return opened;
    } catch (const std::exception& error) {
        tools.Wait.Close();
        TellOfFailure(tools, "The report could not be filled.", error.what());
        return {};
    }
}

void TellIfUnusable(const ReportTools& tools, const ReportTemplate& report) {
    TellWhyNotOpened(tools, OpenWorkbookFromTemplate(tools, report));
}

bool SaveWorkbookAs(Workbook& workbook, const std::string& path, std::string* reason) {
    SpreadsheetApplication& application = workbook.Application();
    const bool knowsBinaryFormat = std::strtod(application.Version().c_str(), nullptr) >= 12.0;
    try {
        workbook.SaveAs(path, knowsBinaryFormat ? FileFormat::Excel8 : FileFormat::ByExtension);
    } catch (const SpreadsheetError& error) {
        if (reason != nullptr)
            *reason = error.what();
        application.SetVisible(true);
    }
    return true;
}

std::optional<std::filesystem::path> KeepWorkbook(Platform& world, Workbook& workbook,
                                                  const std::string& fileName) {
    try {
        workbook.SaveAs(Paths::Temporary + fileName, FileFormat::ByExtension);
        const std::filesystem::path path = world.Files.RealPath(workbook.FullName());
        TellOperator(world,
                     "The report has been kept in the folder for temporary files:\r\n\r\n   " +
                         path.string() + "\r\n\r\nPlease move it to a safe place.",
                     MessageIcon::Information);
        return path;
    } catch (const std::exception& error) {
        TellOperator(world,
                     std::string("The report could not be kept in the folder for temporary files "
                                 "either:\r\n\r\n") +
                         error.what(),
                     MessageIcon::Critical);
        return std::nullopt;
    }
}

namespace {

/// The common end of all calibration workbooks: how they are saved, shown and, if all else fails,
/// kept.
class WorkbookSaving {
  public:
    WorkbookSaving(const ReportTools& tools, OpenedWorkbook& workbook, std::string fileName,
                   bool autoSave)
        : m_World(tools.TheStation.World), m_Workbook(workbook), m_WantedName(fileName),
          m_FileName(std::move(fileName)), m_AutoSave(autoSave) {}

    StoredReport Run() {
        for (;;) {
            try {
                return Attempt();
            } catch (const SpreadsheetError& error) {
                if (!AskToRetry(error))
                    return Keep(error.what());
                m_FileName.clear();
            }
        }
    }

  private:
    StoredReport Attempt() {
        std::string trouble;
        SaveWorkbookAs(*m_Workbook.Book, m_FileName, &trouble);
        const std::filesystem::path file = m_World.Files.RealPath(m_Workbook.Book->FullName());
        if (!trouble.empty())
            TellWhereItLies(trouble, file);
        if (m_AutoSave)
            Show(WindowState::Minimised);
        else if (AskToView())
            Open(file);
        else
            CloseWorkbook();
        return {file, trouble.empty()};
    }

    void TellWhereItLies(const std::string& reason, const std::filesystem::path& file) const {
        const std::string why =
            m_FileName.empty() ? "The folder or the name of the workbook is missing." : reason;
        TellOperator(m_World,
                     why + "\r\n\r\nThe workbook has been kept as:\r\n\r\n   " + file.string(),
                     MessageIcon::Warning);
    }

    bool AskToView() const {
        return AskYesNo({"Would you like to view the results now?", MessageIcon::Question,
                         MessageButtons::YesNo});
    }

    bool AskToRetry(const SpreadsheetError& error) const {
        constexpr int applicationError = 1004;
        const std::string reason = error.Number() == applicationError
                                       ? "Please check that the file is not already open in Excel."
                                       : fmt::format("{} - {}", error.Number(), error.what());
        Message question{"There was en error saving the Audit Data. The error is shown below."
                         "\r\n\r\n" +
                             reason + "\r\n\r\nWould you like to retry saving the data?",
                         MessageIcon::Question, MessageButtons::YesNo};
        question.DeclinedUnattended = true;
        return AskYesNo(question);
    }

    /// While the program is being closed nothing is asked; that counts as No.
    bool AskYesNo(const Message& question) const {
        return !m_World.Events.ProgramEnding() && m_World.Messages.Ask(question) == Answer::Yes;
    }

    void Show(WindowState state) {
        m_Workbook.Application->SetVisible(true);
        m_Workbook.Application->SetWindowState(state);
    }

    void Open(const std::filesystem::path& file) {
        Show(WindowState::Maximised);
        if (!m_World.Documents.OpenDocument(file))
            TellOperator(m_World,
                         "The desktop has no program that opens the workbook:\r\n\r\n   " +
                             file.string(),
                         MessageIcon::Warning);
    }

    void CloseWorkbook() {
        m_Workbook.Book->Close();
        m_Workbook.Book = nullptr;
        m_Workbook.Sheet = nullptr;
        if (m_Workbook.Application->WorkbookCount() == 0)
            m_Workbook.Application->Quit();
    }

    StoredReport Keep(const std::string& reason) {
        TellOperator(m_World, "The workbook could not be saved.\r\n\r\n" + reason,
                     MessageIcon::Critical);
        return {KeepWorkbook(m_World, *m_Workbook.Book, NameForKeeping()), false};
    }

    std::string NameForKeeping() const {
        const std::string name = m_WantedName.substr(m_WantedName.find_last_of('\\') + 1);
        if (name.empty())
            return "ACU_" + DateText(m_World.Time.Now(), "yymmdd_hhnnss") + ".xlsx";
        return name.substr(0, name.find_last_of('.')) + ".xlsx";
    }

    Platform& m_World;
    OpenedWorkbook& m_Workbook;
    std::string m_WantedName;
    /// Empty from the second attempt on.
    std::string m_FileName;
    bool m_AutoSave;
};

} // namespace

StoredReport SaveCalibrationExcelWorkbook(const ReportTools& tools, OpenedWorkbook& workbook,
                                          std::string fileName, bool autoSave) {
    return WorkbookSaving(tools, workbook, std::move(fileName), autoSave).Run();
}

} // namespace ombrix
