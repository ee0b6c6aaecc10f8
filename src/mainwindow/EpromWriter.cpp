#include "mainwindow/EpromWriter.h"

#include "board/BenchProcedure.h"

#include <string>

namespace ombrix {

bool WriteWholeEPROM(Station& station, std::int32_t value,
                     const std::function<void(std::int32_t address)>& progress) {
    const std::string question =
        "Are you sure you want to overwrite all memory locations with: " + std::to_string(value);
    if (station.World.Messages.Ask({question, MessageIcon::Question, MessageButtons::YesNo}) !=
        Answer::Yes)
        return false;
    ProcedureOutcome outcome;
    RunBenchProcedure(station, "writing of the EPROM", {}, outcome, [&] {
        for (std::int32_t address = 0; address < clsAIB::EPROMBytes; address += 4) {
            station.g_CurrentAIB->WriteEPROM(address, value);
            progress(address);
            station.World.Events.ProcessPendingEvents();
            if (station.World.Events.ProgramEnding())
                return false;
        }
        return true;
    });
    return outcome.Ended == ProcedureOutcome::End::Completed;
}

} // namespace ombrix
