#include "board/AIB.h"

#include "platform/text/Rounding.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

namespace ombrix {

namespace {

constexpr std::int32_t FlowChannels = 2;
constexpr float MFCFullScale = 32000.0F;

} // namespace

AIBStatus clsAIB::CheckStatus(AIBStatus status) {
    if (status != Status::NoError)
        m_StatusOK = false;
    return status;
}

std::string clsAIB::AIBErrorStr(AIBStatus status) {
    switch (status) {
    case Status::NoError: return "AIB No Error";
    case Status::HardwareError: return "AIB Generic Hardware Error";
    case Status::AccessDenied: return "AIB Access Denied";
    case Status::Timeout: return "AIB Timeout";
    default: return fmt::format("[Unknown Error: {}]", status);
    }
}

void clsAIB::TestDigitalAIB() {
    m_Services.Library.MFCSetParameter(m_Index, {1, 128, 1, 32}, 0);
    for (const std::int32_t selector : {32, 64}) {
        std::int32_t value = -1;
        m_Services.Library.MFCGetParameter(m_Index, {1, 128, 8, selector}, value);
    }
}

std::string clsAIB::BusTypeText() const {
    return IsUsb() ? "USB" : IsFireWire() ? "FireWire" : "UNKNOWN";
}

void clsAIB::GetAccessoryInfo(std::int32_t index) {
    m_Index = index;
    AccessoryInfoRecord record = Encode(m_Info);
    m_Services.Library.GetAccessoryInfo(index, record);
    m_Info = Decode(record);
    m_DigitalSetup = HasDigitalMFCs();
}

std::int32_t clsAIB::ReportedSerial() const {
    // A board that is gone leaves the record as it is given.
    AccessoryInfoRecord record;
    m_Services.Library.GetAccessoryInfo(m_Index, record);
    return record.DevSerialNum;
}

AIBStatus clsAIB::WriteAIBInfo(std::int32_t first, std::int32_t code, std::int32_t serial) {
    return CheckStatus(m_Services.Library.WriteAIBInfo(m_Index, first, code, serial));
}

clsACUCalibration& clsAIB::Calibration() {
    if (!m_Calibration)
        m_Calibration = m_Services.MakeCalibration();
    return *m_Calibration;
}

AIBStatus clsAIB::UploadFPGAImage(std::string_view path) {
    const std::string realPath = m_Services.World.Files.RealPath(path).string();
    return CheckStatus(m_Services.Library.UploadFPGAImage(m_Index, realPath));
}

AIBStatus clsAIB::WriteReg(std::int32_t address, std::int32_t value) {
    return CheckStatus(m_Services.Library.WriteReg(m_Index, address, value));
}

AIBStatus clsAIB::ReadReg(std::int32_t address, std::int32_t& value) {
    return CheckStatus(m_Services.Library.ReadReg(m_Index, address, value));
}

AIBStatus clsAIB::ConfigureGPIO(std::int32_t mask) {
    return CheckStatus(m_Services.Library.ConfigureGPIO(m_Index, mask));
}

AIBStatus clsAIB::SetGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.SetGPO(m_Index, pin));
}

AIBStatus clsAIB::ClearGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.ClearGPO(m_Index, pin));
}

AIBStatus clsAIB::SetExtGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.SetExtGPO(m_Index, pin));
}

AIBStatus clsAIB::ClearExtGPO(std::int32_t pin) {
    return CheckStatus(m_Services.Library.ClearExtGPO(m_Index, pin));
}

AIBStatus clsAIB::GetGPI(std::int32_t pin, std::int32_t& level) {
    return CheckStatus(m_Services.Library.GetGPI(m_Index, pin, level));
}

AIBStatus clsAIB::GetVariable(std::int32_t number, std::int32_t& value) {
    return CheckStatus(m_Services.Library.GetVariable(m_Index, number, value));
}

AIBStatus clsAIB::SetVariable(std::int32_t number, std::int32_t value) {
    return CheckStatus(m_Services.Library.SetVariable(m_Index, number, value));
}

AIBStatus clsAIB::MFCSetFlowRate(std::int32_t channel, float percent) {
    if (!m_MFCReady)
        return Status::NoError;
    m_MayDrive = m_MayDrive || percent > 0.0F;
    m_SetPointStands = m_SetPointStands || percent > 0.0F;
    const std::int32_t setPoint = RoundHalfEven(percent / 100.0F * MFCFullScale);
    return CheckStatus(m_Services.Library.MFCSetFlowrate(
        m_Index, channel, std::clamp(setPoint, 0, static_cast<std::int32_t>(MFCFullScale))));
}

AIBStatus clsAIB::MFCGetFlowRate(std::int32_t channel, std::int32_t& value) {
    if (!m_MFCReady) {
        value = 0;
        return Status::NoError;
    }
    std::int32_t raw = 0;
    const AIBStatus status = m_Services.Library.MFCGetFlowrate(m_Index, channel, raw);
    value = RoundHalfEven(raw * (65535.0 / 32000.0));
    return CheckStatus(status);
}

AIBStatus clsAIB::SetDAC_UART(std::int32_t channel, std::int32_t value) {
    // Two integers divide in Double; only the percentage is a Single.
    const double percent = static_cast<double>(value) / DACFullScale * 100.0;
    return MFCSetFlowRate(channel, static_cast<float>(percent));
}

AIBStatus clsAIB::GetADC_UART(std::int32_t channel, std::int32_t& value) {
    return MFCGetFlowRate(channel, value);
}

AIBStatus clsAIB::SetDAC(std::int32_t channel, std::int32_t value) {
    m_DAC.at(static_cast<std::size_t>(channel)) = value;
    if (m_DigitalSetup && channel < FlowChannels)
        return SetDAC_UART(channel, value);
    m_MayDrive = m_MayDrive || value != 0;
    return CheckStatus(m_Services.Library.SetDAC(m_Index, channel, value));
}

std::int32_t clsAIB::DAC(std::int32_t channel) const {
    return m_DAC.at(static_cast<std::size_t>(channel));
}

bool clsAIB::SwitchOutputsOff() noexcept {
    const auto takesZeros = [](std::int32_t channels, auto sendZero) {
        bool taken = true;
        for (std::int32_t channel = 0; channel < channels; ++channel) {
            try {
                taken = sendZero(channel) == Status::NoError && taken;
            } catch (const std::exception&) {
                taken = false;
            }
        }
        return taken;
    };
    const bool setPointsOff = takesZeros(FlowChannels, [this](std::int32_t channel) {
        return m_Services.Library.MFCSetFlowrate(m_Index, channel, 0);
    });
    const bool outputsOff = takesZeros(DACChannels, [this](std::int32_t channel) {
        return m_Services.Library.SetDAC(m_Index, channel, 0);
    });
    const bool taken = outputsOff && (setPointsOff || !(HasDigitalMFCs() || m_SetPointStands));
    m_SetPointStands = m_SetPointStands && !setPointsOff;
    m_DAC.fill(0);
    m_MayDrive = m_MayDrive && !taken;
    m_StatusOK = m_StatusOK && taken;
    return taken;
}

AIBStatus clsAIB::GetADC(std::int32_t channel, std::int32_t& value) {
    if (m_DigitalSetup && channel < FlowChannels)
        return MFCGetFlowRate(channel, value);
    return CheckStatus(m_Services.Library.GetADC(m_Index, channel, value));
}

std::int32_t clsAIB::MyGetADC(std::int32_t channel) {
    std::int32_t value = 0;
    GetADC(channel, value);
    return value;
}

std::int32_t clsAIB::ADC(std::int32_t channel) const {
    std::int32_t value = 0;
    m_Services.Library.GetADC(m_Index, channel, value);
    return value;
}

} // namespace ombrix
