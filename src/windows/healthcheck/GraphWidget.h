#pragma once

#include "healthcheck/GraphSurface.h"
#include "windows/healthcheck/GraphContent.h"

#include <QPixmap>
#include <QWidget>

namespace ombrix {

/// A graph surface on the screen. What is drawn goes once onto a kept picture and only its
/// neighbourhood is shown anew, so that a sample costs the same at any length of run; a list of
/// it redraws the picture when size or resolution change.
class GraphWidget final : public QWidget, public GraphSurface {
    Q_OBJECT

  public:
    GraphWidget(const QString& objectName, const QString& accessibleName, QWidget* parent);

    void Scale(double left, double top, double right, double bottom) override;
    void Cls() override;
    void DrawWidth(int pixels) override { m_Content.SetPenWidth(pixels); }
    void DrawStyle(Style style) override { m_Content.SetPenStyle(style); }
    double TextHeight(std::string_view text) const override;
    void Print(double x, double y, std::string_view text) override;
    void Line(double x1, double y1, double x2, double y2, Colour colour) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    GraphMapping Mapping() const { return {m_Scale, QSizeF(size())}; }
    void RenewPicture();

    GraphScale m_Scale;
    GraphContent m_Content;
    QPixmap m_Picture;
};

} // namespace ombrix
