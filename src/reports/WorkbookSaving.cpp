// The common end of all calibration workbooks: how they are saved, shown and, if all else fails,
// kept.
#include "platform/os/ProgramLog.h"
#include "platform/text/OleDate.h"
#include "reports/CalibrationWorkbooks.h"
#include "reports/ReportFile.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// Passes everything on to a workbook and remembers why it could not be saved: a save that
/// fails counts as done, but the operator is to know the reason.
class SaveWatch final : public Workbook {
  public:
    explicit SaveWatch(Workbook& book) : m_Book(book) {}

    const std::string& Reason() const { return m_Reason; }

    SpreadsheetApplication& Application() override { return m_Book.Application(); }
    int WorksheetCount() const override { return m_Book.WorksheetCount(); }
    Worksheet& Sheet(int position) override { return m_Book.Sheet(position); }
    Worksheet& Sheet(std::string_view name) override { return m_Book.Sheet(name); }
    void SaveAs(std::string_view path, FileFormat format) override {
        try {
            m_Book.SaveAs(path, format);
        } catch (const SpreadsheetError& error) {
            m_Reason = error.what();
            throw;
        }
    }
    std::string FullName() const override { return m_Book.FullName(); }
    void Close() override { m_Book.Close(); }

  private:
    Workbook& m_Book;
    std::string m_Reason;
};

class WorkbookSaving {
  public:
    WorkbookSaving(const CalibrationServices& services, OpenedWorkbook& workbook,
                   std::string fileName, bool autoSave)
        : m_World(services.TheStation.World), m_Workbook(workbook), m_WantedName(fileName),
          m_FileName(std::move(fileName)), m_AutoSave(autoSave) {}

    WorkbookOutcome Run() {
        for (;;) {
            try {
                return Attempt();
            } catch (const SpreadsheetError& error) {
                if (!WantsRetry(error))
                    return Keep(error.what());
                m_FileName.clear();
            }
        }
    }

  private:
    WorkbookOutcome Attempt() {
        SaveWatch watch(*m_Workbook.Book);
        SaveWorkbookAs(watch, m_FileName);
        const std::filesystem::path file = m_World.Files.RealPath(watch.FullName());
        if (!watch.Reason().empty())
            TellWhereItLies(watch.Reason(), file);
        if (m_AutoSave)
            Show(WindowState::Minimised);
        else if (WantsToView())
            Open(file);
        else
            CloseWorkbook();
        return {true, file, watch.Reason().empty()};
    }

    void TellWhereItLies(const std::string& reason, const std::filesystem::path& file) const {
        const std::string why =
            m_FileName.empty() ? "The folder or the name of the workbook is missing." : reason;
        TellOperator(m_World,
                     why + "\r\n\r\nThe workbook has been kept as:\r\n\r\n   " + file.string(),
                     MessageIcon::Warning);
    }

    bool WantsToView() const {
        return AskYesNo({"Would you like to view the results now?", MessageIcon::Question,
                         MessageButtons::YesNo});
    }

    bool WantsRetry(const SpreadsheetError& error) const {
        constexpr int applicationError = 1004;
        const std::string reason = error.Number() == applicationError
                                       ? "Please check that the file is not already open in Excel."
                                       : fmt::format("{} - {}", error.Number(), error.what());
        Message question{"There was en error saving the Audit Data. The error is shown below."
                         "\r\n\r\n" +
                             reason + "\r\n\r\nWould you like to retry saving the data?",
                         MessageIcon::Question, MessageButtons::YesNo};
        question.AsksRetry = true;
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

    WorkbookOutcome Keep(const std::string& reason) {
        TellOperator(m_World, "The workbook could not be saved.\r\n\r\n" + reason,
                     MessageIcon::Critical);
        return {false, KeepWorkbook(m_World, *m_Workbook.Book, NameForKeeping()), false};
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

WorkbookOutcome SaveCalibrationExcelWorkbook(const CalibrationServices& services,
                                             OpenedWorkbook& workbook, std::string fileName,
                                             bool autoSave) {
    return WorkbookSaving(services, workbook, std::move(fileName), autoSave).Run();
}

} // namespace ombrix
