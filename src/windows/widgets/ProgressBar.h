#pragma once

#include "platform/text/Colour.h"

#include <QFrame>

#include <cstdint>
#include <optional>

namespace ombrix {

/// A value between two limits as a filled box, with a text over it. What is on the screen is the
/// picture of the last redraw: settings that are only stored show with the next one.
class ProgressBar final : public QFrame {
    Q_OBJECT

  public:
    explicit ProgressBar(QWidget* parent);

    /// 0: from the left edge, 1: to the right edge, 2: from the top edge (what is left to the
    /// maximum), 3: from the bottom edge; any other draws no box.
    std::int32_t Orientation() const { return m_Orientation; }
    void Orientation(std::int32_t orientation);
    /// 0: no text, 1: percentage, 2 to 5: value, of maximum, with percentage, 6 to 9: the
    /// caller's text, with value or percentage.
    std::int32_t DisplayType() const { return m_DisplayType; }
    void DisplayType(std::int32_t type) { m_DisplayType = type; }
    float MinVal() const { return m_MinVal; }
    void MinVal(float lowest) { m_MinVal = lowest; }
    float MaxVal() const { return m_MaxVal; }
    void MaxVal(float highest);
    /// The span of box and percentage; set anew with every rescale.
    float Range() const { return m_Range; }
    void Range(float range) { m_Range = range; }
    float Value() const { return m_Value; }
    /// Held to the limits. The value that is there already draws nothing.
    void Value(float value);
    QString UserString() const { return m_UserString; }
    void UserString(const QString& text) { m_UserString = text; }
    Colour BackColour() const { return m_BackColour; }
    /// Also clears the surface.
    void BackColour(Colour colour);
    Colour ForeColour() const { return m_ForeColour; }
    void ForeColour(Colour colour) { m_ForeColour = colour; }
    /// 0: flat, 1: three-dimensional.
    std::int32_t Appearance() const;
    void Appearance(std::int32_t appearance);
    void Refresh();
    void Clear();

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    /// What the last redraw decided, in the user scale of 0 to 100 both ways.
    struct Picture {
        QString Text;
        QRectF Box;
        Colour BoxColour;
    };

    void Rescale();
    void Redraw();
    void Show(Picture picture);
    float HeldToLimits(float value) const;
    std::optional<float> Percent() const;
    QString DisplayText() const;
    QRectF FilledPart() const;
    QRect BoxOnScreen() const;
    QRect TextOnScreen() const;

    std::int32_t m_DisplayType = 0;
    float m_MinVal = 0.0F;
    float m_MaxVal = 100.0F;
    float m_Value = 50.0F;
    Colour m_BackColour{255, 255, 255};
    Colour m_ForeColour{64, 64, 255};
    float m_Range = 0.0F;
    QString m_UserString;
    std::int32_t m_Orientation = 2;
    Picture m_Picture;
};

} // namespace ombrix
