#pragma once

#include "board/AIBList.h"
#include "board/Outputs.h"
#include "board/procedure/BoardClaims.h"
#include "board/procedure/ProcedureGate.h"
#include "board/unit/ACUCalibration.h"

#include <map>
#include <memory>
#include <string>

namespace ombrix {

/// What the whole program shares: the boards, the board of the selected tab and the unit behind
/// it, the outputs, the folder of automatically saved workbooks, and the gate that lets one
/// procedure run at a time. Made by main and handed down.
struct Station {
    explicit Station(const BoardServices& services)
        : World(services.World), AIBList({services.Library, services.World, &Feed}),
          CurrentAIB(std::make_shared<AIB>(services)), Claims(services.World),
          Outputs(Claims, services.World) {}
    Station(const Station&) = delete;
    Station& operator=(const Station&) = delete;

    Platform& World;
    /// What the boards of the list are asked and told.
    BoardFeed Feed;
    ombrix::AIBList AIBList;
    /// Never empty: until a board is selected an empty board object stands in.
    std::shared_ptr<AIB> CurrentAIB;
    /// Built with the first automatic save and kept for the rest of the program's run.
    std::string AutoSaveFolder;
    ProcedureGate Procedures;
    BoardClaims Claims;
    ombrix::Outputs Outputs;
    /// Since the program's start a board has not let its outputs be switched off, or one that was
    /// left with its outputs on has not been found.
    bool AirMayFlow = false;

    /// The record of the unit behind the current board: as it was last read, empty before.
    ACUCalibration& Calibration();

  private:
    /// A record goes with its board.
    std::map<std::weak_ptr<AIB>, std::unique_ptr<ACUCalibration>, std::owner_less<>> m_Records;
};

} // namespace ombrix
