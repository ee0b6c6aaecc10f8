#pragma once

#include "healthcheck/HealthCheckViews.h"

#include <QTreeWidget>

namespace ombrix {

/// The steps of a sequence on the screen (`lstSteps`): what each demands and, when it has ended,
/// how far its end values are from that, and its verdict.
class StepListWidget final : public QTreeWidget, public StepList {
    Q_OBJECT

  public:
    explicit StepListWidget(QWidget* parent);

    void Clear() override { clear(); }
    void AddItem(const StepLine& step) override;
    void ShowEnd(int line, const StepJudgement& judgement) override;
    void ListIndex(int line) override;

    /// Width that shows every column.
    int WholeWidth() const;
};

} // namespace ombrix
