#include "windows/calibration/PointListWidget.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QHeaderView>

namespace ombrix {

namespace {

constexpr int RoomBetweenPointColumns = 16;

/// The widest that a column comes to hold: figures grow while a run goes on, and columns that
/// moved with them could not be read.
QString WidestOf(const std::string& column) {
    if (column == "Deviation")
        return QStringLiteral("0.0000000 % of reading");
    if (column == "Limit")
        return QStringLiteral("0 % of reading");
    if (column == "Demand" || column == "Rising" || column == "Falling" || column == "Mean")
        return QStringLiteral("0000.0000");
    return QStringLiteral("00000");
}

} // namespace

PointListWidget::PointListWidget(QWidget* parent) : QTreeWidget(parent) {
    Named(this, QStringLiteral("lvwPoints"), tr("Points"));
    setAllColumnsShowFocus(true);
    setSelectionMode(NoSelection);
    header()->setSectionsMovable(false);
    setHeaderLabels(
        {tr("Point"), tr("Demand"), tr("Reading"), tr("Deviation"), tr("Limit"), tr("Verdict")});
}

QSize PointListWidget::sizeHint() const {
    constexpr int lines = 9;
    return {QTreeWidget::sizeHint().width(), lines * (fontMetrics().height() + 4)};
}

QSize PointListWidget::minimumSizeHint() const {
    constexpr int lines = 7;
    return {QTreeWidget::minimumSizeHint().width(), lines * (fontMetrics().height() + 4)};
}

void PointListWidget::SetColumns(const PointTable& table) {
    QStringList heads;
    for (const std::string& column : table.Columns)
        heads << ToQt(column);
    heads << tr("Verdict");
    setColumnCount(static_cast<int>(heads.size()));
    setHeaderLabels(heads);
    for (int column = 0; column < heads.size(); ++column) {
        const int text =
            std::max(fontMetrics().horizontalAdvance(WidestOf(heads.at(column).toStdString())),
                     header()->fontMetrics().horizontalAdvance(heads.at(column)));
        setColumnWidth(column,
                       text + RoomBetweenPointColumns + (column == 0 ? 2 * indentation() : 0));
    }
}

int PointListWidget::FailuresIn(const QTreeWidgetItem& group) {
    int failures = 0;
    for (int point = 0; point < group.childCount(); ++point)
        failures += group.child(point)->childCount() > 0 ? 1 : 0;
    return failures;
}

void PointListWidget::Begin(const QString& title, const PointTable& table) {
    if (QTreeWidgetItem* before = topLevelItem(topLevelItemCount() - 1);
        before != nullptr && FailuresIn(*before) == 0)
        before->setExpanded(false);
    SetColumns(table);
    m_GroupTitle = title;
    auto* group = new QTreeWidgetItem(this, {m_GroupTitle});
    group->setFirstColumnSpanned(true);
    group->setExpanded(true);
    for (const PointLine& line : table.Lines)
        ShowLine(*new QTreeWidgetItem(group), line);
    scrollToItem(group, PositionAtTop);
}

void PointListWidget::Show(std::size_t point, const PointLine& line) {
    QTreeWidgetItem* group = topLevelItem(topLevelItemCount() - 1);
    QTreeWidgetItem* item = group->child(static_cast<int>(point));
    ShowLine(*item, line);
    ShowReason(*item, line.Why);
    const int failures = FailuresIn(*group);
    group->setText(0, failures == 0 ? m_GroupTitle
                                    : tr("%1: ✗ %2 of %3 points failed")
                                          .arg(m_GroupTitle)
                                          .arg(failures)
                                          .arg(group->childCount()));
    scrollToItem(item);
}

void PointListWidget::ShowLine(QTreeWidgetItem& item, const PointLine& line) const {
    int column = 0;
    for (const std::string& cell : line.Cells) {
        item.setText(column, ToQt(cell));
        item.setTextAlignment(column, column == 0 ? Qt::AlignLeft : Qt::AlignRight);
        ++column;
    }
    item.setText(column, !line.Passed   ? QStringLiteral("-")
                         : *line.Passed ? tr("✓ Passed")
                                        : tr("✗ Failed"));
    QFont face = font();
    face.setBold(line.Passed == false);
    item.setFont(column, face);
}

void PointListWidget::ShowReason(QTreeWidgetItem& item, const std::string& why) {
    qDeleteAll(item.takeChildren());
    if (why.empty())
        return;
    auto* reason = new QTreeWidgetItem(&item, {ToQt(why)});
    reason->setFirstColumnSpanned(true);
    item.setExpanded(true);
}

} // namespace ombrix
