#pragma once

#include "board/AIB.h"

#include <memory>
#include <string>
#include <vector>

namespace ombrix {

/// Opens the board library and holds one board object for each board found. Board index i is
/// the library's index i and the main window's tab i + 1.
class AIBList {
  public:
    explicit AIBList(const BoardServices& services) : m_Services(services) {}
    AIBList(const AIBList&) = delete;
    AIBList& operator=(const AIBList&) = delete;
    /// Closes the library if the last opening found a board.
    ~AIBList();

    /// Counts the boards and makes new board objects with identity and MFC readiness; objects
    /// of an earlier opening live on where they are held. False after a run-time failure; one
    /// of the library's file is told to the operator.
    bool OpenAIBAPI(std::int32_t& count);
    bool CloseAIBAPI();
    /// Number of boards; opens the library first unless the last opening found some.
    std::int32_t AIBCount();
    bool GetAccessoryInfo(std::int32_t index, AccessoryInfo& info);
    /// @throws std::out_of_range beyond AIBCount
    std::shared_ptr<ombrix::AIB> AIB(std::int32_t index) const;
    /// The boards that the last opening found.
    const std::vector<std::shared_ptr<ombrix::AIB>>& Boards() const { return m_Boards; }

  private:
    /// Tells the operator, and counts as no boards.
    bool OpenFailed(std::int32_t& count, const std::string& why);

    BoardServices m_Services;
    bool m_Open = false;
    std::int32_t m_Count = 0;
    std::vector<std::shared_ptr<ombrix::AIB>> m_Boards;
};

} // namespace ombrix
