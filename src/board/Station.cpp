#include "board/Station.h"

namespace ombrix {

ACUCalibration& Station::Calibration() {
    std::erase_if(m_Records, [](const auto& entry) { return entry.first.expired(); });
    auto& record = m_Records[CurrentAIB];
    if (!record)
        record = std::make_unique<ACUCalibration>(World, Claims, *CurrentAIB);
    return *record;
}

} // namespace ombrix
