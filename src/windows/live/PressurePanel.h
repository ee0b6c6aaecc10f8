#pragma once

#include "board/Station.h"
#include "board/procedure/HiResTimer.h"
#include "windows/widgets/ValueLabel.h"

#include <optional>

namespace ombrix {

/// The raw pressure register; its background turns red when it has stood still for too long.
class PressurePanel final : public QWidget {
    Q_OBJECT

  public:
    PressurePanel(Station& station, QWidget* parent);

    void Refresh(AIB& board);
    /// @param pressure nothing when there is none, for the reason given
    void ShowReading(std::optional<std::int32_t> pressure, const QString& reason);

  private:
    void ShowBackground(Colour colour);

    ValueLabel* m_Decimal;
    ValueLabel* m_Hexadecimal;
    HiResTimer m_SinceChange;
};

} // namespace ombrix
