#pragma once

#include <QWidget>

namespace ombrix {

class frmAIBTestRig;

/// Where the operator chooses the job of the test rig. While it is open no other window takes
/// input.
class frmAIBTestRigOptions final : public QWidget {
    Q_OBJECT

  public:
    /// @param rig runs the chosen job
    explicit frmAIBTestRigOptions(frmAIBTestRig& rig);

  signals:
    void Closed();

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    void Choose(int job);

    frmAIBTestRig& m_Rig;
};

} // namespace ombrix
