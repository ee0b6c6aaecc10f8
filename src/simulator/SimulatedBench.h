#pragma once

#include "board/AIBControl.h"
#include "platform/ports/Clock.h"
#include "simulator/MFCChannel.h"
#include "simulator/SimulatedBoard.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ombrix {

/// Which bench is simulated, with what faults, and where it keeps what its boards store.
struct BenchOptions {
    /// Name of the bench, see DescribeBench.
    std::string Bench = "acu";
    Faults BenchFaults;
    /// Seed of the noise: same seed and calls, same readings.
    std::uint64_t Seed = 1;
    /// Real folder of the EPROM images; empty keeps them in memory only.
    std::filesystem::path Folder;
};

/// A bench that behaves like hardware, behind the interface of the board library: what the
/// program shows, trains and is tested with where no board is.
class SimulatedBench final : public AIBControl {
  public:
    /// @param clock the bench lives by; slow calls let it pass @throws BenchError, DriveError
    SimulatedBench(Clock& clock, BenchOptions options);
    // The boards refer to the faults that the bench holds.
    SimulatedBench(const SimulatedBench&) = delete;
    SimulatedBench& operator=(const SimulatedBench&) = delete;

    /// Other faults from now on, those of before being mended. A board that is unplugged at a
    /// time counts it from the making of the bench, so 0 unplugs it at once.
    void SetFaults(Faults faults);
    /// Puts an image into a board's EPROM. @throws DriveError, std::out_of_range
    void LoadEprom(std::int32_t index, std::string_view image);
    /// A board as it is, for those who look at the bench from outside.
    SimulatedBoard& Board(std::int32_t index) {
        return *m_Boards.at(static_cast<std::size_t>(index));
    }

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
    double Now_s() const;
    bool Unplugged() const;
    /// Lets the time pass that the bench's faults take for a call of this name.
    void Delay(std::string_view operation) const;
    /// Begins a call: does not return from one that is to be fatal.
    void Begin(std::string_view operation);
    /// The status that the bench's faults give to a call of this name.
    AIBStatus FaultOf(std::string_view operation) const;
    /// One bit of a word that an unsteady link gets wrong; mostly none.
    std::int32_t LinkError();
    /// Runs an operation of a board, unless a fault or a wrong argument forbids it.
    template <class Operation>
    AIBStatus Call(std::string_view name, std::int32_t index, bool argumentsValid,
                   Operation operation);

    Clock& m_Clock;
    BenchOptions m_Options;
    std::int64_t m_StartCounter;
    std::vector<std::unique_ptr<SimulatedBoard>> m_Boards;
    /// Of the link to the boards.
    Noise m_LinkNoise;
    /// Words written under the fault "eprom-flip": board and address.
    std::set<std::pair<std::int32_t, std::int32_t>> m_FlippedWords;
    /// How often each operation with a fatal call has been called.
    std::map<std::string, int, std::less<>> m_Calls;
};

} // namespace ombrix
