#pragma once

#include "windows/trend/TrendPicture.h"

#include <QTreeWidget>

#include <array>
#include <optional>
#include <set>

namespace ombrix {

/// The legend: every trace with its colour, whether it is shown, its present value, its values at
/// the cursors and their difference.
class TrendTable final : public QTreeWidget {
    Q_OBJECT

  public:
    explicit TrendTable(QWidget* parent);

    /// @param units of flows and of pressures; what is not known in them cannot be shown
    void ShowTraces(const TrendData& data, std::array<TrendUnit, 2> units);
    /// The traces that are ticked.
    std::vector<TrendLine> Lines() const;
    /// @param now_s the time of the present value
    void ShowValues(const TrendData& data, double now_s,
                    const std::optional<std::array<double, 2>>& cursors);

    QSize sizeHint() const override;

  signals:
    /// Others are ticked.
    void ChoiceChanged();

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void Note(QTreeWidgetItem* item);
    QIcon SampleOf(std::size_t colour) const;

    std::vector<TrendLine> m_Traces;
    std::vector<bool> m_Known;
    /// Names of those that were unticked, which stay so with other data.
    std::set<QString> m_Hidden;
};

} // namespace ombrix
