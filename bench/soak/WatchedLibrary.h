#pragma once

#include "board/AIBControl.h"

#include <functional>
#include <string_view>

namespace ombrix::soak {

/// A board library with somebody who is told of each operation on a board before it is done,
/// and who may spoil it: with an exception too.
class WatchedLibrary final : public AIBControl {
  public:
    explicit WatchedLibrary(AIBControl& library) : m_Library(library) {}

    std::function<void(std::string_view operation)> BeforeCall;
    /// How an output, of that channel or pin, was taken.
    std::function<void(std::string_view operation, std::int32_t number, AIBStatus status)>
        AfterOutput;

    std::int32_t OpenAIBAPI() override { return m_Library.OpenAIBAPI(); }
    AIBStatus CloseAIBAPI() override { return m_Library.CloseAIBAPI(); }
    AIBStatus GetAccessoryInfo(std::int32_t index, AccessoryInfoBlock& record) override {
        return Told("GetAccessoryInfo").GetAccessoryInfo(index, record);
    }
    AIBStatus UploadFPGAImage(std::int32_t index, const std::string& path) override {
        return Told("UploadFPGAImage").UploadFPGAImage(index, path);
    }
    AIBStatus WriteReg(std::int32_t index, std::int32_t address, std::int32_t value) override {
        return Told("WriteReg").WriteReg(index, address, value);
    }
    AIBStatus ReadReg(std::int32_t index, std::int32_t address, std::int32_t& value) override {
        return Told("ReadReg").ReadReg(index, address, value);
    }
    AIBStatus ConfigureGPIO(std::int32_t index, std::int32_t mask) override {
        return Told("ConfigureGPIO").ConfigureGPIO(index, mask);
    }
    AIBStatus SetGPO(std::int32_t index, std::int32_t pin) override {
        return Taken("SetGPO", pin, Told("SetGPO").SetGPO(index, pin));
    }
    AIBStatus ClearGPO(std::int32_t index, std::int32_t pin) override {
        return Taken("ClearGPO", pin, Told("ClearGPO").ClearGPO(index, pin));
    }
    AIBStatus SetExtGPO(std::int32_t index, std::int32_t pin) override {
        return Taken("SetExtGPO", pin, Told("SetExtGPO").SetExtGPO(index, pin));
    }
    AIBStatus ClearExtGPO(std::int32_t index, std::int32_t pin) override {
        return Taken("ClearExtGPO", pin, Told("ClearExtGPO").ClearExtGPO(index, pin));
    }
    AIBStatus GetGPI(std::int32_t index, std::int32_t pin, std::int32_t& level) override {
        return Told("GetGPI").GetGPI(index, pin, level);
    }
    AIBStatus SetDAC(std::int32_t index, std::int32_t channel, std::int32_t value) override {
        return Taken("SetDAC", channel, Told("SetDAC").SetDAC(index, channel, value));
    }
    AIBStatus GetADC(std::int32_t index, std::int32_t channel, std::int32_t& value) override {
        return Told("GetADC").GetADC(index, channel, value);
    }
    AIBStatus WriteAIBInfo(std::int32_t index, std::int32_t first, std::int32_t code,
                           std::int32_t serial) override {
        return Told("WriteAIBInfo").WriteAIBInfo(index, first, code, serial);
    }
    AIBStatus WriteEEPROM(std::int32_t index, std::int32_t address, std::int32_t word) override {
        return Told("WriteEEPROM").WriteEEPROM(index, address, word);
    }
    AIBStatus ReadEEPROM(std::int32_t index, std::int32_t address, std::int32_t& word) override {
        return Told("ReadEEPROM").ReadEEPROM(index, address, word);
    }
    AIBStatus DumpEEPROM(std::int32_t index, const std::string& path) override {
        return Told("DumpEEPROM").DumpEEPROM(index, path);
    }
    AIBStatus MFCSetFlowrate(std::int32_t index, std::int32_t channel,
                             std::int32_t setPoint) override {
        return Taken("MFCSetFlowrate", channel,
                     Told("MFCSetFlowrate").MFCSetFlowrate(index, channel, setPoint));
    }
    AIBStatus MFCGetFlowrate(std::int32_t index, std::int32_t channel,
                             std::int32_t& flow) override {
        return Told("MFCGetFlowrate").MFCGetFlowrate(index, channel, flow);
    }
    AIBStatus MFCSetParameter(std::int32_t index, const MFCParameter& parameter,
                              std::int32_t value) override {
        return Told("MFCSetParameter").MFCSetParameter(index, parameter, value);
    }
    AIBStatus MFCGetParameter(std::int32_t index, const MFCParameter& parameter,
                              std::int32_t& value) override {
        return Told("MFCGetParameter").MFCGetParameter(index, parameter, value);
    }
    AIBStatus GetVariable(std::int32_t index, std::int32_t number, std::int32_t& value) override {
        return Told("GetVariable").GetVariable(index, number, value);
    }
    AIBStatus SetVariable(std::int32_t index, std::int32_t number, std::int32_t value) override {
        return Told("SetVariable").SetVariable(index, number, value);
    }

  private:
    AIBStatus Taken(std::string_view operation, std::int32_t number, AIBStatus status) {
        if (AfterOutput)
            AfterOutput(operation, number, status);
        return status;
    }
    AIBControl& Told(std::string_view operation) {
        if (BeforeCall)
            BeforeCall(operation);
        return m_Library;
    }

    AIBControl& m_Library;
};

} // namespace ombrix::soak
