#pragma once

#include "healthcheck/HealthCheckVerdict.h"
#include "windows/widgets/ValueLabel.h"

#include <QWidget>

namespace ombrix {

/// What a health check has come to: while it runs so far, then the verdict of its report.
class VerdictPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit VerdictPanel(QWidget* parent);

    void Clear();
    void ShowRunning(const HealthCheckFigures& check);
    /// @param reason why it has not passed; may be empty
    void ShowEnd(const HealthCheckFigures& check, const HealthCheckLimits& limits,
                 const std::string& reason);

  private:
    void Show(const QString& verdict, bool isBad, const HealthCheckFigures& check);

    ValueLabel* m_Verdict;
    ValueLabel* m_Counts;
    ValueLabel* m_Reason;
};

} // namespace ombrix
