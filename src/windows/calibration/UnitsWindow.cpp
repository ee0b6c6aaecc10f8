#include "windows/calibration/UnitsWindow.h"

#include "platform/os/FolderDrive.h"
#include "platform/ports/Folders.h"
#include "platform/text/Paths.h"
#include "platform/text/Text.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

struct UnitColumn {
    enum Index { Name, Number, LastSystem, LastAudit, Verdict, Due, Worst, Drift };
};

/// What a cell is sorted by where its text would not do.
constexpr int SortRole = Qt::UserRole;
/// Of the first column: index into the units.
constexpr int IndexRole = Qt::UserRole + 1;

/// Sorts numbers as such; what is unknown comes first.
class UnitItem final : public QTreeWidgetItem {
  public:
    using QTreeWidgetItem::QTreeWidgetItem;

    bool operator<(const QTreeWidgetItem& other) const override {
        const int column = treeWidget()->sortColumn();
        const QVariant own = data(column, SortRole);
        const QVariant others = other.data(column, SortRole);
        if (own.isValid() || others.isValid())
            return own.toDouble() < others.toDouble();
        return QTreeWidgetItem::operator<(other);
    }
};

QString DayText(std::optional<OleDate> date) {
    return date ? ToQt(DateText(*date, "yyyy-mm-dd")) : QStringLiteral("–");
}

void ShowFigure(QTreeWidgetItem& item, int column, const QString& text, double sortedBy) {
    item.setText(column, text);
    item.setData(column, SortRole, sortedBy);
    item.setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
}

QTreeWidgetItem* ItemOf(const UnitSummary& unit, int index, OleDate now) {
    auto* item = new UnitItem({QStringLiteral("ACU%1").arg(unit.Serial, 5, 10, QLatin1Char('0')),
                               ToQt(unit.MfcNumber), DayText(unit.LastSystem),
                               DayText(unit.LastAudit), ToQt(unit.Verdict), DayText(unit.Due)});
    item->setData(UnitColumn::Name, IndexRole, index);
    if (unit.IsDue(now))
        item->setText(UnitColumn::Due, unit.Due
                                           ? QObject::tr("%1, due").arg(item->text(UnitColumn::Due))
                                           : QObject::tr("due"));
    if (const auto& worst = unit.WorstPoint)
        ShowFigure(*item, UnitColumn::Worst,
                   QObject::tr("ch. %1, pt. %2: %3 %")
                       .arg(worst->Channel)
                       .arg(worst->Number)
                       .arg(ToQt(FixedText(worst->Percent_ofLimit, 1))),
                   std::abs(worst->Percent_ofLimit));
    if (const auto& drift = unit.Drift_percentOfFullScale)
        ShowFigure(*item, UnitColumn::Drift, ToQt(FixedText(*drift, 3) + " %"), std::abs(*drift));
    return item;
}

std::size_t IndexOf(const QTreeWidgetItem& item) {
    return static_cast<std::size_t>(item.data(UnitColumn::Name, IndexRole).toInt());
}

/// What is due and what was not good stands out, by its text and by its colour.
void ShowAlarms(QTreeWidgetItem& item, const UnitSummary& unit, OleDate now, const QColor& ground) {
    const QColor red = ReadableColour(WrongRed, ground);
    if (unit.IsDue(now))
        item.setForeground(UnitColumn::Due, red);
    if (!unit.Verdict.empty() && unit.Verdict != VerdictOf(End::Passed))
        item.setForeground(UnitColumn::Verdict, red);
    constexpr double limit_percent = 100.0;
    if (unit.WorstPoint && std::abs(unit.WorstPoint->Percent_ofLimit) > limit_percent)
        item.setForeground(UnitColumn::Worst, red);
}

} // namespace

UnitsWindow::UnitsWindow(Station& station)
    : AskFileToWrite(FileDialogOf(*this, QFileDialog::AcceptSave, tr("Export"))),
      m_Station(station), m_List(Named(new QTreeWidget(this), QStringLiteral("lvwUnits"),
                                       tr("Units and how they stand"))),
      m_State(MakeCaption({}, this)) {
    Named(this, QStringLiteral("frmUnits"), tr("Units"));
    setWindowTitle(tr("Units"));
    m_State->setObjectName(QStringLiteral("lblUnitsState"));
    // A path is of any length; pointing at it shows all of it.
    m_State->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_List->setHeaderLabels({tr("Unit"), tr("MFC number"), tr("System"), tr("Audit"), tr("Verdict"),
                             tr("Due"), tr("Worst point"), tr("Drift")});
    const auto explain = [this](UnitColumn::Index column, const QString& text) {
        m_List->headerItem()->setToolTip(column, text);
    };
    explain(UnitColumn::LastSystem,
            tr("The last velocity system calibration that came to its end"));
    explain(UnitColumn::LastAudit, tr("The last velocity audit calibration that came to its end"));
    explain(UnitColumn::Worst,
            tr("The point of the last audit that used most of its limit: channel, point, "
               "percent of the limit"));
    explain(UnitColumn::Drift,
            tr("The largest change of a point since the audit before, of full scale"));
    for (const UnitColumn::Index column : {UnitColumn::Worst, UnitColumn::Drift})
        m_List->headerItem()->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
    m_List->header()->setStretchLastSection(false);
    m_List->setRootIsDecorated(false);
    m_List->setSortingEnabled(true);
    m_List->sortByColumn(UnitColumn::Name, Qt::AscendingOrder);
    m_List->setToolTip(tr("A double click, or Enter, opens the history of the unit."));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeFilters());
    layout->addWidget(m_List, 1);
    layout->addLayout(MakeButtons());
    SetTabOrder({m_Filter, m_DueOnly, m_List, m_Export});
    constexpr QSize comfortable(1000, 480);
    resize(ScaledToScreen(*this, comfortable));
    connect(m_List, &QTreeWidget::itemActivated, this, [this](QTreeWidgetItem* item) {
        emit HistoryWanted(m_Units.at(IndexOf(*item)).Serial);
    });
    m_Procedures = station.Procedures.Listen([this](bool running) {
        if (!running && isVisible())
            Read(); // a calibration may have ended
    });
}

QLayout* UnitsWindow::MakeFilters() {
    auto* caption = MakeCaption(tr("&Find"), this);
    m_Filter = Named(new QLineEdit(this), QStringLiteral("txtFilter"), tr("Find"));
    m_Filter->setClearButtonEnabled(true);
    m_Filter->setPlaceholderText(tr("Unit, MFC number or verdict"));
    caption->setBuddy(m_Filter);
    m_DueOnly = MakeCheckBox(QStringLiteral("chkDue"), tr("Only those that are &due"), this);
    m_DueOnly->setToolTip(tr("A unit is due a year after its last good run, at once after one that "
                             "was not good, and when it never had one."));
    connect(m_Filter, &QLineEdit::textChanged, this, &UnitsWindow::Filter);
    connect(m_DueOnly, &QCheckBox::toggled, this, &UnitsWindow::Filter);
    auto* row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(m_Filter, 1);
    row->addWidget(m_DueOnly);
    return row;
}

QLayout* UnitsWindow::MakeButtons() {
    m_Export = MakeButton(QStringLiteral("cmdExportCSV"), tr("&Export CSV…"), this);
    m_Export->setToolTip(tr("Stores the units that are shown as a table."));
    auto* close = MakeButton(QStringLiteral("cmdClose"), tr("C&lose"), this);
    close->setToolTip(tr("Closes the window."));
    connect(m_Export, &QPushButton::clicked, this, &UnitsWindow::Export);
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
    auto* row = new QHBoxLayout;
    row->addWidget(m_State, 1);
    row->addWidget(m_Export);
    row->addWidget(close);
    return row;
}

void UnitsWindow::Open() {
    Read();
    BringUp(*this);
}

void UnitsWindow::Read() {
    m_Units.clear();
    Guarded(m_Station.World.Messages,
            [this] { m_Units = SummariesOfUnits(m_Station.World.Files); });
    const OleDate now = m_Station.World.Time.Now();
    m_List->clear();
    for (const UnitSummary& unit : m_Units) {
        QTreeWidgetItem* item = ItemOf(unit, m_List->topLevelItemCount(), now);
        ShowAlarms(*item, unit, now, m_List->palette().color(QPalette::Base));
        m_List->addTopLevelItem(item);
    }
    AutoSizeColumns(*m_List);
    Filter();
}

void UnitsWindow::Filter() {
    const OleDate now = m_Station.World.Time.Now();
    int shown = 0;
    for (int row = 0; row < m_List->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = m_List->topLevelItem(row);
        const auto has = [&](int column) {
            return item->text(column).contains(m_Filter->text(), Qt::CaseInsensitive);
        };
        const bool fits =
            (has(UnitColumn::Name) || has(UnitColumn::Number) || has(UnitColumn::Verdict)) &&
            (!m_DueOnly->isChecked() || m_Units.at(IndexOf(*item)).IsDue(now));
        item->setHidden(!fits);
        shown += fits ? 1 : 0;
    }
    m_Export->setEnabled(shown > 0);
    ShowState(m_Units.empty() ? tr("No calibration has been run yet.")
                              : tr("%1 of %2 units").arg(shown).arg(m_Units.size()));
}

void UnitsWindow::ShowState(const QString& text) {
    m_State->setText(text);
    m_State->setToolTip(text);
    m_State->setAccessibleName(tr("State of the list: %1").arg(text));
}

void UnitsWindow::Export() {
    const Drive& files = m_Station.World.Files;
    const std::string proposed = FreePath(files, std::string(Paths::DriveC) + "units.csv");
    AskAndWrite(
        *this, AskFileToWrite, ToQt(files.RealPath(proposed).string()),
        [this](const QString& file) {
            std::vector<UnitSummary> shown;
            for (int row = 0; row < m_List->topLevelItemCount(); ++row) {
                const QTreeWidgetItem* item = m_List->topLevelItem(row);
                if (!item->isHidden())
                    shown.push_back(m_Units.at(IndexOf(*item)));
            }
            ReplaceWholeFile(file.toStdString(), UnitsCsv(shown));
            ShowState(tr("Written: %1").arg(file));
        },
        [this](const QString& error) { ShowState(error); });
}

} // namespace ombrix
