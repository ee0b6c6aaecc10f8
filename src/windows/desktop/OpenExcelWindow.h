#pragma once

#include "reports/ReportFile.h"
#include "windows/widgets/ValueLabel.h"

#include <QWidget>

namespace ombrix {

/// The small window that asks for patience while a report is opened.
class OpenExcelWindow final : public QWidget, public OpenExcelView {
    Q_OBJECT

  public:
    explicit OpenExcelWindow(QWidget* parent);

    void Show(const std::string& message) override;
    void Close() override { close(); }

  private:
    ValueLabel* m_Message;
};

} // namespace ombrix
