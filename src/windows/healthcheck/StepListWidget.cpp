#include "windows/healthcheck/StepListWidget.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

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
