#pragma once

#include <QWidget>

#include <cstdint>
#include <optional>

namespace ombrix {

/// Bar picture of an input beside the output that drives it (`picADC_0`, `picADC_1` …), from
/// 0 at the bottom to 65536 at the top.
class ADCBar final : public QWidget {
    Q_OBJECT

  public:
    /// @param index of the control array
    ADCBar(int index, const QString& meaning, QWidget* parent);

    /// @param reading none when the input could not be read: then only the output shows
    void Draw(std::optional<std::int32_t> reading, std::int32_t dacValue);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    double HeightOf(std::int32_t value) const;

    std::optional<std::int32_t> m_Reading;
    std::int32_t m_DACValue = 0;
};

} // namespace ombrix
