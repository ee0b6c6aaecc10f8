#pragma once

#include "support/ValueLabel.h"

#include <QWidget>

namespace ombrix {

/// The strip with the outcome of the programming and the bench tests (`picInfo`).
class InfoPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit InfoPanel(QWidget* parent);

    void ShowProgramming(const QString& first, const QString& second);

  private:
    ValueLabel* m_First;
    ValueLabel* m_Second;
};

} // namespace ombrix
