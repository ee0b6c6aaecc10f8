#include "terminal/CommandLine.h"

#include "benchtests/OutputSweep.h"
#include "terminal/Commands.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

namespace ombrix {

namespace {

using Run = std::function<CommandResult(CommandContext&)>;

/// Arguments of the commands; they live as long as the command line that fills them.
struct Arguments {
    std::int32_t Channel = 0;
    std::int32_t Value = 0;
    std::int32_t Address = 0;
    std::int32_t WordCount = 1;
    std::int32_t Serial = 0;
    double Seconds = 0.0;
    bool Verify = false;
    bool Due = false;
    bool Csv = false;
    std::string Setup;
    std::string Text;
    std::string File;
    std::optional<std::filesystem::path> OtherFile;
    std::array<bool, 6> Options{};
    SweepOptions Sweep;
};

class CommandAdder {
  public:
    explicit CommandAdder(ChosenCommand& chosen) : m_Chosen(chosen) {}

    CLI::App* Add(CLI::App& parent, const std::string& name, const std::string& help, Run run) {
        CLI::App* command = parent.add_subcommand(name, help);
        const std::string fullName =
            parent.get_parent() == nullptr ? name : parent.get_name() + " " + name;
        command->callback([&chosen = m_Chosen, fullName, run = std::move(run)] {
            chosen.Name = fullName;
            chosen.Run = run;
        });
        return command;
    }

  private:
    ChosenCommand& m_Chosen;
};

void AddBoardCommands(CLI::App& app, CommandAdder& adder, const std::shared_ptr<Arguments>& args) {
    adder.Add(app, "detect", "Find, identify and program the boards", RunDetect);
    adder.Add(app, "info", "Device information and calibration summary of the board", RunInfo);
    adder.Add(app, "self-test", "Walking-register test and MFC readiness", RunSelfTest);
    adder.Add(app, "adc", "Read the four ADC channels and the pressure register", RunAdc);

    CLI::App* dac = adder.Add(app, "dac", "Set a DAC", [args](CommandContext& context) {
        return RunDac(context, args->Channel, args->Value);
    });
    dac->add_option("CHANNEL", args->Channel, "0 to 3")->required()->check(CLI::Range(0, 3));
    dac->add_option("VALUE", args->Value, "0 to 65534")->required();

    CLI::App* identity =
        adder.Add(app, "identity", "Write the board identity", [args](CommandContext& context) {
            return RunIdentity(context, args->Serial, args->Setup);
        });
    identity->add_option("--serial", args->Serial, "Serial number of the ACU, 1 to 999")
        ->required()
        ->check(CLI::Range(1, 999));
    identity->add_option("--setup", args->Setup, "analog, both or digital")
        ->required()
        ->check(CLI::IsMember({"analog", "both", "digital"}));

    CLI::App* number =
        adder.Add(app, "mfc-number", "Write the MFC number",
                  [args](CommandContext& context) { return RunMFCNumber(context, args->Text); });
    number->add_option("TEXT", args->Text, "At most 12 characters")->required();

    CLI::App* diagnostics = adder.Add(
        app, "diagnostics", "Put versions, boards, log and crash reports into one archive",
        [args](CommandContext& context) { return RunDiagnostics(context, args->File); });
    diagnostics->add_option("FILE", args->File, "The archive; in the data folder if not given");
}

void AddEpromCommands(CLI::App& app, CommandAdder& adder, const std::shared_ptr<Arguments>& args) {
    CLI::App* eprom = app.add_subcommand("eprom", "Read and write the EPROM");
    eprom->require_subcommand(1);

    CLI::App* read = adder.Add(*eprom, "read", "Read words", [args](CommandContext& context) {
        return RunEpromRead(context, args->Address, args->WordCount);
    });
    read->add_option("ADDRESS", args->Address, "0 to 2044 in steps of 4")->required();
    read->add_option("WORDS", args->WordCount, "How many words");

    CLI::App* write = adder.Add(*eprom, "write", "Write a word and read it back",
                                [args](CommandContext& context) {
                                    return RunEpromWrite(context, args->Address, args->Value);
                                });
    write->add_option("ADDRESS", args->Address, "0 to 2044 in steps of 4")->required();
    write->add_option("VALUE", args->Value, "Signed 32-bit value")->required();

    CLI::App* fill = adder.Add(*eprom, "fill", "Write every word", [args](CommandContext& context) {
        return RunEpromFill(context, args->Value);
    });
    fill->add_option("VALUE", args->Value, "Signed 32-bit value")->required();

    CLI::App* save =
        adder.Add(*eprom, "save", "Store the 2048 bytes in a file",
                  [args](CommandContext& context) { return RunEpromSave(context, args->File); });
    save->add_option("FILE", args->File)->required();

    CLI::App* restore =
        adder.Add(*eprom, "restore", "Show what differs, then write the bytes of a file and verify",
                  [args](CommandContext& context) { return RunEpromRestore(context, args->File); });
    restore->add_option("FILE", args->File)->required();

    CLI::App* diff = adder.Add(*eprom, "diff", "Compare an image with another one or the board",
                               [args](CommandContext& context) {
                                   return RunEpromDiff(context, args->File, args->OtherFile);
                               });
    diff->add_option("FILE", args->File, "The earlier content")->required();
    diff->add_option("OTHER", args->OtherFile, "The later content; the board's when left out");

    adder.Add(*eprom, "show", "The decoded ACU record", RunEpromShow);
}

void AddHealthCheck(CLI::App& app, CommandAdder& adder, const std::shared_ptr<Arguments>& args) {
    struct Choice {
        const char* Help;
        HealthCheckOption Option;
    };
    static constexpr std::array<Choice, 6> choices = {
        {{"Short test", HealthCheckOption::Short},
         {"Pressure test with gauges", HealthCheckOption::PressureCheck},
         {"Long test of channel 1", HealthCheckOption::LongCh1},
         {"Long test of channel 2", HealthCheckOption::LongCh2},
         {"Low test of channel 1", HealthCheckOption::LowCh1},
         {"Low test of channel 2", HealthCheckOption::LowCh2}}};
    CLI::App* check = adder.Add(app, "health-check", "Run the health check and store its report",
                                [args](CommandContext& context) {
                                    std::vector<HealthCheckOption> options;
                                    for (std::size_t i = 0; i < choices.size(); ++i) {
                                        if (args->Options.at(i))
                                            options.push_back(choices.at(i).Option);
                                    }
                                    return RunHealthCheckCommand(context, options);
                                });
    CLI::Option_group* group = check->add_option_group("tests", "At least one of");
    for (std::size_t i = 0; i < choices.size(); ++i)
        group->add_flag(fmt::format("--{}", NameOf(choices.at(i).Option)), args->Options.at(i),
                        choices.at(i).Help);
    group->require_option(1, 0);
}

void AddCalibrationCommands(CLI::App& app, CommandAdder& adder,
                            const std::shared_ptr<Arguments>& args) {
    CLI::App* calibrate = app.add_subcommand("calibrate", "Calibrate or audit the ACU");
    calibrate->require_subcommand(1);
    CLI::App* init =
        adder.Add(*calibrate, "velocity-init", "Fresh header, two system runs and two audits",
                  [args](CommandContext& context) { return RunVelocityInit(context, args->Text); });
    init->add_option("--mfc-number", args->Text, "The MFC number, at most 12 characters");
    adder.Add(*calibrate, "velocity-system", "Measure and store a new velocity calibration",
              [](CommandContext& context) {
                  return RunVelocityCalibration(context, CalibrationKind::System);
              });
    adder.Add(*calibrate, "velocity-audit", "Verify the stored velocity calibration",
              [](CommandContext& context) {
                  return RunVelocityCalibration(context, CalibrationKind::Audit);
              });
    adder.Add(*calibrate, "pressure-system", "Measure and store a new pressure calibration",
              [](CommandContext& context) {
                  return RunPressureCalibration(context, CalibrationKind::System);
              });
    adder.Add(*calibrate, "pressure-audit", "Verify the stored pressure calibration",
              [](CommandContext& context) {
                  return RunPressureCalibration(context, CalibrationKind::Audit);
              });
    adder.Add(app, "pressure", "The present pressure in mBar", RunPressure);
    CLI::App* sensor =
        adder.Add(app, "sensor", "Declare the unit's pressure sensor",
                  [args](CommandContext& context) { return RunSensor(context, args->Text); });
    sensor->add_option("SENSOR", args->Text, "none, 400 or 1000 (mBar)")
        ->required()
        ->check(CLI::IsMember({"none", "400", "1000"}));
    CLI::App* record =
        adder.Add(app, "record", "Record the inputs and the pressure register",
                  [args](CommandContext& context) { return RunRecord(context, args->Seconds); });
    record->add_option("--seconds", args->Seconds, "How long")
        ->required()
        ->check(CLI::PositiveNumber);
    adder.Add(app, "clear-pressure", "Clear the pressure part of the EPROM", RunClearPressure);
    adder.Add(app, "info-workbook", "Write the ACU information workbook", RunInfoWorkbook);
}

void AddHistoryCommands(CLI::App& app, CommandAdder& adder,
                        const std::shared_ptr<Arguments>& args) {
    CLI::App* history =
        adder.Add(app, "history", "The calibrations and health checks that units have had",
                  [args](CommandContext& context) {
                      return args->Verify ? RunVerifyHistory(context, args->Serial)
                                          : RunHistory(context, args->Serial);
                  });
    history->add_option("--serial", args->Serial, "Serial number of one unit")
        ->check(CLI::PositiveNumber);
    history->add_flag("--verify", args->Verify,
                      "Check that no line was changed, removed or put in");
    CLI::App* units = adder.Add(
        app, "units", "How the units stand: last runs, verdict, when they are due",
        [args](CommandContext& context) { return RunUnits(context, args->Due, args->Csv); });
    units->add_flag("--due", args->Due, "Only those that are to be calibrated again by now");
    units->add_flag("--csv", args->Csv, "As comma-separated values");
    CLI::App* report =
        adder.Add(app, "report", "Make the workbooks of a run again from its journal",
                  [args](CommandContext& context) { return RunReport(context, args->File); });
    report
        ->add_option("--journal", args->File, "The journal; without it, unfinished ones are named")
        ->type_name("FILE");
}

void AddTemplateCommands(CLI::App& app, CommandAdder& adder,
                         const std::shared_ptr<Arguments>& args) {
    CLI::App* templates = app.add_subcommand("template", "Report templates of a site's own");
    templates->require_subcommand(1);
    CLI::App* check = adder.Add(
        *templates, "check", "What a report would keep, lack or refuse of a template",
        [args](CommandContext& context) { return RunTemplateCheck(context, args->File); });
    check->add_option("FILE", args->File, "The template")->required();
}

void AddBenchTests(CLI::App& test, CommandAdder& adder, const std::shared_ptr<Arguments>& args) {
    adder.Add(test, "mfc", "Ten demand steps on each channel, up compared with down", RunMFCTest);
    adder.Add(test, "air-flow", "A flow board against a measure board", RunAirFlowTest);
    adder.Add(test, "speed", "Both channels 2000 times in analog and in digital mode",
              RunSpeedTest);
    CLI::App* sweep = adder.Add(
        test, "air-sweep", "Step the outputs and log the inputs; without options the upper half",
        [args](CommandContext& context) { return RunAirSweep(context, args->Sweep); });
    sweep->add_option("--step", args->Sweep.Step_bits, "Step in bits, over the whole range")
        ->check(CLI::Range(1, SweepPlan::LargestStep_bits));
    sweep->add_option("--delay", args->Sweep.Delay_ms, "Milliseconds after each step")
        ->check(CLI::Range(0, SweepPlan::LongestDelay_ms));
    sweep->add_flag("--both-ways", args->Sweep.BothWays, "Down again afterwards");
}

void AddRigCommands(CLI::App& app, CLI::App& test, CommandAdder& adder,
                    const std::shared_ptr<Arguments>& args) {
    adder.Add(test, "rig", "The outputs of the second board through the inputs of the first",
              RunTestRig);
    CLI::App* uart = app.add_subcommand("uart", "The digital MFC link of the first board");
    uart->require_subcommand(1);
    CLI::App* set = adder.Add(*uart, "set", "Set a demand", [args](CommandContext& context) {
        return RunUartSet(context, args->Channel, args->Value);
    });
    CLI::App* get = adder.Add(*uart, "get", "Read a channel", [args](CommandContext& context) {
        return RunUartGet(context, args->Channel);
    });
    for (CLI::App* command : {set, get})
        command->add_option("CHANNEL", args->Channel, "0 or 1")
            ->required()
            ->check(CLI::Range(0, 1));
    set->add_option("VALUE", args->Value, "0 to 65535")
        ->required()
        ->check(CLI::Range(0, AIB::DACFullScale));
}

} // namespace

void AddCommands(CLI::App& app, ChosenCommand& chosen) {
    app.require_subcommand(1);
    app.fallthrough();
    const auto arguments = std::make_shared<Arguments>();
    CommandAdder adder(chosen);
    AddBoardCommands(app, adder, arguments);
    AddEpromCommands(app, adder, arguments);
    AddHealthCheck(app, adder, arguments);
    AddCalibrationCommands(app, adder, arguments);
    AddHistoryCommands(app, adder, arguments);
    AddTemplateCommands(app, adder, arguments);

    CLI::App* test = app.add_subcommand("test", "Run a bench test");
    test->require_subcommand(1);
    AddBenchTests(*test, adder, arguments);
    AddRigCommands(app, *test, adder, arguments);
}

} // namespace ombrix
