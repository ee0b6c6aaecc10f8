#pragma once

#include "healthcheck/GraphSurface.h"

#include <QListWidget>

namespace ombrix {

/// The list of a sequence's steps on the screen (`lstSteps`).
class StepListWidget final : public QListWidget, public StepList {
    Q_OBJECT

  public:
    explicit StepListWidget(QWidget* parent);

    void Clear() override { clear(); }
    void AddItem(std::string_view text) override;
    void SetItem(int line, std::string_view text) override;
    void ListIndex(int line) override;
};

} // namespace ombrix
