#pragma once

#include "boardhost/LibraryError.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ombrix {

/// The board library, loaded from its file and bound function by function: C linkage, 32-bit
/// integers, out arguments as pointers, texts as NUL-terminated Windows-1252.
class BoardLibrary {
  public:
    using Int = std::int32_t;

    /// @param file name or path of the shared library; found as the system finds libraries
    /// @throws AIBLibraryError when the file or a function of it is missing, or it is no library
    /// for this computer
    explicit BoardLibrary(const std::string& file);

  private:
    /// A shared library, unloaded with the last that knows it.
    std::shared_ptr<void> m_Handle;

  public:
    Int (*OpenAIBAPI)() = nullptr;
    Int (*CloseAIBAPI)() = nullptr;
    /// The record has 788 bytes.
    Int (*GetAccessoryInfo)(Int, void*) = nullptr;
    Int (*UploadFPGAImage)(Int, const char*) = nullptr;
    Int (*WriteReg)(Int, Int, Int) = nullptr;
    Int (*ReadReg)(Int, Int, Int*) = nullptr;
    Int (*ConfigureGPIO)(Int, Int) = nullptr;
    Int (*SetGPO)(Int, Int) = nullptr;
    Int (*ClearGPO)(Int, Int) = nullptr;
    Int (*SetExtGPO)(Int, Int) = nullptr;
    Int (*ClearExtGPO)(Int, Int) = nullptr;
    Int (*GetGPI)(Int, Int, Int*) = nullptr;
    Int (*SetDAC)(Int, Int, Int) = nullptr;
    Int (*GetADC)(Int, Int, Int*) = nullptr;
    Int (*WriteAIBInfo)(Int, Int, Int, Int) = nullptr;
    Int (*WriteEEPROM)(Int, Int, Int) = nullptr;
    Int (*ReadEEPROM)(Int, Int, Int*) = nullptr;
    Int (*DumpEEPROM)(Int, const char*) = nullptr;
    Int (*MFCSetFlowrate)(Int, Int, Int) = nullptr;
    Int (*MFCGetFlowrate)(Int, Int, Int*) = nullptr;
    Int (*MFCSetParameter)(Int, Int, Int, Int, Int, Int) = nullptr;
    Int (*MFCGetParameter)(Int, Int, Int, Int, Int, Int*) = nullptr;
    Int (*GetVariable)(Int, Int, Int*) = nullptr;
    /// Empty in older libraries; the program offers it but never calls it.
    Int (*SetVariable)(Int, Int, Int) = nullptr;
};

} // namespace ombrix
