#pragma once

#include "board/procedure/Outcome.h"
#include "board/procedure/SafeOutputs.h"

#include <functional>
#include <optional>
#include <string>

namespace ombrix {

/// The guard of a procedure that drives outputs. It holds the gate, has the boards to itself and
/// leaves a mark of the procedure at each; whatever way the procedure is left, it switches the
/// outputs off. A board that takes that loses its mark; one that does not keeps it, so that the
/// next detection tries again, and the operator is told that air may be flowing.
class DrivingProcedure {
  public:
    /// Takes the gate. @param name as the mark tells it ("air flow test")
    /// @param driven the boards that it drives
    /// @throws std::logic_error while another procedure runs
    DrivingProcedure(Station& station, std::string name, Boards driven);

    /// Claims and marks the boards; nothing may be driven before.
    /// @throws BoardInUse, DriveError; BoardError for a board that has another identity now
    void Begin();
    /// Switches off before the guard goes, as for a message that waits to be read.
    void SwitchOffNow() noexcept;
    /// Nothing was driven after all: what the operator drives by hand goes on.
    void LeaveOutputs() noexcept { m_LeaveOutputs = true; }

  private:
    void RemoveMarks(const Boards& boards) noexcept;

    Station& m_Station;
    std::string m_Name;
    Boards m_Driven;
    /// Those whose mark is this procedure's.
    Boards m_Marked;
    bool m_Begun = false;
    bool m_LeaveOutputs = false;
    bool m_Told = false;
    std::optional<Outputs::Insistence> m_Insistence;
    /// The last member: its end switches off while the others are still there.
    RunningProcedure m_Running;
};

/// Runs the body of a procedure that drives outputs and writes files: the commands that would start
/// another one are locked meanwhile, and whatever way it ends the outputs are switched off and an
/// error is told.
/// @param name stands for it in messages ("air flow test")
/// @param driven what the body drives; no boards for a procedure that only reads
/// @param body returns false when the operator has cancelled
void RunBenchProcedure(Station& station, const std::string& name, Boards driven, Outcome& outcome,
                       const std::function<bool()>& body);

} // namespace ombrix
