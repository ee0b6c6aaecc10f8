#include "board/BenchProcedure.h"

#include "platform/Drive.h"
#include "platform/TellOperator.h"

#include <exception>

namespace ombrix {

void RunBenchProcedure(Station& station, const std::string& heading,
                       const std::function<void()>& makeSafe, ProcedureOutcome& outcome,
                       const std::function<bool()>& body) {
    const auto fail = [&](ProcedureOutcome::End ended, const char* reason) {
        outcome.Ended = ended;
        outcome.Error = reason;
        makeSafe(); // not only when somebody has read the message
        TellOperator(station.World, heading + "\r\n\r\n" + reason, MessageIcon::Critical);
    };
    const RunningProcedure running(station.Procedures, makeSafe);
    try {
        if (!body())
            outcome.Ended = ProcedureOutcome::End::Cancelled;
    } catch (const DriveError& error) {
        fail(ProcedureOutcome::End::NotStored, error.what());
    } catch (const std::exception& error) {
        fail(ProcedureOutcome::End::Failed, error.what());
    }
}

} // namespace ombrix
