#pragma once

#include "board/AIBControl.h"
#include "boardhost/BoardLibrary.h"

#include <optional>
#include <string>
#include <utility>

namespace ombrix {

/// The board library, loaded into this program at first use.
class LoadedAIBControl final : public AIBControl {
  public:
    /// @param file name or path of the shared library; found as the system finds libraries
    explicit LoadedAIBControl(std::string file) : m_File(std::move(file)) {}

    /// @throws AIBLibraryError when the file or a function of it is missing, or it is no library
    /// for this computer
    std::int32_t OpenAIBAPI() override;
    AIBStatus CloseAIBAPI() override;
    AIBStatus GetAccessoryInfo(std::int32_t index, AccessoryInfoBlock& record) override;
    AIBStatus UploadFPGAImage(std::int32_t index, const std::string& path) override;
    AIBStatus WriteReg(std::int32_t index, std::int32_t address, std::int32_t value) override;
    AIBStatus ReadReg(std::int32_t index, std::int32_t address, std::int32_t& value) override;
    AIBStatus ConfigureGPIO(std::int32_t index, std::int32_t mask) override;
    AIBStatus SetGPO(std::int32_t index, std::int32_t pin) override;
    AIBStatus ClearGPO(std::int32_t index, std::int32_t pin) override;
    AIBStatus SetExtGPO(std::int32_t index, std::int32_t pin) override;
    AIBStatus ClearExtGPO(std::int32_t index, std::int32_t pin) override;
    AIBStatus GetGPI(std::int32_t index, std::int32_t pin, std::int32_t& level) override;
    AIBStatus SetDAC(std::int32_t index, std::int32_t channel, std::int32_t value) override;
    AIBStatus GetADC(std::int32_t index, std::int32_t channel, std::int32_t& value) override;
    AIBStatus WriteAIBInfo(std::int32_t index, std::int32_t first, std::int32_t code,
                           std::int32_t serial) override;
    AIBStatus WriteEEPROM(std::int32_t index, std::int32_t address, std::int32_t word) override;
    AIBStatus ReadEEPROM(std::int32_t index, std::int32_t address, std::int32_t& word) override;
    AIBStatus DumpEEPROM(std::int32_t index, const std::string& path) override;
    AIBStatus MFCSetFlowrate(std::int32_t index, std::int32_t channel,
                             std::int32_t setPoint) override;
    AIBStatus MFCGetFlowrate(std::int32_t index, std::int32_t channel, std::int32_t& flow) override;
    AIBStatus MFCSetParameter(std::int32_t index, const MFCParameter& parameter,
                              std::int32_t value) override;
    AIBStatus MFCGetParameter(std::int32_t index, const MFCParameter& parameter,
                              std::int32_t& value) override;
    AIBStatus GetVariable(std::int32_t index, std::int32_t number, std::int32_t& value) override;
    AIBStatus SetVariable(std::int32_t index, std::int32_t number, std::int32_t value) override;

  private:
    const BoardLibrary& Bound();

    std::string m_File;
    std::optional<BoardLibrary> m_Library;
};

} // namespace ombrix
