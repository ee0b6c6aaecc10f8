#include "boardhost/BoardLibrary.h"

#include "boardhost/LibraryFile.h"

namespace ombrix {

BoardLibrary::BoardLibrary(const std::string& file) : m_Handle(LoadLibraryFile(file)) {
    const auto bindOptional = [this](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(
            FindFunction(m_Handle.get(), name));
    };
    const auto bind = [&](auto& function, const char* name) {
        bindOptional(function, name);
        if (function == nullptr)
            throw AIBLibraryError(AIBLibraryError::FunctionNotFound,
                                  LibraryErrorText("The board library " + file +
                                                       " lacks the function \"" + name + "\".",
                                                   LoadersReason()));
    };
    bind(OpenAIBAPI, "OpenAIBAPI");
    bind(CloseAIBAPI, "CloseAIBAPI");
    bind(GetAccessoryInfo, "GetAccessoryInfo");
    bind(UploadFPGAImage, "UploadFPGAImage");
    bind(WriteReg, "WriteReg");
    bind(ReadReg, "ReadReg");
    bind(ConfigureGPIO, "ConfigureGPIO");
    bind(SetGPO, "SetGPO");
    bind(ClearGPO, "ClearGPO");
    bind(SetExtGPO, "SetExtGPO");
    bind(ClearExtGPO, "ClearExtGPO");
    bind(GetGPI, "GetGPI");
    bind(SetDAC, "SetDAC");
    bind(GetADC, "GetADC");
    bind(WriteAIBInfo, "WriteAIBInfo");
    bind(WriteEEPROM, "WriteEEPROM");
    bind(ReadEEPROM, "ReadEEPROM");
    bind(DumpEEPROM, "DumpEEPROM");
    bind(MFCSetFlowrate, "MFCSetFlowrate");
    bind(MFCGetFlowrate, "MFCGetFlowrate");
    bind(MFCSetParameter, "MFCSetParameter");
    bind(MFCGetParameter, "MFCGetParameter");
    bind(GetVariable, "GetVariable");
    bindOptional(SetVariable, "SetVariable");
}

} // namespace ombrix
