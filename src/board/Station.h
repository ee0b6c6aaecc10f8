#pragma once

#include "board/AIBList.h"
#include "board/procedure/BoardClaims.h"
#include "board/procedure/ProcedureGate.h"

#include <memory>
#include <string>

namespace ombrix {

/// What the whole program shares: the boards, the board of the selected tab, the folder of
/// automatically saved workbooks, and the gate that lets one procedure run at a time. Made by
/// main and handed down.
struct Station {
    explicit Station(const BoardServices& services)
        : World(services.World), g_AIBList(services),
          g_CurrentAIB(std::make_shared<clsAIB>(services)), Claims(services.World) {}

    Platform& World;
    clsAIBList g_AIBList;
    /// Never empty: until a board is selected an empty board object stands in.
    std::shared_ptr<clsAIB> g_CurrentAIB;
    /// Built with the first automatic save and kept for the rest of the program's run.
    std::string g_AutoSaveFolder;
    ProcedureGate Procedures;
    BoardClaims Claims;
    /// Since the program's start a board has not let its outputs be switched off, or one that was
    /// left with its outputs on has not been found.
    bool AirMayFlow = false;
};

} // namespace ombrix
