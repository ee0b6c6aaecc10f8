#include "healthcheck/StepListWidget.h"

#include "support/Controls.h"
#include "support/QtText.h"

namespace ombrix {

StepListWidget::StepListWidget(QWidget* parent) : QListWidget(parent) {
    Named(this, QStringLiteral("lstSteps"), tr("Steps"));
    setUniformItemSizes(true);
}

void StepListWidget::AddItem(std::string_view text) {
    addItem(ToQt(text));
}

void StepListWidget::SetItem(int line, std::string_view text) {
    item(line)->setText(ToQt(text));
}

void StepListWidget::ListIndex(int line) {
    setCurrentRow(line);
}

} // namespace ombrix
