#pragma once

#include "calibration/history/HistoryText.h"

#include <QWidget>

class QPainter;

namespace ombrix {

/// Draws how calibration points have drifted: one line a point over the runs, and a legend.
class DriftPlotWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit DriftPlotWidget(QWidget* parent);

    void Show(Drift drift, const QString& title);
    const Drift& Shown() const { return m_Drift; }
    /// The plot on white paper, whatever the desktop's palette.
    QImage Picture(QSize size) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    struct Frame;

    void Draw(QPainter& painter, const QRectF& area, const QPalette& colours) const;
    void DrawLevels(QPainter& painter, const Frame& frame) const;
    void DrawRuns(QPainter& painter, const Frame& frame) const;
    void DrawSeries(QPainter& painter, const Frame& frame) const;
    void DrawLegend(QPainter& painter, const Frame& frame) const;
    Frame FrameIn(const QPainter& painter, const QRectF& area, const QPalette& colours) const;

    Drift m_Drift;
    QString m_Title;
};

} // namespace ombrix
