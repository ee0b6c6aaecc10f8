#include "windows/healthcheck/GraphColumn.h"

#include "windows/healthcheck/GraphWidget.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QGridLayout>

namespace ombrix {

GraphColumn::GraphColumn(QWidget* parent) : QWidget(parent) {
    const std::array<QString, 5> names = {tr("Channel 1"), tr("Channel 2"), tr("Pressure"),
                                          tr("Channel 1 difference"), tr("Channel 2 difference")};
    const std::array<QString, 5> kinds = {tr("Output : Reading"), tr("Output : Reading"),
                                          tr("Pressure"), tr("Difference"), tr("Difference")};
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    for (std::size_t index = 0; index < names.size(); ++index) {
        const int row = static_cast<int>(index);
        auto* graph =
            new GraphWidget(ElementName("picGraph", row), tr("Graph: ") + names.at(index), this);
        auto* value = new ValueLabel(ElementName("lblValue", row), names.at(index), this);
        // A label of a fixed size changes its text without laying the window out anew.
        value->ReserveFor(QStringLiteral("65535  :  65535"));
        m_Graphs.at(index) = graph;
        m_Values.at(index) = value;
        auto* values = new QVBoxLayout;
        values->addStretch(1);
        values->addWidget(MakeCaption(kinds.at(index), this));
        values->addWidget(value);
        values->addStretch(1);
        grid->addWidget(graph, row, 0);
        grid->addLayout(values, row, 1);
        grid->setRowStretch(row, 1);
    }
    grid->setColumnStretch(0, 1);
}

GraphSurfaces GraphColumn::Surfaces() const {
    GraphSurfaces surfaces{};
    for (std::size_t index = 0; index < surfaces.size(); ++index)
        surfaces.at(index) = m_Graphs.at(index);
    return surfaces;
}

void GraphColumn::SetCaption(std::size_t label, std::string_view text) {
    m_Values.at(label)->ShowValue(ToQt(text));
}

} // namespace ombrix
