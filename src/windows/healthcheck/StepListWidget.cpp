#include "windows/healthcheck/StepListWidget.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QHeaderView>
#include <QScrollBar>

namespace ombrix {

namespace {

enum StepColumn {
    StepNumber,
    FirstDemand,
    SecondDemand,
    Time,
    FirstDeviation,
    SecondDeviation,
    StepResult
};

constexpr int RoomBetweenStepColumns = 10;

QString PercentText(double share, int decimals) {
    constexpr double percent = 100.0;
    return ToQt(FixedText(share * percent, decimals));
}

} // namespace

StepListWidget::StepListWidget(QWidget* parent) : QTreeWidget(parent) {
    Named(this, QStringLiteral("lstSteps"), tr("Steps"));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setHeaderLabels({tr("No."), tr("Ch1\n%"), tr("Ch2\n%"), tr("Time\ns"), tr("Ch1 off\n%"),
                     tr("Ch2 off\n%"), tr("Result")});
    for (const int column : {FirstDeviation, SecondDeviation})
        headerItem()->setToolTip(column, tr("End value less demand, of full scale"));
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(0);
    const QStringList widest = {QStringLiteral("00."),     QStringLiteral("100.0"),
                                QStringLiteral("100.0"),   QStringLiteral("Time"),
                                QStringLiteral("-100.00"), QStringLiteral("-100.00")};
    for (int column = 0; column < widest.size(); ++column)
        setColumnWidth(column,
                       fontMetrics().horizontalAdvance(widest.at(column)) + RoomBetweenStepColumns);
    QFont bold = font();
    bold.setBold(true);
    setColumnWidth(StepResult,
                   QFontMetrics(bold).horizontalAdvance(tr("✗ Pass")) + 2 * RoomBetweenStepColumns);
}

int StepListWidget::WholeWidth() const {
    return header()->length() + 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
}

void StepListWidget::AddItem(const StepLine& step) {
    const QString number = QStringLiteral("%1.").arg(topLevelItemCount() + 1);
    auto* item =
        new QTreeWidgetItem(this, {number, PercentText(static_cast<double>(step.Demand[0]), 1),
                                   PercentText(static_cast<double>(step.Demand[1]), 1),
                                   ToQt(GeneralText(step.Duration_s))});
    item->setData(StepNumber, Qt::AccessibleTextRole, ToQt(step.Text));
    for (int column = 0; column < columnCount(); ++column) {
        item->setToolTip(column, ToQt(step.Text));
        item->setTextAlignment(column, Qt::AlignRight);
    }
    item->setTextAlignment(StepResult, Qt::AlignLeft);
}

void StepListWidget::ShowEnd(int line, const StepJudgement& judgement) {
    QTreeWidgetItem* step = topLevelItem(line);
    for (std::size_t channel = 0; channel < judgement.Channels.size(); ++channel) {
        const auto& judged = judgement.Channels.at(channel);
        step->setText(FirstDeviation + static_cast<int>(channel),
                      judged.Verdict == StepVerdict::NotEvaluated
                          ? QStringLiteral("-")
                          : PercentText(judged.Deviation_share, 2));
    }
    const StepVerdict whole = judgement.Whole();
    step->setText(StepResult, whole == StepVerdict::Pass   ? tr("✓ Pass")
                              : whole == StepVerdict::Fail ? tr("✗ Fail")
                                                           : QStringLiteral("-"));
    QFont face = font();
    face.setBold(whole == StepVerdict::Fail);
    step->setFont(StepResult, face);
    if (!judgement.Why.empty())
        step->setToolTip(StepResult, ToQt(judgement.Why));
}

void StepListWidget::ListIndex(int line) {
    setCurrentItem(topLevelItem(line));
}

} // namespace ombrix
