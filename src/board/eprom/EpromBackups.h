#pragma once

#include "board/eprom/EpromImage.h"
#include "platform/ports/Drive.h"
#include "platform/text/OleDate.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ombrix {

/// An EPROM's content that EpromGuard has saved before something wrote to it.
struct EpromBackup {
    /// The real file.
    std::filesystem::path File;
    /// Of the board that it was saved from.
    std::int32_t Serial = 0;
    OleDate When{};
    /// What was about to happen ("Velocity Audit Calibration").
    std::string Purpose{};
    /// Nothing where the file cannot be read or is no image.
    std::optional<EpromImage> Content{};
};

/// Every backup of the data folder, newest first. Files that are not named as backups are passed
/// over. @throws DriveError
std::vector<EpromBackup> ListBackups(const Drive& files);

/// What has changed in the EPROM between a backup and the next one of the unit, or what it holds
/// now: "MFC number", "nothing"; "--" where that is not known.
/// @param now content of the board with that serial number, if it is there
std::string ChangedAfter(const std::vector<EpromBackup>& backups, std::size_t which,
                         std::int32_t serial, const EpromImage& now);

/// The backup from before the last write that has changed a unit's EPROM to what it holds now;
/// null where there is none. One that cannot be read may be the one.
const EpromBackup* BeforeLastWrite(const std::vector<EpromBackup>& backups, std::int32_t serial,
                                   const EpromImage& now);

} // namespace ombrix
