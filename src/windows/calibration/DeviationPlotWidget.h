#pragma once

#include "calibration/judge/PointTable.h"

#include <QString>
#include <QWidget>

#include <vector>

class QPainter;

namespace ombrix {

/// How far the points of a calibration are from what they ought to be, as shares of their limits:
/// points are judged in different units, but all have failed beyond 100 % (`picDeviations`).
class DeviationPlotWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit DeviationPlotWidget(QWidget* parent);

    /// Shows the points of a group, of which more and more are judged.
    void Show(const QString& title, const std::vector<PointLine>& points);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    struct Frame;

    Frame FrameIn(const QPainter& painter) const;
    void DrawLevels(QPainter& painter, const Frame& frame) const;
    void DrawNumbers(QPainter& painter, const Frame& frame) const;
    void DrawPoints(QPainter& painter, const Frame& frame) const;

    QString m_Title;
    std::vector<PointLine> m_Points;
};

} // namespace ombrix
