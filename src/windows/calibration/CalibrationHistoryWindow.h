#pragma once

#include "board/Station.h"
#include "calibration/history/CalibrationHistory.h"
#include "windows/desktop/FileQuestion.h"

#include <QWidget>

#include <functional>

class QComboBox;
class QLabel;
class QLayout;
class QPlainTextEdit;
class QPushButton;
class QTreeWidget;

namespace ombrix {

class DriftPlotWidget;

/// The calibrations that units have had: the runs of a unit, what each came to, and how its
/// points have drifted. Needs no board.
class CalibrationHistoryWindow final : public QWidget {
    Q_OBJECT

  public:
    explicit CalibrationHistoryWindow(Station& station);

    /// Reads the histories anew and shows the window, with the current board's unit if it has one.
    void Open();
    /// The same with a unit that is asked for.
    void OpenUnit(std::int32_t serial);

    FileQuestion AskFileToWrite;

  private:
    QLayout* MakeChoosers();
    QLayout* MakeButtons();
    void FillUnits(std::int32_t wanted);
    void ShowUnit();
    void ShowRun();
    void ShowDrift();
    void MarkRun();
    const HistoryEntry* SelectedRun() const;
    void ShowState(const QString& text);
    void ProcedureRunning(bool running);
    std::int32_t Serial() const;
    QString UnitName() const;
    void Export(const QString& ending, const std::function<std::string()>& content);

    Station& m_Station;
    QComboBox* m_Units;
    QComboBox* m_Kinds;
    QComboBox* m_Channels;
    QComboBox* m_Scales;
    QTreeWidget* m_Runs;
    QPlainTextEdit* m_Details;
    DriftPlotWidget* m_Plot;
    QLabel* m_State;
    QPushButton* m_ExportPicture;
    QPushButton* m_ExportTable;
    CalibrationHistory m_History;
    Subscription m_Procedures;
};

} // namespace ombrix
