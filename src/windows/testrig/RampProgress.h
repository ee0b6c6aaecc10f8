#pragma once

#include "benchtests/TestRigJobs.h"

#include <QWidget>

namespace ombrix {

/// How far the present ramp is, on a scale of seconds with a mark for each level
/// (`picCurrentJob`).
class RampProgress final : public QWidget {
    Q_OBJECT

  public:
    explicit RampProgress(QWidget* parent);

    /// Draws the scale of a ramp, with nothing of it done.
    void Begin(const RampStep& ramp);
    void Show(double elapsed_s);
    /// No scale and no bar.
    void Clear();

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QRect BarOnScreen() const;
    int PlaceOf(double time_s) const;

    RampStep m_Ramp;
    double m_Elapsed_s = 0.0;
};

} // namespace ombrix
