#pragma once

#include "board/eprom/EpromGuard.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ombrix {

/// Which MFCs the unit behind a board has, as the identity holds it.
enum class MFCSetup : std::int32_t { AnalogOnly = 0, DigitalAndAnalog = 1, DigitalOnly = 2 };

constexpr MFCSetup MFCSetupOf(bool digital, bool analog) {
    if (!digital)
        return MFCSetup::AnalogOnly;
    return analog ? MFCSetup::DigitalAndAnalog : MFCSetup::DigitalOnly;
}

/// Writes the identity of the current board, whose EPROM is saved before. The identity is read
/// again by the next detection only.
/// @return status of the board library @throws EpromError, BoardError
AIBStatus WriteIdentity(Station& station, std::int32_t serial, MFCSetup setup);

/// How the writing of a whole EPROM ended.
enum class EpromEnd {
    Done,
    /// The operator declined: nothing has been written.
    Declined,
    /// Broken off: a part has been written.
    BrokenOff,
};

/// Told each address that is written; false breaks the writing off.
using EpromProgress = EpromGuard::Progress;

/// What the editor of the current board's EPROM does. Each saves the content first and reads
/// back what it wrote. @throws EpromError, EpromMismatch, BoardError

void WriteEPROMWord(Station& station, std::int32_t address, std::int32_t value);

/// Writes a value to every word, after the question, as a procedure.
EpromEnd WriteWholeEPROM(Station& station, std::int32_t value, const EpromProgress& progress);

/// The image in a file. @throws DriveError for a file that cannot be read or is none
EpromImage ReadEpromFile(const std::filesystem::path& file);

/// What to tell before a file goes into a board whose name says that it was saved from another
/// unit; empty where it does not.
std::string OriginWarning(const std::filesystem::path& file, const AIB& board);

/// Shown what will change, and asked whether it shall.
using EpromAgreement = std::function<bool(const std::vector<EpromDifference>& differences)>;

/// Writes every word of an image, as a procedure.
EpromEnd RestoreEPROM(Station& station, const EpromImage& image, const EpromAgreement& agreed,
                      const EpromProgress& progress);

/// Writes those words of changed fields that differ from what the EPROM holds, as a procedure.
EpromEnd WriteEPROMFields(Station& station, const EpromWords& words, const EpromAgreement& agreed,
                          const EpromProgress& progress);

} // namespace ombrix
