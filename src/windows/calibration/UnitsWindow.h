#pragma once

#include "board/Station.h"
#include "calibration/history/UnitSummary.h"
#include "windows/desktop/FileQuestion.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace ombrix {

/// How every unit stands that has a history: last runs, verdict, when it is due. Needs no board.
class UnitsWindow final : public QWidget {
    Q_OBJECT

  public:
    explicit UnitsWindow(Station& station);

    /// Reads the histories anew and shows the window.
    void Open();

    FileQuestion AskFileToWrite;

  signals:
    /// The history of a unit is asked for.
    void HistoryWanted(int serial);

  private:
    QLayout* MakeFilters();
    QLayout* MakeButtons();
    void Read();
    /// Hides what the filters leave out.
    void Filter();
    void Export();
    void ShowState(const QString& text);

    Station& m_Station;
    QLineEdit* m_Filter;
    QCheckBox* m_DueOnly;
    QTreeWidget* m_List;
    QLabel* m_State;
    QPushButton* m_Export;
    std::vector<UnitSummary> m_Units;
    Subscription m_Procedures;
};

} // namespace ombrix
