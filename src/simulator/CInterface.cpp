// The simulated bench as a board library of its own: a shared library with exactly the C
// interface of the real one, against which the program and others can be developed.
// Environment variables choose the bench, since the interface has no place for a choice:
// AIB_SIMULATOR_BENCH (a bench name), AIB_SIMULATOR_FOLDER (where EPROM images are kept) and
// AIB_SIMULATOR_FAULTS (faults, with blanks between them).
#include "platform/os/Clocks.h"
#include "simulator/SimulatedBench.h"

#include <cstdlib>
#include <exception>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ombrix::AccessoryInfoBlock;
using ombrix::SimulatedBench;
using Int = std::int32_t;

std::string Environment(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : value;
}

ombrix::Faults ChosenFaults() {
    std::istringstream words(Environment("AIB_SIMULATOR_FAULTS", ""));
    return ombrix::Faults::Parse(std::vector<std::string>(std::istream_iterator<std::string>(words),
                                                          std::istream_iterator<std::string>()));
}

/// A C interface has no object to hand around, so the library holds its one bench.
SimulatedBench& Bench() {
    static ombrix::SystemClock clock;
    static SimulatedBench bench(clock, {Environment("AIB_SIMULATOR_BENCH", "acu"), ChosenFaults(),
                                        1, Environment("AIB_SIMULATOR_FOLDER", "")});
    return bench;
}

/// No exception may cross the C interface.
template <class Operation>
Int Guarded(Int failure, Operation operation) noexcept {
    try {
        return operation(Bench());
    } catch (const std::exception&) {
        return failure;
    }
}

template <class Operation>
Int Call(Operation operation) noexcept {
    return Guarded(ombrix::Status::HardwareError, operation);
}

} // namespace

extern "C" {

Int OpenAIBAPI() {
    return Guarded(0, [](SimulatedBench& bench) { return bench.OpenAIBAPI(); });
}
Int CloseAIBAPI() {
    return Call([](SimulatedBench& bench) { return bench.CloseAIBAPI(); });
}
Int GetAccessoryInfo(Int index, AccessoryInfoBlock* record) {
    return Call([=](SimulatedBench& bench) { return bench.GetAccessoryInfo(index, *record); });
}
Int UploadFPGAImage(Int index, const char* path) {
    return Call([=](SimulatedBench& bench) { return bench.UploadFPGAImage(index, path); });
}
Int WriteReg(Int index, Int address, Int value) {
    return Call([=](SimulatedBench& bench) { return bench.WriteReg(index, address, value); });
}
Int ReadReg(Int index, Int address, Int* value) {
    return Call([=](SimulatedBench& bench) { return bench.ReadReg(index, address, *value); });
}
Int ConfigureGPIO(Int index, Int mask) {
    return Call([=](SimulatedBench& bench) { return bench.ConfigureGPIO(index, mask); });
}
Int SetGPO(Int index, Int pin) {
    return Call([=](SimulatedBench& bench) { return bench.SetGPO(index, pin); });
}
Int ClearGPO(Int index, Int pin) {
    return Call([=](SimulatedBench& bench) { return bench.ClearGPO(index, pin); });
}
Int SetExtGPO(Int index, Int pin) {
    return Call([=](SimulatedBench& bench) { return bench.SetExtGPO(index, pin); });
}
Int ClearExtGPO(Int index, Int pin) {
    return Call([=](SimulatedBench& bench) { return bench.ClearExtGPO(index, pin); });
}
Int GetGPI(Int index, Int pin, Int* level) {
    return Call([=](SimulatedBench& bench) { return bench.GetGPI(index, pin, *level); });
}
Int SetDAC(Int index, Int channel, Int value) {
    return Call([=](SimulatedBench& bench) { return bench.SetDAC(index, channel, value); });
}
Int GetADC(Int index, Int channel, Int* value) {
    return Call([=](SimulatedBench& bench) { return bench.GetADC(index, channel, *value); });
}
Int WriteAIBInfo(Int index, Int first, Int code, Int serial) {
    return Call(
        [=](SimulatedBench& bench) { return bench.WriteAIBInfo(index, first, code, serial); });
}
Int WriteEEPROM(Int index, Int address, Int word) {
    return Call([=](SimulatedBench& bench) { return bench.WriteEEPROM(index, address, word); });
}
Int ReadEEPROM(Int index, Int address, Int* word) {
    return Call([=](SimulatedBench& bench) { return bench.ReadEEPROM(index, address, *word); });
}
Int DumpEEPROM(Int index, const char* path) {
    return Call([=](SimulatedBench& bench) { return bench.DumpEEPROM(index, path); });
}
Int MFCSetFlowrate(Int index, Int channel, Int setPoint) {
    return Call(
        [=](SimulatedBench& bench) { return bench.MFCSetFlowrate(index, channel, setPoint); });
}
Int MFCGetFlowrate(Int index, Int channel, Int* flow) {
    return Call([=](SimulatedBench& bench) { return bench.MFCGetFlowrate(index, channel, *flow); });
}
Int MFCSetParameter(Int index, Int first, Int second, Int third, Int fourth, Int value) {
    return Call([=](SimulatedBench& bench) {
        return bench.MFCSetParameter(index, {first, second, third, fourth}, value);
    });
}
Int MFCGetParameter(Int index, Int first, Int second, Int third, Int fourth, Int* value) {
    return Call([=](SimulatedBench& bench) {
        return bench.MFCGetParameter(index, {first, second, third, fourth}, *value);
    });
}
Int GetVariable(Int index, Int number, Int* value) {
    return Call([=](SimulatedBench& bench) { return bench.GetVariable(index, number, *value); });
}
Int SetVariable(Int index, Int number, Int value) {
    return Call([=](SimulatedBench& bench) { return bench.SetVariable(index, number, value); });
}

} // extern "C"
