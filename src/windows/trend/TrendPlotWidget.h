#pragma once

#include "windows/trend/TrendPicture.h"

#include <QPixmap>
#include <QWidget>

#include <array>
#include <optional>

namespace ombrix {

/// Shows traces over the time. The wheel zooms the time (with Ctrl the values), a drag pans, a
/// drag with the right button or Shift zooms into a box; two cursors can be dragged. Keys: arrows
/// pan, + and - zoom, Home shows all, Space pauses; with Ctrl the arrows move cursor A, with Ctrl
/// and Shift cursor B. The lines are drawn onto a kept picture, which is made anew when they or the
/// view change; cursors and boxes lie above it.
class TrendPlotWidget final : public QWidget {
    Q_OBJECT

  public:
    explicit TrendPlotWidget(QWidget* parent);

    /// Data that live until others are shown. @param units of the axes
    void ShowLines(const TrendData* data, std::vector<TrendLine> lines,
                   std::array<TrendUnit, 2> units);
    /// Shows the time from begin to end, and values as far as there are.
    void ShowAll();
    void ShowTimes(double from_s, double to_s);
    /// The data have grown. @param now_s how far values of what is held reach
    void Refresh(double now_s);

    const TrendScene& Scene() const { return m_Scene; }
    /// Cursors A and B; nothing while they are not shown.
    const std::optional<std::array<double, 2>>& Cursors() const { return m_Cursors; }
    void ShowCursors(bool shown);
    /// The picture with its legend on white paper, whatever the desktop's palette.
    QImage Picture(QSize size) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  signals:
    /// The operator has moved or zoomed the view. @param inTime not the values alone
    void ViewChanged(bool inTime);
    void CursorsMoved();
    void PauseWanted();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    enum class Drag { None, Pan, Box, CursorA, CursorB };

    void Changed();
    void RenewPicture();
    void DrawCursors(QPainter& painter) const;
    void ZoomTimes(double factor, double around_s);
    void ZoomValues(double factor, double y);
    void Pan(double pixels);
    void PanValues(double pixels);
    void ZoomIntoBox();
    void MoveCursor(std::size_t cursor, double to_s);
    Drag DragAt(const QMouseEvent& event) const;

    TrendScene m_Scene;
    TrendFrame m_Frame;
    QPixmap m_Picture;
    std::optional<std::array<double, 2>> m_Cursors;
    Drag m_Drag = Drag::None;
    QPointF m_DragFrom;
    QPointF m_DragTo;
};

} // namespace ombrix
