#pragma once

#include "platform/text/OleDate.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace ombrix {

/// What the command line says of the bench and the folders; the same for both programs.
struct StationOptions {
    /// Name of the simulated bench; empty for the board library.
    std::string Bench;
    std::string Library = "libAIBControl.so";
    /// The library is loaded into the program itself, without a board host.
    bool InProcess = false;
    /// How long a call of the library may take, in seconds.
    double CallTimeout_s = 5.0;
    std::vector<std::string> FaultTexts;
    std::uint64_t Seed = 1;
    /// Image that is first loaded into the chosen board of the simulated bench.
    std::filesystem::path EpromImage;
    /// How many times faster the simulated bench runs; 0 for virtual time.
    double TimeScale = 1.0;
    /// Date and time at which the simulated bench begins; the present ones when there is none.
    std::optional<OleDate> StartAt;
    /// Where the FPGA configuration files lie; empty for the system folder on drive C:.
    std::filesystem::path FpgaFolder;
    std::filesystem::path DataRoot;
    /// Where programs tell each other which boards they have; empty for the folder of the machine,
    /// with a simulated bench for that of the data folder.
    std::filesystem::path ClaimsFolder;
    std::filesystem::path Share;
    std::int32_t Board = 0;
};

/// Adds the options to a command line, with checks of their values.
void AddStationOptions(CLI::App& app, StationOptions& options);

} // namespace ombrix
