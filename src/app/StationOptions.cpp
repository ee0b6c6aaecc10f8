#include "app/StationOptions.h"

#include "platform/os/Computer.h"
#include "platform/text/Utf8Path.h"
#include "simulator/BenchDescription.h"
#include "simulator/Faults.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cstdio>

namespace ombrix {

namespace {

/// The text of an error, empty when the operation raises none: the form of a value check.
template <class Error, class Operation>
std::string ErrorOf(Operation operation) {
    try {
        operation();
        return {};
    } catch (const Error& error) {
        return error.what();
    }
}

std::string CheckBench(const std::string& name) {
    return ErrorOf<BenchError>([&name] { DescribeBench(name); });
}

std::string CheckFault(const std::string& text) {
    return ErrorOf<FaultError>([&text] { Faults::Parse({&text, 1}); });
}

double ParseTimeScale(const std::string& text) {
    constexpr double largest = 1e6;
    if (text == "max")
        return 0.0;
    double scale = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), scale);
    if (error != std::errc{} || end != text.data() + text.size() || !(scale > 0.0) ||
        scale > largest)
        throw CLI::ValidationError("--time-scale",
                                   "\"" + text + "\" is neither \"max\" nor a number above 0");
    return scale;
}

OleDate ParseStart(const std::string& text) {
    CivilTime time;
    int length = 0;
    const int fields =
        std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d%n", &time.Year, &time.Month, &time.Day,
                    &time.Hour, &time.Minute, &time.Second, &length);
    const OleDate start = OleDate::FromCivil(time);
    // A day or an hour that the calendar lacks comes back as another one.
    if (fields != 6 || static_cast<std::size_t>(length) != text.size() || start.ToCivil() != time)
        throw CLI::ValidationError("--start-at", "\"" + text +
                                                     "\" is no date and time such as "
                                                     "2026-03-15T10:20:30");
    return start;
}

} // namespace

void AddStationOptions(CLI::App& app, StationOptions& options) {
    if (const std::filesystem::path folder = UsersDataFolder(); !folder.empty())
        options.DataRoot = folder / "ombrix";
    CLI::Option* simulate =
        app.add_flag("--simulate{acu}", options.Bench,
                     "Use the simulated bench of that name: " + BenchNames("or") +
                         "; alone it means acu")
            ->check(CheckBench);
    app.add_option("--library", options.Library, "The board library to load")
        ->type_name("FILE")
        ->capture_default_str();
    constexpr double shortest_s = 0.01;
    constexpr double longest_s = 3600.0;
    CLI::Option* callTimeout =
        app.add_option("--call-timeout", options.CallTimeout_s,
                       "How long a call of the board library may take before it counts as failed; "
                       "loading an FPGA may take a minute")
            ->type_name("SECONDS")
            ->check(CLI::Range(shortest_s, longest_s))
            ->capture_default_str()
            ->excludes(simulate);
    app.add_flag("--in-process", options.InProcess,
                 "Load the board library into the program itself, for debugging: one that hangs or "
                 "crashes takes the program with it")
        ->excludes(simulate)
        ->excludes(callTimeout);
    app.add_option("--fault", options.FaultTexts,
                   "A fault of the simulated bench, such as no-air or status:32; may be repeated")
        ->type_name("NAME")
        ->allow_extra_args(false)
        ->check(CheckFault)
        ->needs(simulate);
    app.add_option("--seed", options.Seed, "Seed of the bench's noise")
        ->type_name("N")
        ->capture_default_str()
        ->needs(simulate);
    app.add_option("--eprom", options.EpromImage,
                   "First load this 2048-byte image into the chosen board")
        ->type_name("FILE")
        ->needs(simulate);
    app.add_option_function<std::string>(
           "--time-scale",
           [&options](const std::string& text) { options.TimeScale = ParseTimeScale(text); },
           "The simulated bench runs N times faster; max: in virtual time")
        ->type_name("N|max")
        ->needs(simulate);
    app.add_option_function<std::string>(
           "--start-at",
           [&options](const std::string& text) { options.StartAt = ParseStart(text); },
           "Date and time at which the simulated bench begins, such as 2026-03-15T10:20:30")
        ->type_name("DATE")
        ->needs(simulate);
    app.add_option("--fpga-folder", options.FpgaFolder,
                   "Where the FPGA configuration files lie; without it in the instrument's system "
                   "folder on drive C:")
        ->check(CLI::ExistingDirectory)
        ->type_name("DIR");
    app.add_option("--data-root", options.DataRoot, "The folder that stands for drive C:")
        ->type_name("DIR")
        ->capture_default_str();
    app.final_callback([&options] {
        if (options.DataRoot.empty())
            throw CLI::ValidationError("--data-root",
                                       "There is no data folder: HOME is not set. Choose one with "
                                       "--data-root");
    });
    app.add_option("--claims-folder", options.ClaimsFolder,
                   "Where programs tell each other which boards they have; " +
                       TextOf(BoardsFolder()) +
                       " if not given, with a simulated bench in the data folder")
        ->type_name("DIR");
    app.add_option("--share", options.Share, "The production file server's share")
        ->type_name("DIR");
    app.add_option("--board", options.Board, "Board index, from 0")
        ->type_name("N")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
}

} // namespace ombrix
