#include "calibration/air/ChangeOver.h"

namespace ombrix {

namespace {

ChangeOverState StateForNewDemand(const ChangeOverInputs& inputs) {
    if (inputs.Demand_bits == 0)
        return ChangeOverState::Off;
    if (inputs.Output_bits > 0)
        return ChangeOverState::Settled; // it flows already
    return inputs.Demand_bits >= PreChargeLimit_bits ? ChangeOverState::Settle
                                                     : ChangeOverState::PreCharge;
}

} // namespace

ChangeOverState NextChangeOverState(ChangeOverState present, const ChangeOverInputs& inputs) {
    switch (present) {
    case ChangeOverState::NewDemand: return StateForNewDemand(inputs);
    case ChangeOverState::PreCharge:
        return inputs.Reading_bits > AirHasCome_bits ? ChangeOverState::Settle : present;
    case ChangeOverState::Settle:
        return inputs.InState_s >= SettleTime_s ? ChangeOverState::Settled : present;
    case ChangeOverState::Settled:
    case ChangeOverState::Off: return present;
    }
    return present;
}

} // namespace ombrix
