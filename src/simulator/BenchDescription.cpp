#include "simulator/BenchDescription.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

// A large and a small controller of a healthy unit: their errors stay far inside every limit.
constexpr MFCCharacteristics LargeChannel{1.0005, 12.0, 40.0, 20.0, 3.0, 0.15};
constexpr MFCCharacteristics SmallChannel{0.9994, -9.0, 32.0, 16.0, 3.0, 0.12};

BoardDescription Board(BusType bus, std::int32_t serial, std::int32_t hwVersion) {
    BoardDescription board;
    board.Bus = bus;
    board.Serial = serial;
    board.HWVersion = hwVersion;
    board.Channels = {LargeChannel, SmallChannel};
    return board;
}

BoardDescription CalibratedBoard(BusType bus, std::int32_t serial, std::int32_t hwVersion,
                                 std::string mfcNumber) {
    BoardDescription board = Board(bus, serial, hwVersion);
    board.Unit.Calibrated = true;
    board.Unit.MFCNumber = std::move(mfcNumber);
    return board;
}

std::vector<BoardDescription> ACUBench() {
    return {CalibratedBoard(BusType::Usb, 301, 1, "M9200301A")};
}

std::vector<BoardDescription> FreshBench() {
    return {Board(BusType::Usb, 302, 0)};
}

std::vector<BoardDescription> PlainBench() {
    BoardDescription board = CalibratedBoard(BusType::Usb, 303, 0, "M9200303C");
    board.Unit.SolenoidValves = false;
    board.Unit.MaxPressure_mBar = 400.0F;
    return {board};
}

std::vector<BoardDescription> PairBench() {
    return {CalibratedBoard(BusType::Usb, 123, 0, "M9200123B"),
            CalibratedBoard(BusType::FireWire, 7, 0, "M9200007E")};
}

std::vector<BoardDescription> RigBench() {
    BoardDescription first = Board(BusType::Usb, 21, 0);
    BoardDescription second = Board(BusType::Usb, 22, 0);
    first.InputsFromBoard = 1;
    second.InputsFromBoard = 0;
    return {first, second};
}

std::vector<BoardDescription> AirFlowBench() {
    BoardDescription measure = Board(BusType::Usb, 347, 0);
    measure.MeasuresLineOfBoard = 0;
    return {CalibratedBoard(BusType::Usb, 161, 0, "M9200161D"), measure};
}

std::vector<BoardDescription> NoBoards() {
    return {};
}

struct NamedBench {
    std::string_view Name;
    std::vector<BoardDescription> (*Boards)();
};

constexpr std::array<NamedBench, 7> Benches = {{{"acu", ACUBench},
                                                {"fresh", FreshBench},
                                                {"plain", PlainBench},
                                                {"pair", PairBench},
                                                {"rig", RigBench},
                                                {"airflow", AirFlowBench},
                                                {"none", NoBoards}}};

} // namespace

std::vector<BoardDescription> DescribeBench(std::string_view name) {
    for (const NamedBench& bench : Benches) {
        if (bench.Name == name)
            return bench.Boards();
    }
    throw BenchError(fmt::format("There is no simulated bench \"{}\". Benches are {}.", name,
                                 BenchNames("and")));
}

std::string BenchNames(std::string_view conjunction) {
    std::string names;
    for (const NamedBench& bench : Benches) {
        if (&bench == &Benches.back())
            names += fmt::format(" {} ", conjunction);
        else if (&bench != &Benches.front())
            names += ", ";
        names += bench.Name;
    }
    return names;
}

double BackPressure_mBar(double flow_ml_m) {
    return 6.0e-4 * flow_ml_m + 1.0e-7 * flow_ml_m * flow_ml_m;
}

double PressureReading_bits(double pressure_mBar, double maxPressure_mBar) {
    constexpr double bitsPerVolt = 65534.0 / 5.0;
    return bitsPerVolt * (0.5 + 4.0 * pressure_mBar / maxPressure_mBar);
}

} // namespace ombrix
