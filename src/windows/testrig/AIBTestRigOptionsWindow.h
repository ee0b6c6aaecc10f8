#pragma once

#include <QWidget>

namespace ombrix {

class AIBTestRigWindow;

/// Where the operator chooses the job of the test rig. While it is open no other window takes
/// input.
class AIBTestRigOptionsWindow final : public QWidget {
    Q_OBJECT

  public:
    /// @param rig runs the chosen job
    explicit AIBTestRigOptionsWindow(AIBTestRigWindow& rig);

  signals:
    void Closed();

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    void Choose(int job);

    AIBTestRigWindow& m_Rig;
};

} // namespace ombrix
