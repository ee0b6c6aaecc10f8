#pragma once

#include "board/AIBControl.h"
#include "boardhost/DrivenOutputs.h"
#include "boardhost/Protocol.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

class BoardHost;

/// The board library in a process of its own, the board host. A library that hangs, crashes or ends
/// takes the host with it and leaves this program unharmed:
/// - a call that takes too long counts as Timeout, and its host is replaced;
/// - a call in which the library ends is a BoardError, and the next one has a new host;
/// - what has been driven is set to zero through a new host at once, and such a board answers no
///   reading and takes no demand but zero until it has been told those zeros by the program too:
///   who measures must not go on as if the outputs stood as they were told.
class HostedAIBControl final : public AIBControl {
  public:
    struct Options {
        /// Path of the host's program.
        std::string Program;
        /// Name or path of the library's file.
        std::string Library;
        /// How long a call may take, but for those that load an FPGA or dump an EPROM.
        std::chrono::milliseconds CallTimeout{5000};
        /// Takes a line of what goes wrong, and of what the library prints.
        std::function<void(const std::string&)> Log = [](const std::string&) {};
    };
    static constexpr std::chrono::milliseconds LongCallTimeout{60'000};
    static constexpr std::int32_t MostBoards = 16;
    /// Lines that are logged of what the library prints; a chatty one must not fill the disk.
    static constexpr int MostPrintedLines = 1000;

    explicit HostedAIBControl(Options options);
    HostedAIBControl(const HostedAIBControl&) = delete;
    HostedAIBControl& operator=(const HostedAIBControl&) = delete;
    ~HostedAIBControl() override;

    /// @throws AIBLibraryError as the loaded library does, and when the library does not answer,
    /// ends, or reports more boards than there can be
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
    /// A value that no converter gives is a HardwareError; so is, below, a flow that no MFC gives.
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
    using Operation = hostprotocol::Operation;
    using Request = hostprotocol::Request;
    using Answer = hostprotocol::Answer;
    using Selectors = std::array<std::int32_t, 4>;

    /// A call of any kind, in a host that is started where there is none. Nothing when it is not
    /// made or does not return. @throws BoardError when the library ends in it, AIBLibraryError
    /// when no host can be started
    std::optional<Answer> Call(const Request& request, std::span<char> block);
    /// The same of a call about a board: Timeout for nothing, and all trouble a BoardError.
    Answer CallBoard(const Request& request, std::span<char> block = {});
    AIBStatus Write(Operation what, std::int32_t index, const Selectors& selectors,
                    std::int32_t value = 0);
    /// @param top the largest value that there can be; the least is 0 then
    AIBStatus Read(Operation what, std::int32_t index, const Selectors& selectors,
                   std::int32_t& value, std::optional<std::int32_t> top = std::nullopt);
    AIBStatus WithPath(Operation what, std::int32_t index, const std::string& path);
    bool IsHeldBack(const Request& request) const;

    /// A host with the library loaded and the boards opened as they were.
    void Start();
    void OpenAgain();
    /// Has the host make a call; nothing when it does not return. A host that is of no use any more
    /// is gone afterwards. @throws BoardError when the library ends
    std::optional<Answer> Exchange(const Request& request, std::span<char> block);
    /// Through a new host; what it cannot do is logged.
    void SwitchOffDriven() noexcept;
    void LogPrinted();

    Options m_Options;
    std::unique_ptr<BoardHost> m_Host;
    bool m_Opened = false;
    /// Serial numbers as the boards have reported them since they were opened, by board index.
    std::vector<std::int32_t> m_Serials;
    DrivenOutputs m_Driven;
    /// What was driven when a host was lost, and has not been told zero by the program since.
    DrivenOutputs m_HeldBack;
    std::string m_PrintedPart;
    int m_PrintedLines = 0;
};

} // namespace ombrix
