#include "simulator/SimulatedBench.h"

#include "platform/os/CrashReport.h"
#include "platform/os/FolderDrive.h"

#include <chrono>
#include <system_error>
#include <thread>

namespace ombrix {

namespace {

constexpr bool InRange(std::int32_t value, std::int32_t count) {
    return value >= 0 && value < count;
}

constexpr std::int32_t DACRange = 65536;
constexpr std::int32_t FlowRange = 32001;

} // namespace

SimulatedBench::SimulatedBench(Clock& clock, BenchOptions options)
    : m_Clock(clock), m_Options(std::move(options)), m_StartCounter(clock.Counter()),
      m_LinkNoise(m_Options.Seed) {
    if (!m_Options.Folder.empty()) {
        std::error_code error;
        std::filesystem::create_directories(m_Options.Folder, error);
        if (error)
            throw DriveError(m_Options.Folder.string() + " cannot be made: " + error.message());
    }
    for (const BoardDescription& board : DescribeBench(m_Options.Bench)) {
        const std::uint64_t seed = m_Options.Seed * 1000 + m_Boards.size();
        m_Boards.push_back(
            std::make_unique<SimulatedBoard>(board, m_Options.BenchFaults, m_Options.Folder, seed));
    }
}

void SimulatedBench::SetFaults(Faults faults) {
    m_Options.BenchFaults = std::move(faults);
    if (!m_Options.BenchFaults.EpromFlip)
        m_FlippedWords.clear();
    for (const auto& board : m_Boards)
        board->FaultsChanged();
}

void SimulatedBench::LoadEprom(std::int32_t index, std::string_view image) {
    Board(index).Eprom().Load(image);
}

double SimulatedBench::Now_s() const {
    return static_cast<double>(m_Clock.Counter() - m_StartCounter) /
           static_cast<double>(m_Clock.Frequency());
}

bool SimulatedBench::Unplugged() const {
    const auto& unplugAt_s = m_Options.BenchFaults.UnplugAt_s;
    return unplugAt_s && Now_s() >= *unplugAt_s;
}

void SimulatedBench::Delay(std::string_view operation) const {
    if (m_Options.BenchFaults.SlowCalls.empty())
        return;
    const double end_s = Now_s() + m_Options.BenchFaults.LatencyOf_s(operation);
    for (double now_s = Now_s(); now_s < end_s; now_s = Now_s())
        m_Clock.Rest(end_s - now_s);
}

void SimulatedBench::Begin(std::string_view operation) {
    for (const Faults::FatalCall& fatal : m_Options.BenchFaults.FatalCalls) {
        if (fatal.Operation != operation || ++m_Calls[fatal.Operation] != fatal.Nth)
            continue;
        if (!fatal.Hangs)
            CrashNow();
        while (fatal.Hangs)
            std::this_thread::sleep_for(std::chrono::hours(1));
    }
    Delay(operation);
}

AIBStatus SimulatedBench::FaultOf(std::string_view operation) const {
    if (Unplugged())
        return Status::HardwareError;
    for (const Faults::FailingCall& failing : m_Options.BenchFaults.FailingCalls) {
        if (failing.Operation.empty() || failing.Operation == operation)
            return failing.Status;
    }
    return Status::NoError;
}

template <class Operation>
AIBStatus SimulatedBench::Call(std::string_view name, std::int32_t index, bool argumentsValid,
                               Operation operation) {
    Begin(name);
    if (const AIBStatus fault = FaultOf(name); fault != Status::NoError)
        return fault;
    if (!argumentsValid || !InRange(index, static_cast<std::int32_t>(m_Boards.size())))
        return Status::HardwareError;
    operation(Board(index));
    return Status::NoError;
}

std::int32_t SimulatedBench::OpenAIBAPI() {
    Begin("OpenAIBAPI");
    return Unplugged() ? 0 : static_cast<std::int32_t>(m_Boards.size());
}

AIBStatus SimulatedBench::CloseAIBAPI() {
    Begin("CloseAIBAPI");
    return FaultOf("CloseAIBAPI");
}

AIBStatus SimulatedBench::GetAccessoryInfo(std::int32_t index, AccessoryInfoBlock& record) {
    // The bus has told who is there when the board was plugged in, whatever it answers now.
    if (InRange(index, static_cast<std::int32_t>(m_Boards.size())) && !Unplugged())
        record = Encode(Board(index).Identity());
    return Call("GetAccessoryInfo", index, true, [](SimulatedBoard&) {});
}

AIBStatus SimulatedBench::UploadFPGAImage(std::int32_t index, const std::string& path) {
    std::error_code error;
    const bool exists = std::filesystem::is_regular_file(path, error);
    return Call("UploadFPGAImage", index, exists, [](SimulatedBoard&) {});
}

AIBStatus SimulatedBench::WriteReg(std::int32_t index, std::int32_t address, std::int32_t value) {
    return Call("WriteReg", index, InRange(address, SimulatedBoard::Registers),
                [=](SimulatedBoard& board) { board.WriteRegister(address, value); });
}

AIBStatus SimulatedBench::ReadReg(std::int32_t index, std::int32_t address, std::int32_t& value) {
    return Call("ReadReg", index, InRange(address, SimulatedBoard::Registers),
                [&](SimulatedBoard& board) { value = board.ReadRegister(address, Now_s()); });
}

AIBStatus SimulatedBench::ConfigureGPIO(std::int32_t index, std::int32_t mask) {
    return Call("ConfigureGPIO", index, true,
                [=](SimulatedBoard& board) { board.SetDirections(mask); });
}

AIBStatus SimulatedBench::SetGPO(std::int32_t index, std::int32_t pin) {
    return Call("SetGPO", index, InRange(pin, SimulatedBoard::GPIOPins),
                [=](SimulatedBoard& board) { board.SetPin(pin, true); });
}

AIBStatus SimulatedBench::ClearGPO(std::int32_t index, std::int32_t pin) {
    return Call("ClearGPO", index, InRange(pin, SimulatedBoard::GPIOPins),
                [=](SimulatedBoard& board) { board.SetPin(pin, false); });
}

AIBStatus SimulatedBench::SetExtGPO(std::int32_t index, std::int32_t pin) {
    return Call("SetExtGPO", index, InRange(pin, SimulatedBoard::ExtendedPins),
                [=](SimulatedBoard& board) { board.SetExtendedPin(pin, true); });
}

AIBStatus SimulatedBench::ClearExtGPO(std::int32_t index, std::int32_t pin) {
    return Call("ClearExtGPO", index, InRange(pin, SimulatedBoard::ExtendedPins),
                [=](SimulatedBoard& board) { board.SetExtendedPin(pin, false); });
}

AIBStatus SimulatedBench::GetGPI(std::int32_t index, std::int32_t pin, std::int32_t& level) {
    return Call("GetGPI", index, InRange(pin, SimulatedBoard::GPIOPins),
                [&](SimulatedBoard& board) { level = board.PinLevel(pin, Now_s()) ? 1 : 0; });
}

AIBStatus SimulatedBench::SetDAC(std::int32_t index, std::int32_t channel, std::int32_t value) {
    const bool valid = InRange(channel, SimulatedBoard::AnalogChannels) && InRange(value, DACRange);
    return Call("SetDAC", index, valid,
                [&](SimulatedBoard& board) { board.SetDAC(channel, value, Now_s()); });
}

AIBStatus SimulatedBench::GetADC(std::int32_t index, std::int32_t channel, std::int32_t& value) {
    return Call("GetADC", index, InRange(channel, SimulatedBoard::AnalogChannels),
                [&](SimulatedBoard& board) {
                    const BoardDescription& wiring = board.Description();
                    if (wiring.InputsFromBoard >= 0)
                        value = board.Digitised(Board(wiring.InputsFromBoard).DAC(channel));
                    else if (wiring.MeasuresLineOfBoard >= 0 && channel == 0)
                        // The reference meter gives half scale at the large channel's capacity.
                        value = board.Digitised(
                            Board(wiring.MeasuresLineOfBoard).LineFlow_ml_m(Now_s()) *
                            (32767.0 / wiring.Unit.Capacity_ml_m[0]));
                    else
                        value = board.AnalogInput(channel, Now_s());
                });
}

AIBStatus SimulatedBench::WriteAIBInfo(std::int32_t index, std::int32_t /*first*/,
                                       std::int32_t code, std::int32_t serial) {
    return Call("WriteAIBInfo", index, InRange(code, 3) && serial > 0,
                [=](SimulatedBoard& board) { board.SetIdentity(code, serial); });
}

AIBStatus SimulatedBench::WriteEEPROM(std::int32_t index, std::int32_t address, std::int32_t word) {
    AIBStatus written = Status::AccessDenied;
    const AIBStatus called = Call("WriteEEPROM", index, true, [&](SimulatedBoard& board) {
        if (m_Options.BenchFaults.EpromReadOnly)
            return;
        written = board.Eprom().Write(address, word);
        if (m_Options.BenchFaults.EpromFlip)
            m_FlippedWords.emplace(index, address);
    });
    return called != Status::NoError ? called : written;
}

std::int32_t SimulatedBench::LinkError() {
    constexpr double onceInAHundredWords = 2.3;
    constexpr std::int32_t disturbedBit = 1 << 20;
    const bool disturbed =
        m_Options.BenchFaults.EpromUnsteady && m_LinkNoise.Normal() > onceInAHundredWords;
    return disturbed ? disturbedBit : 0;
}

AIBStatus SimulatedBench::ReadEEPROM(std::int32_t index, std::int32_t address, std::int32_t& word) {
    AIBStatus read = Status::NoError;
    const AIBStatus called = Call("ReadEEPROM", index, true, [&](SimulatedBoard& board) {
        read = board.Eprom().Read(address, word);
        if (m_FlippedWords.contains({index, address}))
            word ^= 1;
        word ^= LinkError();
    });
    return called != Status::NoError ? called : read;
}

AIBStatus SimulatedBench::DumpEEPROM(std::int32_t index, const std::string& path) {
    AIBStatus stored = Status::NoError;
    const AIBStatus called = Call("DumpEEPROM", index, true, [&](SimulatedBoard& board) {
        try {
            ReplaceWholeFile(path, board.Eprom().Image());
        } catch (const DriveError&) {
            stored = Status::AccessDenied;
        }
    });
    return called != Status::NoError ? called : stored;
}

AIBStatus SimulatedBench::MFCSetFlowrate(std::int32_t index, std::int32_t channel,
                                         std::int32_t setPoint) {
    const bool valid =
        InRange(channel, SimulatedBoard::AirChannels) && InRange(setPoint, FlowRange);
    return Call("MFCSetFlowrate", index, valid,
                [&](SimulatedBoard& board) { board.SetFlowSetPoint(channel, setPoint, Now_s()); });
}

AIBStatus SimulatedBench::MFCGetFlowrate(std::int32_t index, std::int32_t channel,
                                         std::int32_t& flow) {
    return Call("MFCGetFlowrate", index, InRange(channel, SimulatedBoard::AirChannels),
                [&](SimulatedBoard& board) { flow = board.FlowReading(channel, Now_s()); });
}

AIBStatus SimulatedBench::MFCSetParameter(std::int32_t index, const MFCParameter& /*parameter*/,
                                          std::int32_t /*value*/) {
    return Call("MFCSetParameter", index, true, [](SimulatedBoard&) {});
}

AIBStatus SimulatedBench::MFCGetParameter(std::int32_t index, const MFCParameter& /*parameter*/,
                                          std::int32_t& value) {
    return Call("MFCGetParameter", index, true, [&](SimulatedBoard&) { value = 0; });
}

AIBStatus SimulatedBench::GetVariable(std::int32_t index, std::int32_t number,
                                      std::int32_t& value) {
    return Call("GetVariable", index, true,
                [&](SimulatedBoard& board) { value = board.Variable(number); });
}

AIBStatus SimulatedBench::SetVariable(std::int32_t index, std::int32_t number, std::int32_t value) {
    return Call("SetVariable", index, true,
                [=](SimulatedBoard& board) { board.SetVariable(number, value); });
}

} // namespace ombrix
