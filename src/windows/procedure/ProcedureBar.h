#pragma once

#include "board/Station.h"
#include "windows/procedure/ProcedureTimes.h"
#include "windows/widgets/ValueLabel.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <filesystem>

class QProgressBar;
class QPushButton;

namespace ombrix {

/// The foot of the main window, for every procedure of every window: what runs, what it does, how
/// long it will take, and its Cancel; afterwards how it ended and why, with its report. Stop air
/// stands there always.
class ProcedureBar final : public QWidget {
    Q_OBJECT

  public:
    ProcedureBar(Station& station, QWidget* parent);

    /// Shows what the procedure has told since.
    void Refresh();

  signals:
    void StopAirWanted();

  private:
    void LayOut();
    void ShowRunning();
    void ShowEnd();
    void OpenReport(bool folder);

    Station& m_Station;
    ValueLabel* m_What;
    ValueLabel* m_Left;
    QProgressBar* m_Progress;
    QPushButton* m_Cancel;
    QPushButton* m_Open;
    QPushButton* m_Folder;
    QPushButton* m_StopAir;
    QTimer m_Refresh;
    ProcedureTimes m_Times;
    std::filesystem::path m_Report;
};

} // namespace ombrix
