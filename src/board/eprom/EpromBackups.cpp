#include "board/eprom/EpromBackups.h"

#include "board/eprom/EpromFields.h"
#include "platform/text/Paths.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <tuple>

namespace ombrix {

namespace {

/// What the name tells ("ACU00301_20261123_044008_MFC Number.bin").
std::optional<EpromBackup> BackupNamed(const std::string& name) {
    constexpr std::string_view ending = ".bin";
    EpromBackup backup;
    CivilTime time;
    int length = 0;
    if (!name.ends_with(ending) ||
        std::sscanf(name.c_str(), "ACU%d_%4d%2d%2d_%2d%2d%2d_%n", &backup.Serial, &time.Year,
                    &time.Month, &time.Day, &time.Hour, &time.Minute, &time.Second, &length) != 7 ||
        length == 0)
        return std::nullopt;
    backup.When = OleDate::FromCivil(time);
    const auto begin = static_cast<std::size_t>(length);
    backup.Purpose = name.substr(begin, name.size() - ending.size() - begin);
    return backup;
}

std::optional<EpromImage> ContentOf(const Drive& files, const std::string& path) {
    try {
        return EpromImage::FromBytes(files.ReadFile(path));
    } catch (const DriveError&) {
        return std::nullopt;
    } catch (const std::invalid_argument&) {
        return std::nullopt;
    }
}

} // namespace

std::vector<EpromBackup> ListBackups(const Drive& files) {
    /// Several can be of one second: the files tell which came first.
    using Age = std::tuple<double, std::filesystem::file_time_type>;
    std::vector<std::pair<Age, EpromBackup>> aged;
    for (const std::string& name : files.FilesIn(Paths::Backups)) {
        auto backup = BackupNamed(name);
        if (!backup)
            continue;
        const std::string path = Paths::Backups + name;
        backup->File = files.RealPath(path);
        backup->Content = ContentOf(files, path);
        std::error_code unknown;
        const auto written = std::filesystem::last_write_time(backup->File, unknown);
        const double when = backup->When.Days();
        aged.emplace_back(Age{when, written}, *std::move(backup));
    }
    std::stable_sort(aged.begin(), aged.end(),
                     [](const auto& one, const auto& other) { return one.first > other.first; });
    std::vector<EpromBackup> backups;
    for (auto& [age, backup] : aged)
        backups.push_back(std::move(backup));
    return backups;
}

std::string ChangedAfter(const std::vector<EpromBackup>& backups, std::size_t which,
                         std::int32_t serial, const EpromImage& now) {
    const EpromBackup& backup = backups.at(which);
    std::optional<EpromImage> after;
    if (backup.Serial == serial)
        after = now;
    for (std::size_t newer = which; newer-- > 0;) {
        if (backups[newer].Serial != backup.Serial)
            continue;
        after = backups[newer].Content;
        break;
    }
    if (!backup.Content || !after)
        return "--";
    const auto changed = DifferingWords(*backup.Content, *after);
    return changed.empty() ? "nothing" : PartsText(changed);
}

const EpromBackup* BeforeLastWrite(const std::vector<EpromBackup>& backups, std::int32_t serial,
                                   const EpromImage& now) {
    const auto found = std::find_if(backups.begin(), backups.end(), [&](const EpromBackup& backup) {
        return backup.Serial == serial && (!backup.Content || *backup.Content != now);
    });
    return found == backups.end() ? nullptr : &*found;
}

} // namespace ombrix
