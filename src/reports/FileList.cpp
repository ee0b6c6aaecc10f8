#include "reports/FileList.h"

#include <fmt/chrono.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <vector>

namespace ombrix {

namespace fs = std::filesystem;

namespace {

struct Entry {
    std::string Path;
    std::string Line;
};

Entry EntryOf(const fs::directory_entry& file, const fs::path& folder) {
    std::error_code error;
    const auto changed = std::chrono::file_clock::to_sys(file.last_write_time(error));
    const std::time_t changed_s = std::chrono::system_clock::to_time_t(
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(changed));
    const std::uintmax_t bytes = file.file_size(error);
    std::string path = file.path().lexically_relative(folder).string();
    std::string line = fmt::format("{:>12}  {:%Y-%m-%d %H:%M:%S}  {}\n", error ? 0 : bytes,
                                   fmt::gmtime(changed_s), path);
    return {std::move(path), std::move(line)};
}

} // namespace

std::string FileList(const fs::path& folder) {
    std::vector<Entry> entries;
    std::error_code error;
    fs::recursive_directory_iterator file(folder, fs::directory_options::skip_permission_denied,
                                          error);
    std::string end;
    for (; !error && file != fs::recursive_directory_iterator(); file.increment(error)) {
        std::error_code gone;
        if (!file->is_regular_file(gone))
            continue;
        if (entries.size() == LongestFileList) {
            end = fmt::format("There are more than {} files.\n", LongestFileList);
            break;
        }
        entries.push_back(EntryOf(*file, folder));
    }
    if (error)
        end += error.message() + "\n";
    std::sort(entries.begin(), entries.end(),
              [](const Entry& left, const Entry& right) { return left.Path < right.Path; });
    std::string text;
    for (const Entry& entry : entries)
        text += entry.Line;
    return text + end;
}

} // namespace ombrix
