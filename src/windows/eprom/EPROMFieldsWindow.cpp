#include "windows/eprom/EPROMFieldsWindow.h"

#include "board/eprom/EpromBackups.h"
#include "platform/ports/Clock.h"
#include "platform/text/OleDate.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/desktop/QtOperator.h"
#include "windows/eprom/ConfirmChangesWindow.h"
#include "windows/eprom/EPROMFieldsTable.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <QCloseEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <fmt/format.h>

namespace ombrix {

namespace {

/// How many differences the line below the table has room for.
constexpr std::size_t ListedChanges = 3;

} // namespace

EPROMFieldsWindow::EPROMFieldsWindow(Station& station)
    : m_Station(station), m_Unit(MakeCaption({}, this)), m_Table(new EPROMFieldsTable(this)),
      m_State(MakeCaption({}, this)) {
    Named(this, QStringLiteral("frmEPROMFields"), tr("EPROM Fields"));
    m_Unit->setObjectName(QStringLiteral("lblFieldsUnit"));
    m_State->setObjectName(QStringLiteral("lblFieldsState"));
    m_State->setWordWrap(true);
    constexpr int stateLines = 2;
    m_State->setMinimumHeight(stateLines * fontMetrics().lineSpacing());
    m_State->setAlignment(Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_Unit);
    layout->addWidget(m_Table, 1);
    layout->addWidget(m_State);
    layout->addLayout(MakeButtons());
    constexpr QSize comfortable(840, 620);
    resize(ScaledToFonts(*this, comfortable));
    connect(m_Table, &EPROMFieldsTable::EntriesChanged, this, &EPROMFieldsWindow::UpdateCommands);
    connect(m_Table, &EPROMFieldsTable::Judged, this,
            [this](const QString& error) { ShowState(error.isEmpty() ? StateText() : error); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    m_Soon.setSingleShot(true);
    connect(&m_Soon, &QTimer::timeout, this, &EPROMFieldsWindow::ShowBoardNow);
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
    m_Table->setFocus();
}

QPushButton* EPROMFieldsWindow::AddCommand(QLayout& row, const char* objectName,
                                           const QString& caption, const QString& whatItDoes,
                                           void (EPROMFieldsWindow::*command)()) {
    auto* button = MakeButton(QLatin1String(objectName), caption, this);
    button->setToolTip(whatItDoes);
    connect(button, &QPushButton::clicked, this, command);
    row.addWidget(button);
    return button;
}

QLayout* EPROMFieldsWindow::MakeButtons() {
    auto* row = new QHBoxLayout;
    m_Write = AddCommand(*row, "cmdWriteFields", tr("&Write…"),
                         tr("Shows what will change, and writes it after a question. What the "
                            "board holds now is saved before."),
                         &EPROMFieldsWindow::Write);
    m_Discard =
        AddCommand(*row, "cmdDiscardFields", tr("&Discard"),
                   tr("Gives up what was entered and not written."), &EPROMFieldsWindow::Discard);
    m_Undo = AddCommand(*row, "cmdUndoWrite", tr("&Undo last write…"),
                        tr("Brings back what the EPROM held before it was last written, after a "
                           "question."),
                        &EPROMFieldsWindow::Undo);
    m_Read =
        AddCommand(*row, "cmdReadFields", tr("&Read again"),
                   tr("Reads the EPROM. What was entered stays."), &EPROMFieldsWindow::ReadBoard);
    row->addStretch(1);
    auto* close = MakeButton(QStringLiteral("cmdClose"), tr("&Close"), this);
    close->setToolTip(tr("Closes the window; what has not been written is asked about."));
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    row->addWidget(close);
    return row;
}

void EPROMFieldsWindow::Open() {
    BringUp(*this);
    ShowBoardNow();
}

QString EPROMFieldsWindow::UnitName() const {
    return ToQt(fmt::format("ACU{:05}", m_Serial));
}

void EPROMFieldsWindow::ShowBoardNow() {
    if (!isVisible() || m_Station.Procedures.Running())
        return;
    const std::int32_t current = m_Station.CurrentAIB->SerialNumber();
    if (current != m_Serial && m_Table->HasEntries()) {
        UpdateCommands(); // they wait for their own board
        return;
    }
    m_Serial = current;
    m_Unit->setText(tr("Record in the EPROM of %1").arg(UnitName()));
    m_Unit->setAccessibleName(m_Unit->text());
    setWindowTitle(tr("EPROM Fields - %1").arg(UnitName()));
    ReadBoard();
}

void EPROMFieldsWindow::ReadBoard() {
    AIB& board = *m_Station.CurrentAIB;
    m_Unread.clear();
    m_InUse.clear();
    std::optional<EpromImage> content;
    try {
        content = EpromImage::Read(board);
        if (!m_Station.Claims.ClaimUnlessTaken(m_Serial))
            m_InUse = ToQt(m_Station.Claims.Holder(m_Serial));
    } catch (const std::exception& error) {
        m_Unread = ToQt(error.what());
    }
    m_Table->ShowContent(content, !board.IsUsb());
}

void EPROMFieldsWindow::ShowLost(bool lost) {
    if (lost == m_Lost)
        return;
    m_Lost = lost;
    if (!lost)
        ShowBoard();
    UpdateCommands();
}

void EPROMFieldsWindow::ProcedureRunning(bool running) {
    UpdateCommands();
    if (!running)
        ShowBoard();
}

QString EPROMFieldsWindow::WhyNothingCanBeWritten() const {
    if (m_Station.Procedures.Running())
        return tr("A procedure is running: nothing can be entered or written.");
    if (m_Station.CurrentAIB->SerialNumber() != m_Serial)
        return tr("Select the tab of %1 to write its changes, or discard them.").arg(UnitName());
    if (m_Lost)
        return tr("The board does not answer. Check its cable, then detect the boards again.");
    if (!m_Unread.isEmpty())
        return tr("The EPROM cannot be read: %1").arg(m_Unread);
    if (!m_InUse.isEmpty())
        return tr("The board is in use by %1. End that program, then read again.").arg(m_InUse);
    return {};
}

QString EPROMFieldsWindow::StateText() const {
    const QString obstacle = WhyNothingCanBeWritten();
    if (!obstacle.isEmpty())
        return obstacle;
    const QString wrong = m_Table->WrongEntry();
    if (!wrong.isEmpty())
        return wrong;
    const auto changes = m_Table->Changes();
    QStringList texts;
    for (std::size_t i = 0; i < std::min(changes.size(), ListedChanges); ++i)
        texts << ToQt(DifferenceText(changes[i]));
    if (changes.size() > ListedChanges)
        texts << tr("and %1 more").arg(changes.size() - ListedChanges);
    return texts.isEmpty() ? m_Told : tr("Not written: %1").arg(texts.join(QStringLiteral("; ")));
}

void EPROMFieldsWindow::ShowState(const QString& text) {
    m_State->setText(text);
    m_State->setAccessibleName(tr("State of the fields: %1").arg(text));
}

void EPROMFieldsWindow::UpdateCommands() {
    if (m_Table->HasEntries())
        m_Told.clear();
    const bool free = WhyNothingCanBeWritten().isEmpty();
    const bool running = m_Station.Procedures.Running();
    m_Table->TakeEntries(free);
    m_Write->setEnabled(free && m_Table->HasEntries() && m_Table->WrongEntry().isEmpty());
    m_Discard->setEnabled(!running && m_Table->HasEntries());
    m_Undo->setEnabled(free);
    m_Read->setEnabled(!running && m_Station.CurrentAIB->SerialNumber() == m_Serial);
    ShowState(StateText());
}

bool EPROMFieldsWindow::Agreed(const QString& title, const QString& question,
                               const std::vector<EpromDifference>& differences) {
    ConfirmChangesWindow form(title, question, differences, this);
    return form.exec() == QDialog::Accepted;
}

void EPROMFieldsWindow::Write() {
    WriteShown([this](const EpromProgress& progress) {
        const auto agreed = [this](const std::vector<EpromDifference>& differences) {
            return Agreed(tr("Write EPROM"),
                          tr("Write these changes to the EPROM of %1?").arg(UnitName()),
                          differences);
        };
        return WriteEPROMFields(m_Station, m_Table->Words(), agreed, progress);
    });
}

void EPROMFieldsWindow::Undo() {
    WriteShown([this](const EpromProgress& progress) {
        const auto backups = ListBackups(m_Station.World.Files);
        const EpromBackup* last =
            BeforeLastWrite(backups, m_Serial, EpromImage::Read(*m_Station.CurrentAIB));
        if (last == nullptr)
            throw EpromError(fmt::format("There is no write to undo: no saved content of ACU{:05} "
                                         "differs from what its EPROM holds.",
                                         m_Serial));
        if (!last->Content)
            throw EpromError("The content from before the last write cannot be read:\r\n\r\n   " +
                             last->File.string());
        const auto agreed = [&](const std::vector<EpromDifference>& differences) {
            return Agreed(tr("Undo Last Write"),
                          tr("Undo the last write to the EPROM of %1, \"%2\"? This brings back "
                             "what was saved before it, on %3.")
                              .arg(UnitName(), ToQt(last->Purpose), ToQt(IsoText(last->When))),
                          differences);
        };
        return RestoreEPROM(m_Station, *last->Content, agreed, progress);
    });
}

void EPROMFieldsWindow::WriteShown(const std::function<EpromEnd(const EpromProgress&)>& writing) {
    if (m_Station.Procedures.Running())
        return;
    EpromEnd ended = EpromEnd::BrokenOff;
    Guarded(m_Station.World.Messages, [&] {
        ended = writing([this](std::int32_t address) {
            ShowState(tr("Writing %1").arg(address));
            return true;
        });
    });
    if (ended == EpromEnd::Declined || m_Station.World.Events.ProgramEnding())
        return;
    if (ended == EpromEnd::Done)
        m_Told = tr("Written and read back at %1.")
                     .arg(ToQt(DateText(m_Station.World.Time.Now(), "hh:nn:ss")));
    ShowBoard(); // what the EPROM holds, also after a failure
    Guarded(m_Station.World.Messages, [this] { emit Written(); });
}

void EPROMFieldsWindow::Discard() {
    m_Table->Discard();
    ShowBoard();
}

QString EPROMFieldsWindow::UnwrittenText() const {
    return m_Table->HasEntries()
               ? tr("What was entered for the EPROM of %1 has not been written.").arg(UnitName())
               : QString();
}

void EPROMFieldsWindow::GiveUp() {
    m_Table->Discard();
    close();
}

void EPROMFieldsWindow::closeEvent(QCloseEvent* event) {
    if (!m_Table->HasEntries())
        return;
    event->ignore();
    AskWhileRunning(*this, UnwrittenText() + QStringLiteral("\n\n") + tr("Discard it?"),
                    [this] { GiveUp(); });
}

} // namespace ombrix
