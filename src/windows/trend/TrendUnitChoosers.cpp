#include "windows/trend/TrendUnitChoosers.h"

#include "windows/widgets/Controls.h"

#include <QComboBox>
#include <QSignalBlocker>

#include <algorithm>

namespace ombrix {

namespace {

/// Of flows, of pressures.
constexpr std::array<TrendUnit, 2> PhysicalUnits = {TrendUnit::Flow_ml_m, TrendUnit::Pressure_mBar};

bool Knows(const TrendData& data, TrendUnit unit) {
    return std::any_of(data.Groups.begin(), data.Groups.end(), [&](const TrendGroup& group) {
        return std::any_of(group.Traces.begin(), group.Traces.end(), [&](const TrendTrace& trace) {
            return trace.In(unit, data.Scales).has_value();
        });
    });
}

} // namespace

TrendUnitChoosers::TrendUnitChoosers(QHBoxLayout& row, QWidget* parent) : QObject(parent) {
    m_Choosers = {MakeChooser("cboAirUnit", tr("&Air in"), row, parent),
                  MakeChooser("cboPressureUnit", tr("P&ressure in"), row, parent)};
    for (QComboBox* chooser : m_Choosers)
        connect(chooser, &QComboBox::currentIndexChanged, this, &TrendUnitChoosers::Chosen);
}

void TrendUnitChoosers::Fill(const TrendData& data) {
    for (std::size_t index = 0; index < m_Choosers.size(); ++index) {
        QComboBox& chooser = *m_Choosers.at(index);
        const QSignalBlocker quiet(&chooser);
        const int before = chooser.currentData().toInt();
        chooser.clear();
        for (const TrendUnit unit :
             {TrendUnit::Bits, TrendUnit::Percent, PhysicalUnits.at(index)}) {
            if (unit != PhysicalUnits.at(index) || Knows(data, unit))
                chooser.addItem(QLatin1String(NameOf(unit)), static_cast<int>(unit));
        }
        chooser.setCurrentIndex(std::max(0, chooser.findData(before)));
    }
}

std::array<TrendUnit, 2> TrendUnitChoosers::Units() const {
    return {static_cast<TrendUnit>(m_Choosers[0]->currentData().toInt()),
            static_cast<TrendUnit>(m_Choosers[1]->currentData().toInt())};
}

} // namespace ombrix
