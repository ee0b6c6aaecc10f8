#include "windows/trend/TrendTable.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/PlotAxis.h"
#include "windows/widgets/QtText.h"

#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>

#include <cmath>

namespace ombrix {

namespace {

enum TraceColumn { Name, Unit, Now, AtA, AtB, Difference, ColumnCount };

/// Short, beside a value.
QString UnitText(TrendUnit unit) {
    return unit == TrendUnit::Percent ? QStringLiteral("%") : QLatin1String(NameOf(unit));
}

/// With as many decimals as there is sense in.
QString ValueText(std::optional<double> value, TrendUnit unit) {
    if (!value)
        return QStringLiteral("--");
    constexpr int decimals = 2;
    return ToQt(FixedText(*value, unit == TrendUnit::Bits ? 0 : decimals));
}

} // namespace

TrendTable::TrendTable(QWidget* parent) : QTreeWidget(parent) {
    Named(this, QStringLiteral("lvwTraces"), tr("Traces and their values"));
    setHeaderLabels({tr("Trace"), tr("Unit"), tr("Now"), tr("A"), tr("B"), tr("B − A")});
    for (const int column : {Now, AtA, AtB, Difference})
        headerItem()->setTextAlignment(column, Qt::AlignRight);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // Values change without laying the table out anew.
    for (const int column : {Now, AtA, AtB, Difference})
        header()->setSectionResizeMode(column, QHeaderView::Fixed);
    connect(this, &QTreeWidget::itemChanged, this, &TrendTable::Note);
}

void TrendTable::ShowTraces(const TrendData& data, std::array<TrendUnit, 2> units) {
    const QSignalBlocker quiet(this);
    m_Traces.clear();
    m_Known.clear();
    clear();
    for (std::size_t group = 0; group < data.Groups.size(); ++group) {
        const auto& traces = data.Groups[group].Traces;
        for (std::size_t index = 0; index < traces.size(); ++index) {
            const TrendTrace& trace = traces[index];
            const TrendUnit unit = units[IsPressure(trace.Subject) ? 1 : 0];
            const bool known = trace.In(unit, data.Scales).has_value();
            auto* item = new QTreeWidgetItem(
                this, {ToQt(trace.Name), known ? UnitText(unit) : QStringLiteral("--")});
            item->setToolTip(
                Name,
                known ? ToQt(trace.Name)
                      : tr("What this is in %1 is not known.").arg(QLatin1String(NameOf(unit))));
            for (const int column : {Now, AtA, AtB, Difference})
                item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
            item->setCheckState(Name, m_Hidden.count(item->text(Name)) == 0 ? Qt::Checked
                                                                            : Qt::Unchecked);
            item->setIcon(Name, SampleOf(m_Traces.size()));
            item->setDisabled(!known);
            m_Traces.push_back({{group, index, unit}, m_Traces.size()});
            m_Known.push_back(known);
        }
    }
    if (topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(0));
    constexpr int margins = 12;
    for (const int column : {Now, AtA, AtB, Difference})
        setColumnWidth(column,
                       fontMetrics().horizontalAdvance(QStringLiteral("-5000.00")) + margins);
    setMinimumWidth(sizeHint().width());
}

std::vector<TrendLine> TrendTable::Lines() const {
    std::vector<TrendLine> lines;
    for (std::size_t index = 0; index < m_Traces.size(); ++index) {
        if (m_Known[index] &&
            topLevelItem(static_cast<int>(index))->checkState(Name) == Qt::Checked)
            lines.push_back(m_Traces[index]);
    }
    return lines;
}

void TrendTable::ShowValues(const TrendData& data, double now_s,
                            const std::optional<std::array<double, 2>>& cursors) {
    const QSignalBlocker quiet(this);
    for (std::size_t index = 0; index < m_Traces.size(); ++index) {
        const ShownTrace& what = m_Traces[index].What;
        const TrendGroup& group = data.Groups.at(what.Group);
        const auto conversion = group.Traces.at(what.Trace).In(what.Unit, data.Scales);
        const auto at = [&](double time_s) -> std::optional<double> {
            const auto value = group.ValueAt(what.Trace, time_s);
            return value && conversion ? std::optional((*conversion)(static_cast<double>(*value)))
                                       : std::nullopt;
        };
        std::array<std::optional<double>, 2> atCursors{};
        if (cursors)
            atCursors = {at((*cursors)[0]), at((*cursors)[1])};
        std::optional<double> difference;
        if (atCursors[0] && atCursors[1])
            difference = *atCursors[1] - *atCursors[0];
        auto* item = topLevelItem(static_cast<int>(index));
        item->setText(Now, ValueText(at(now_s), what.Unit));
        item->setText(AtA, cursors ? ValueText(atCursors[0], what.Unit) : QString());
        item->setText(AtB, cursors ? ValueText(atCursors[1], what.Unit) : QString());
        item->setText(Difference, cursors ? ValueText(difference, what.Unit) : QString());
    }
}

QSize TrendTable::sizeHint() const {
    const int frame = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
    return {header()->length() + frame, QTreeWidget::sizeHint().height()};
}

void TrendTable::changeEvent(QEvent* event) {
    QTreeWidget::changeEvent(event);
    if (event->type() != QEvent::PaletteChange)
        return;
    const QSignalBlocker quiet(this);
    for (int row = 0; row < topLevelItemCount(); ++row)
        topLevelItem(row)->setIcon(Name, SampleOf(static_cast<std::size_t>(row)));
}

void TrendTable::Note(QTreeWidgetItem* item) {
    if (item->checkState(Name) == Qt::Checked)
        m_Hidden.erase(item->text(Name));
    else
        m_Hidden.insert(item->text(Name));
    emit ChoiceChanged();
}

QIcon TrendTable::SampleOf(std::size_t colour) const {
    const int side = fontMetrics().height();
    QPixmap sample(side, side);
    sample.fill(Qt::transparent);
    QPainter painter(&sample);
    const int thick = side / 4;
    painter.fillRect(0, (side - thick) / 2, side, thick,
                     SeriesColour(colour, palette().color(QPalette::Base)));
    return sample;
}

} // namespace ombrix
