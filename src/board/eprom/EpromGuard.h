#pragma once

#include "board/Station.h"
#include "board/eprom/EpromFields.h"
#include "platform/text/Paths.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
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

/// Guards the writing that one procedure does to the EPROM of one board: nothing is written
/// before the content has been saved, only the board that was detected is written, and what was
/// written is read back and noted in the log.
class EpromGuard {
  public:
    /// Whether the board must have a serial number: one that is to be given its first has none.
    enum class Identity { Required, MayBeMissing };

    /// @param purpose what is about to happen ("velocity system calibration"); a part of the
    ///        name of the saved content
    EpromGuard(Platform& world, BoardClaims& claims, AIB& board, std::string purpose,
               Identity identity = Identity::Required);
    EpromGuard(Station& station, std::string purpose, Identity identity = Identity::Required)
        : EpromGuard(station.World, station.Claims, *station.CurrentAIB, std::move(purpose),
                     identity) {}
    EpromGuard(const EpromGuard&) = delete;
    EpromGuard& operator=(const EpromGuard&) = delete;

    /// Takes the board for this program, makes sure of its identity, reads the EPROM twice and
    /// saves it under Paths::Backups. To be called before anything is driven or written; does
    /// nothing when it has been done.
    /// @throws EpromError when the EPROM may not be written, BoardError when it cannot be read
    void MakeReady();
    bool IsReady() const { return !m_Backup.empty(); }

    /// Told each address before it is written; false breaks the writing off.
    using Progress = std::function<bool(std::int32_t address)>;

    /// Writes words to the board's EPROM, makes ready for it where that has not been done, and
    /// reads every written word back. What the writing throws is passed on after that, or becomes
    /// an EpromError when it has left the EPROM written in part.
    /// @return false when it was broken off
    /// @throws EpromError, EpromMismatch, BoardError
    bool Write(const EpromWords& words, const Progress& progress = {});

    /// What is written from now on is a part of something larger: an end of this program before
    /// Settle or PutBack leaves the EPROM written in part.
    void KeepOpen() { m_IsOpen = true; }
    /// What has been written is whole.
    void Settle();

    /// Puts back whatever Write has changed since MakeReady, and makes sure that the EPROM holds
    /// it. False when it does not: ChangesText says why then, and what to do.
    bool PutBack();
    /// How the EPROM differs now from what MakeReady has read, for people: "The EPROM is as it
    /// was.", "Changed in the EPROM: capacities, velocity table."
    std::string ChangesText() const;

  private:
    /// What has been sent to the board.
    struct Written {
        /// The last word that each address was to hold.
        std::map<std::int32_t, std::int32_t> Words;
        /// Status of the first word that the board did not take.
        AIBStatus Failure = Status::NoError;
    };

    void ClaimBoard();
    void RequireSameBoard() const;
    void ReadSteadily();
    void Save();
    bool WriteWords(const EpromWords& words, const Progress& progress, Written& written);
    void ReadBack(const Written& written);
    void NoteBeginning(const EpromWords& words) const;
    /// Takes the note of a writing back when the EPROM is whole: all of its words have been
    /// written now, or are as they were. @param whole every word has been written
    void NoteEnd(const EpromWords& words, bool whole) const;
    bool IsAsIn(const std::string& backup) const;
    [[noreturn]] void ReportUnreadable(AIBStatus status) const;
    [[noreturn]] void Report(const EpromImage& wanted, std::vector<EpromMismatch::Word> wrong,
                             AIBStatus failure) const;
    [[noreturn]] void Refuse(const std::string& reason) const;
    void Log(std::string_view line) const;

    Platform& m_World;
    BoardClaims& m_Claims;
    AIB& m_Board;
    std::string m_Purpose;
    Identity m_Identity;
    /// The ACU as files and messages name it.
    std::string m_Unit;
    /// Path of the saved content; empty until there is one.
    std::string m_Backup;
    /// What the EPROM held when it was made ready, and what it holds, as last read.
    EpromImage m_Found;
    EpromImage m_Content;
    /// Addresses of words that were written and could not be read back.
    std::set<std::int32_t> m_Unread;
    bool m_IsOpen = false;
    /// Why PutBack has failed; empty when it has not.
    std::string m_NotPutBack;
};

} // namespace ombrix
