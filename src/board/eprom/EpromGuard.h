#pragma once

#include "board/Station.h"
#include "board/eprom/EpromFields.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrix {

/// The EPROM may not be written, or does not hold what was written. The text is for the
/// operator: what is wrong, and what to do.
class EpromError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// Words read back as something else than was written.
class EpromMismatch : public EpromError {
  public:
    struct Word {
        std::int32_t Address = 0;
        /// As it was read back.
        std::int32_t Value = 0;
    };

    EpromMismatch(const std::string& text, std::vector<Word> words)
        : EpromError(text), m_Words(std::make_shared<const std::vector<Word>>(std::move(words))) {}
    const std::vector<Word>& Words() const { return *m_Words; }

  private:
    /// Shared, since what is thrown is copied and that must not fail.
    std::shared_ptr<const std::vector<Word>> m_Words;
};

/// Folder of the saved EPROM contents, ended by a backslash.
inline constexpr const char* BackupFolder = R"(C:\Backups\)";

/// Guards the writing that one procedure does to the EPROM of one board: nothing is written
/// before the content has been saved, only the board that was detected is written, and what was
/// written is read back and noted in the log.
class EpromGuard {
  public:
    /// Whether the board must have a serial number: one that is to be given its first has none.
    enum class Identity { Required, MayBeMissing };

    /// @param purpose what is about to happen ("velocity system calibration"); a part of the
    ///        name of the saved content
    EpromGuard(Platform& world, BoardClaims& claims, clsAIB& board, std::string purpose,
               Identity identity = Identity::Required);
    EpromGuard(Station& station, std::string purpose, Identity identity = Identity::Required)
        : EpromGuard(station.World, station.Claims, *station.g_CurrentAIB, std::move(purpose),
                     identity) {}
    EpromGuard(const EpromGuard&) = delete;
    EpromGuard& operator=(const EpromGuard&) = delete;

    /// Takes the board for this program, makes sure of its identity, reads the EPROM twice and
    /// saves it under BackupFolder. To be called before anything is driven or written; does
    /// nothing when it has been done.
    /// @throws EpromError when the EPROM may not be written, BoardError when it cannot be read
    void MakeReady();
    bool IsReady() const { return !m_Backup.empty(); }

    /// Runs what writes to the board's EPROM, makes ready for it where that has not been done,
    /// and reads every written word back. What the work throws is passed on after that, or
    /// becomes an EpromError when it has left the EPROM written in part.
    /// @throws EpromError, EpromMismatch, BoardError
    void Write(const std::function<void()>& work);

  private:
    void ClaimBoard();
    void RequireSameBoard() const;
    void ReadSteadily();
    void Save();
    void ReadBack(const clsAIB::EpromWriting& writing);
    [[noreturn]] void ReportUnreadable(AIBStatus status) const;
    [[noreturn]] void Report(const EpromImage& wanted, std::vector<EpromMismatch::Word> wrong,
                             AIBStatus failure) const;
    [[noreturn]] void Refuse(const std::string& reason) const;
    void Log(std::string_view line) const;

    Platform& m_World;
    BoardClaims& m_Claims;
    clsAIB& m_Board;
    std::string m_Purpose;
    Identity m_Identity;
    /// The ACU as files and messages name it.
    std::string m_Unit;
    /// Path of the saved content; empty until there is one.
    std::string m_Backup;
    /// What the EPROM holds, as last read.
    EpromImage m_Content;
};

} // namespace ombrix
