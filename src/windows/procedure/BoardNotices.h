#pragma once

#include "board/Station.h"

#include <QWidget>

#include <optional>
#include <string>

class QLabel;
class QTabBar;

namespace ombrix {

class ValueLabel;

/// The tabs of the boards with what must not be overlooked, above everything else: that the bench
/// is a simulated one, that a board does not answer any more, that it is read only because another
/// program has it, and that its EPROM was written in part. Marks the tabs of boards that are read
/// only or whose outputs stand above zero.
class BoardNotices final : public QWidget {
    Q_OBJECT

  public:
    /// @param simulation what is simulated ("acu, time × 60"); empty for real boards
    BoardNotices(Station& station, QTabBar& tabs, const std::string& simulation, QWidget* parent);

    /// The current board has just been asked. @param answered something was read
    void NoteAnswer(bool answered);
    /// The current board has not answered for most of a second.
    bool IsLost() const { return m_Banner.has_value(); }
    /// The current board is not this program's to drive.
    bool IsReadOnly() const { return m_IsReadOnly; }
    /// Marks the tabs anew, and tells of a board that is read only. True when a board drives
    /// something.
    bool MarkTabs();
    /// Another board is shown, or boards were detected anew.
    void Reset();

  private:
    void ShowLost(bool lost);
    void ShowReadOnly();
    void ShowPartialWrite();
    QString TipOf(const AIB& board) const;

    Station& m_Station;
    QTabBar& m_Tabs;
    ValueLabel* m_Simulation;
    QLabel* m_Lost;
    QLabel* m_ReadOnly;
    QLabel* m_PartialWrite;
    bool m_IsReadOnly = false;
    /// Monotonic seconds since the board has not answered.
    std::optional<double> m_Since_s;
    /// The banner's date, while it stands.
    std::optional<std::string> m_Banner;
};

} // namespace ombrix
