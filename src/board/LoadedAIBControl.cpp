#include "board/LoadedAIBControl.h"

#include "platform/text/Text.h"

namespace ombrix {

namespace {

using Int = std::int32_t;

} // namespace

const BoardLibrary& LoadedAIBControl::Bound() {
    if (!m_Library)
        m_Library.emplace(m_File);
    return *m_Library;
}

Int LoadedAIBControl::OpenAIBAPI() {
    return Bound().OpenAIBAPI();
}

AIBStatus LoadedAIBControl::CloseAIBAPI() {
    return Bound().CloseAIBAPI();
}

AIBStatus LoadedAIBControl::GetAccessoryInfo(Int index, AccessoryInfoBlock& record) {
    return Bound().GetAccessoryInfo(index, &record);
}

AIBStatus LoadedAIBControl::UploadFPGAImage(Int index, const std::string& path) {
    return Bound().UploadFPGAImage(index, ToWindows1252(path).c_str());
}

AIBStatus LoadedAIBControl::WriteReg(Int index, Int address, Int value) {
    return Bound().WriteReg(index, address, value);
}

AIBStatus LoadedAIBControl::ReadReg(Int index, Int address, Int& value) {
    return Bound().ReadReg(index, address, &value);
}

AIBStatus LoadedAIBControl::ConfigureGPIO(Int index, Int mask) {
    return Bound().ConfigureGPIO(index, mask);
}

AIBStatus LoadedAIBControl::SetGPO(Int index, Int pin) {
    return Bound().SetGPO(index, pin);
}

AIBStatus LoadedAIBControl::ClearGPO(Int index, Int pin) {
    return Bound().ClearGPO(index, pin);
}

AIBStatus LoadedAIBControl::SetExtGPO(Int index, Int pin) {
    return Bound().SetExtGPO(index, pin);
}

AIBStatus LoadedAIBControl::ClearExtGPO(Int index, Int pin) {
    return Bound().ClearExtGPO(index, pin);
}

AIBStatus LoadedAIBControl::GetGPI(Int index, Int pin, Int& level) {
    return Bound().GetGPI(index, pin, &level);
}

AIBStatus LoadedAIBControl::SetDAC(Int index, Int channel, Int value) {
    return Bound().SetDAC(index, channel, value);
}

AIBStatus LoadedAIBControl::GetADC(Int index, Int channel, Int& value) {
    return Bound().GetADC(index, channel, &value);
}

AIBStatus LoadedAIBControl::WriteAIBInfo(Int index, Int first, Int code, Int serial) {
    return Bound().WriteAIBInfo(index, first, code, serial);
}

AIBStatus LoadedAIBControl::WriteEEPROM(Int index, Int address, Int word) {
    return Bound().WriteEEPROM(index, address, word);
}

AIBStatus LoadedAIBControl::ReadEEPROM(Int index, Int address, Int& word) {
    return Bound().ReadEEPROM(index, address, &word);
}

AIBStatus LoadedAIBControl::DumpEEPROM(Int index, const std::string& path) {
    return Bound().DumpEEPROM(index, ToWindows1252(path).c_str());
}

AIBStatus LoadedAIBControl::MFCSetFlowrate(Int index, Int channel, Int setPoint) {
    return Bound().MFCSetFlowrate(index, channel, setPoint);
}

AIBStatus LoadedAIBControl::MFCGetFlowrate(Int index, Int channel, Int& flow) {
    return Bound().MFCGetFlowrate(index, channel, &flow);
}

AIBStatus LoadedAIBControl::MFCSetParameter(Int index, const MFCParameter& parameter, Int value) {
    return Bound().MFCSetParameter(index, parameter.First, parameter.Second, parameter.Third,
                                   parameter.Fourth, value);
}

AIBStatus LoadedAIBControl::MFCGetParameter(Int index, const MFCParameter& parameter, Int& value) {
    return Bound().MFCGetParameter(index, parameter.First, parameter.Second, parameter.Third,
                                   parameter.Fourth, &value);
}

AIBStatus LoadedAIBControl::GetVariable(Int index, Int number, Int& value) {
    return Bound().GetVariable(index, number, &value);
}

AIBStatus LoadedAIBControl::SetVariable(Int index, Int number, Int value) {
    auto* const setVariable = Bound().SetVariable;
    return setVariable == nullptr ? Status::HardwareError : setVariable(index, number, value);
}

} // namespace ombrix
