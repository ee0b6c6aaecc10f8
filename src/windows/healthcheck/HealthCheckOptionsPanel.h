#pragma once

#include "healthcheck/HealthCheckProgramme.h"

#include <QWidget>

#include <array>

class QCheckBox;
class QPushButton;

namespace ombrix {

/// The options of a health check and its commands (`picOptions`).
class HealthCheckOptionsPanel final : public QWidget {
    Q_OBJECT

  public:
    explicit HealthCheckOptionsPanel(QWidget* parent);

    /// The ticked options, in running order.
    std::vector<HealthCheckOption> Chosen() const;
    /// The boxes follow `enable`; Start also wants at least one of them ticked.
    void UpdateOptionControls(bool enable);
    /// Whether there is a run that Cancel could cancel.
    void TakeCancel(bool take);

  signals:
    void StartWanted();
    void CancelWanted();
    void FolderWanted();

  private:
    struct OptionBox {
        HealthCheckOption Option;
        QCheckBox* Box;
    };
    QCheckBox* AddOption(std::size_t place, HealthCheckOption option, const char* objectName,
                         const char* caption);

    std::array<OptionBox, 6> m_Options{};
    QPushButton* m_Start;
    QPushButton* m_Cancel;
};

} // namespace ombrix
