#pragma once

#include "healthcheck/GraphSurface.h"

#include <QWidget>

#include <array>

namespace ombrix {

class GraphWidget;
class ValueLabel;

/// The five graphs of the health check, each with its live values beside it.
class GraphColumn final : public QWidget, public ValueLabels {
    Q_OBJECT

  public:
    explicit GraphColumn(QWidget* parent);

    GraphSurfaces Surfaces() const;
    void SetCaption(std::size_t label, std::string_view text) override;

  private:
    std::array<GraphWidget*, 5> m_Graphs{};
    std::array<ValueLabel*, 5> m_Values{};
};

} // namespace ombrix
