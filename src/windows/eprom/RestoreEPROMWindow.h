#pragma once

#include "board/Station.h"
#include "board/eprom/EpromBackups.h"
#include "windows/desktop/FileQuestion.h"

#include <QDialog>

#include <filesystem>
#include <vector>

class QLabel;
class QLayout;
class QPushButton;
class QTreeWidget;

namespace ombrix {

class DifferenceList;

/// Lists the saved contents of EPROMs, newest first, each with what came after it, shows field by
/// field what restoring one to the current board will change, and asks whether it shall.
class RestoreEPROMWindow final : public QDialog {
    Q_OBJECT

  public:
    /// @throws BoardError when the board's EPROM cannot be read
    RestoreEPROMWindow(Station& station, QWidget* parent);

    /// What is to be restored, when the window was accepted.
    const EpromImage& Content() const { return *m_Chosen; }

    FileQuestion AskFile;

  private:
    QWidget* MakeBackups();
    QWidget* MakeChanges();
    QLayout* MakeButtons();
    void ListAll();
    void ShowBackup();
    void AskForFile();
    void ShowContent(const std::filesystem::path& file, const std::optional<EpromImage>& content);

    Station& m_Station;
    /// What the board holds.
    EpromImage m_Now;
    std::vector<EpromBackup> m_Backups;
    std::optional<EpromImage> m_Chosen;
    QTreeWidget* m_List = nullptr;
    QLabel* m_Origin = nullptr;
    QLabel* m_Heading = nullptr;
    DifferenceList* m_Differences = nullptr;
    QPushButton* m_Restore = nullptr;
};

} // namespace ombrix
