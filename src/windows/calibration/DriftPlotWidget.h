#pragma once

#include "calibration/history/HistoryText.h"

#include <QWidget>

#include <optional>

class QPainter;

namespace ombrix {

/// Draws how calibration points have drifted: one line a point over the runs, the limits of the
/// points, the run that is looked at, and a legend.
class DriftPlotWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit DriftPlotWidget(QWidget* parent);

    void Show(Drift drift, const QString& title);
    /// Marks the run that was begun then; none where none is shown that was.
    void MarkRun(std::optional<OleDate> when);
    /// The run that is marked, among those that are shown.
    std::optional<std::size_t> MarkedRun() const;
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
    void DrawLimits(QPainter& painter, const Frame& frame) const;
    void DrawMark(QPainter& painter, const Frame& frame) const;
    void DrawRuns(QPainter& painter, const Frame& frame) const;
    void DrawSeries(QPainter& painter, const Frame& frame) const;
    void DrawLegend(QPainter& painter, const Frame& frame) const;
    Frame FrameIn(const QPainter& painter, const QRectF& area, const QPalette& colours) const;

    Drift m_Drift;
    QString m_Title;
    std::optional<OleDate> m_Marked;
};

} // namespace ombrix
