// The pressure of the unit: reading it, and what its calibrations leave in the record.
#include "board/AIB.h"
#include "board/eprom/EpromFields.h"
#include "calibration/run/PressureRun.h"
#include "calibration/unit/ACUCalibration.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"

namespace ombrix {

namespace {

constexpr std::int32_t Passed = 1;

} // namespace

CalibrationOutcome clsACUCalibration::CalibrateACUPressure(const CalibrationServices& services,
                                                           EpromGuard& guard, CalibrationKind kind,
                                                           bool autoSave) {
    return PressureRun(*this, services, guard, kind, autoSave).CalibrateACUPressure();
}

std::int32_t clsACUCalibration::PressureFlowOffset(float flow_ml_m) const {
    const double flow = flow_ml_m;
    const auto sum = static_cast<float>(static_cast<double>(m_PressureCoeff[2]) * (flow * flow) +
                                        static_cast<double>(m_PressureCoeff[1]) * flow +
                                        static_cast<double>(m_PressureCoeff[0]));
    return RoundHalfEven(static_cast<double>(sum));
}

float clsACUCalibration::PressureGet_mBar(AirChannelControl& air) const {
    const std::int32_t raw = m_AIB->MyGetADC(ACUWiring::PressureInput);
    const float flow_ml_m = m_HasSolenoidValves != 0
                                ? air.CurrentChannelAir_ml_m(m_AirState.m_ValveState)
                                : air.CurrentChannelAir_ml_m(0) + air.CurrentChannelAir_ml_m(1);
    // In Double: damaged coefficients must not overflow the 32 bits.
    const double bits = static_cast<double>(raw) - PressureFlowOffset(flow_ml_m) - m_PressureZero;
    return static_cast<float>(static_cast<double>(m_PressureScale) * bits);
}

void clsACUCalibration::PressureZero(AirChannelControl& air) {
    const std::int32_t raw = m_AIB->MyGetADC(ACUWiring::PressureInput);
    // Of both channels, whether the unit has valves or not.
    const float flow_ml_m = air.CurrentChannelAir_ml_m(0) + air.CurrentChannelAir_ml_m(1);
    m_PressureZero = RoundHalfEven(static_cast<double>(raw) - PressureFlowOffset(flow_ml_m));
}

PressureCal clsACUCalibration::Pressure() const {
    return {m_BaseDiameter, m_PressureCoeff};
}

void clsACUCalibration::CopyPressureCal(const PressureCal& source) {
    m_BaseDiameter = source.BaseDiameter_mm;
    m_PressureCoeff = source.Coefficients;
}

void clsACUCalibration::SavePressureSystemCalibration(EpromGuard& guard,
                                                      const PressureCal& measured) {
    Store(guard, Record(), [&] {
        m_PressureSystemDate = m_World.Time.Now();
        m_PressureSystemUser = FixedWidth(CalibrationUser, ACUMemoryMap::UserLength);
        m_PressureSystemPassed = Passed;
        CopyPressureCal(measured);
        // Four times over, as the units in the field have been written.
        for (int time = 0; time < 4; ++time)
            WriteEPROM_PressureSystem(false);
        WriteEPROM_PressureDateUserSystem();
    });
}

void clsACUCalibration::SavePressureAudit(EpromGuard& guard, const PressureCal& measured,
                                          bool passed) {
    Store(guard, Record(), [&] {
        m_PressureAuditDate = m_World.Time.Now();
        m_PressureAuditUser = FixedWidth(CalibrationUser, ACUMemoryMap::UserLength);
        m_PressureAuditPassed = passed ? Passed : 0;
        CopyPressureCal(measured);
        WriteEPROM_PressureDateUserAudit();
    });
}

} // namespace ombrix
