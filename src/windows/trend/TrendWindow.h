#pragma once

#include "board/Station.h"
#include "trend/TrendRecorder.h"
#include "windows/desktop/FileQuestion.h"
#include "windows/trend/TrendJob.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class QCheckBox;
class QLabel;
class QLayout;
class QProgressBar;
class QPushButton;

namespace ombrix {

class TrendPlotWidget;
class TrendTable;
class TrendUnitChoosers;

/// Outputs, inputs, flows and pressure over the time: live from whatever reads the boards, since
/// the window was made, or from a file. Needs no board, and disturbs no procedure: it asks nothing
/// of boards, reads files on a thread of its own and never waits for an answer.
class TrendWindow final : public QWidget {
    Q_OBJECT

  public:
    explicit TrendWindow(Station& station);
    ~TrendWindow() override;

    /// Shows the window with what it showed last; at first, live.
    void Open();
    /// Asks for a file and shows it.
    void OpenRecording();
    /// Reads a file and shows it; what is wrong with it is told in the window.
    void ShowFile(const QString& path);

    FileQuestion AskFileToOpen;
    FileQuestion AskFileToWrite;

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    QLayout* MakeSourceRow();
    QLayout* MakeViewRow();
    QLayout* MakeFileRow();
    void Connect();
    bool IsLive() const { return m_File == nullptr; }
    const TrendData& Data();
    void ShowLive();
    void ShowData();
    void ShowTraces();
    void ShowLines();
    void ShowValues();
    void ShowState(const QString& text);
    QString ScalesText();
    void Pause(bool paused);
    void Tick();
    void ExportPicture();
    void ExportTable();
    void Write(const QString& ending, const std::function<void(const QString& file)>& write);
    void ShowJob(bool running);
    void JobEnded(const QString& error);

    Station& m_Station;
    TrendRecorder m_Recorder;
    /// What is shown instead of the recorder's.
    std::shared_ptr<const TrendData> m_File;
    TrendPlotWidget* m_Plot;
    TrendTable* m_Table;
    QLabel* m_Title;
    QLabel* m_State;
    QLabel* m_CursorTimes;
    TrendUnitChoosers* m_Units = nullptr;
    QCheckBox* m_ShowCursors = nullptr;
    QPushButton* m_OpenFile = nullptr;
    QPushButton* m_Live = nullptr;
    QPushButton* m_Pause = nullptr;
    QPushButton* m_All = nullptr;
    QPushButton* m_ExportPicture = nullptr;
    QPushButton* m_ExportTable = nullptr;
    QPushButton* m_Cancel = nullptr;
    QProgressBar* m_Progress = nullptr;
    QTimer m_Ticks;
    TrendJob* m_Job;
    std::size_t m_TracesShown = 0;
    QString m_ScalesShown;
    /// The view stays where it is while the boards are read.
    bool m_Paused = false;
};

} // namespace ombrix
