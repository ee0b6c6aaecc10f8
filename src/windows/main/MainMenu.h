#pragma once

#include <QObject>

#include <functional>
#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace ombrix {

class ACUCommands;

/// The menus of the main window.
class MainMenu final : public QObject {
    Q_OBJECT

  public:
    explicit MainMenu(QMenuBar& bar);

    /// @param free no procedure runs @param operates there is a board that may be driven
    void TakeCommands(bool free, bool operates);

  signals:
    void DetectionWanted();
    void DataFolderWanted();
    void QuitWanted();
    /// A command for the unit behind the current board.
    void ACUCommandWanted(const std::function<void(ombrix::ACUCommands&)>& command);
    void EPROMFieldsWanted();
    void UARTsWanted();
    void HistoryWanted();
    void UnitsWanted();
    void TrendWanted();
    void RecordingWanted();
    /// @param file name of the guide in its folder
    void GuideWanted(const QString& file);
    void DiagnosticsWanted();
    void AboutWanted();

  private:
    void AddFile(QMenuBar& bar);
    void AddTools(QMenuBar& bar);
    void AddACUActions(QMenu& tools);
    void AddHelp(QMenuBar& bar);

    /// What no procedure may be disturbed by.
    std::vector<QAction*> m_WhenFree;
    /// What drives a board or writes to it.
    std::vector<QAction*> m_ACUActions;
};

} // namespace ombrix
