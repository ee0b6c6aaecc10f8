#include "board/procedure/BenchProcedure.h"

#include "platform/os/ProgramLog.h"
#include "platform/os/TellOperator.h"
#include "platform/ports/Drive.h"

#include <exception>
#include <utility>

namespace ombrix {

void RunBenchProcedure(Station& station, const std::string& name, DrivenBoards driven,
                       ProcedureOutcome& outcome, const std::function<bool()>& body) {
    ProcedureLog log(station.World, "The " + name);
    DrivingProcedure running(station, name, std::move(driven));
    const auto fail = [&](ProcedureOutcome::End ended, const char* reason) {
        outcome.Ended = ended;
        outcome.Error = reason;
        running.SwitchOffNow(); // not only when somebody has read the message
        TellOperator(station.World, "The " + name + " has been stopped.\r\n\r\n" + reason,
                     MessageIcon::Critical);
    };
    try {
        running.Begin();
        if (!body())
            outcome.Ended = ProcedureOutcome::End::Cancelled;
    } catch (const DriveError& error) {
        fail(ProcedureOutcome::End::NotStored, error.what());
    } catch (const std::exception& error) {
        fail(ProcedureOutcome::End::Failed, error.what());
    }
    log.Ended(EndOf(outcome));
}

} // namespace ombrix
