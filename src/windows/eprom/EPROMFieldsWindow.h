#pragma once

#include "board/Station.h"
#include "board/eprom/EpromWriter.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QLayout;
class QPushButton;

namespace ombrix {

class EPROMFieldsTable;

/// The record in the current board's EPROM as a table of its fields. What is entered is shown as
/// differences and written in one go; the last write can be undone. Entries that have not been
/// written belong to their unit: they wait when another board is selected, and are not given up
/// without a question.
class EPROMFieldsWindow final : public QWidget {
    Q_OBJECT

  public:
    explicit EPROMFieldsWindow(Station& station);

    void Open();
    /// The EPROM may hold something else, or another board is current: it is read when the events
    /// at hand are done with, once for all of them.
    void ShowBoard() { m_Soon.start(); }
    /// The current board does not answer, or answers again.
    void ShowLost(bool lost);
    /// "2 changes of the EPROM of ACU00301 have not been written."; empty where there are none.
    QString UnwrittenText() const;
    /// Closes without a question.
    void GiveUp();

  signals:
    /// The EPROM has been written, or a part of it.
    void Written();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QLayout* MakeButtons();
    QPushButton* AddCommand(QLayout& row, const char* objectName, const QString& caption,
                            const QString& whatItDoes, void (EPROMFieldsWindow::*command)());
    void ShowBoardNow();
    void ReadBoard();
    void Write();
    void Undo();
    void Discard();
    void WriteShown(const std::function<EpromEnd(const EpromProgress&)>& writing);
    bool Agreed(const QString& title, const QString& question,
                const std::vector<EpromDifference>& differences);
    void UpdateCommands();
    void ProcedureRunning(bool running);
    QString WhyNothingCanBeWritten() const;
    QString StateText() const;
    void ShowState(const QString& text);
    QString UnitName() const;

    Station& m_Station;
    QLabel* m_Unit;
    EPROMFieldsTable* m_Table;
    QLabel* m_State;
    QPushButton* m_Write = nullptr;
    QPushButton* m_Discard = nullptr;
    QPushButton* m_Undo = nullptr;
    QPushButton* m_Read = nullptr;
    std::int32_t m_Serial = 0;
    bool m_Lost = false;
    /// Why the EPROM could not be read; empty when it was.
    QString m_Unread;
    /// Who else has the board; empty when nobody has.
    QString m_InUse;
    /// How the last writing ended, until something is entered.
    QString m_Told;
    QTimer m_Soon;
    Subscription m_Procedures;
};

} // namespace ombrix
