#include "terminal/CommandLine.h"

#include "terminal/BoardCommands.h"
#include "terminal/EpromCommands.h"
#include "terminal/HealthCheckCommand.h"

#include <CLI/CLI.hpp>

#include <array>
#include <memory>
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
    std::string Setup;
    std::string Text;
    std::string File;
    std::array<bool, 6> Options{};
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
        adder.Add(*eprom, "restore", "Write the 2048 bytes of a file and verify",
                  [args](CommandContext& context) { return RunEpromRestore(context, args->File); });
    restore->add_option("FILE", args->File)->required();

    adder.Add(*eprom, "show", "The decoded ACU record", RunEpromShow);
}

void AddHealthCheck(CLI::App& app, CommandAdder& adder, const std::shared_ptr<Arguments>& args) {
    struct Choice {
        const char* Flag;
        const char* Help;
        HealthCheckOption Option;
    };
    static constexpr std::array<Choice, 6> choices = {
        {{"--short", "Short test", HealthCheckOption::Short},
         {"--pressure", "Pressure test with gauges", HealthCheckOption::PressureCheck},
         {"--long-ch1", "Long test of channel 1", HealthCheckOption::LongCh1},
         {"--long-ch2", "Long test of channel 2", HealthCheckOption::LongCh2},
         {"--low-ch1", "Low test of channel 1", HealthCheckOption::LowCh1},
         {"--low-ch2", "Low test of channel 2", HealthCheckOption::LowCh2}}};
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
        group->add_flag(choices.at(i).Flag, args->Options.at(i), choices.at(i).Help);
    group->require_option(1, 0);
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
}

} // namespace ombrix
