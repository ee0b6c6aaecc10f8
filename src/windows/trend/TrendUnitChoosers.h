#pragma once

#include "trend/TrendData.h"

#include <QObject>

#include <array>

class QComboBox;
class QHBoxLayout;

namespace ombrix {

/// In what flows and pressures are shown. Offers what is known of the data alone.
class TrendUnitChoosers final : public QObject {
    Q_OBJECT

  public:
    /// @param row takes the choosers
    TrendUnitChoosers(QHBoxLayout& row, QWidget* parent);

    /// Keeps what is chosen where the data have it.
    void Fill(const TrendData& data);
    /// Of flows and everything else, and of pressures.
    std::array<TrendUnit, 2> Units() const;

  signals:
    void Chosen();

  private:
    std::array<QComboBox*, 2> m_Choosers{};
};

} // namespace ombrix
