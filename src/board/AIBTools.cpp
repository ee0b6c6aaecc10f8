#include "board/AIBTools.h"

#include <fmt/format.h>

namespace ombrix {

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view by) {
    std::string result;
    for (std::size_t found = text.find(what); found != std::string_view::npos;
         found = text.find(what)) {
        result.append(text.substr(0, found)).append(by);
        text.remove_prefix(found + what.size());
    }
    return result.append(text);
}

std::string FormatArgs(std::string_view text, std::initializer_list<std::string_view> values) {
    std::string result(text);
    int position = 0;
    for (const std::string_view value : values)
        result = ReplaceAll(result, fmt::format("[{}]", ++position), value);
    return result;
}

std::string AddBackslash(std::string_view path) {
    return std::string(path) + (path.ends_with('\\') ? "" : "\\");
}

std::string LeftOfLast(std::string_view text, std::string_view separator) {
    const std::size_t found = text.rfind(separator);
    return std::string(found == std::string_view::npos ? text
                                                       : text.substr(0, found + separator.size()));
}

std::string GetFolderOfPath(std::string_view path) {
    const bool isFile = path.find('.') != std::string_view::npos;
    return AddBackslash(isFile ? LeftOfLast(path, "\\") : std::string(path));
}

bool CheckFolderExists(Drive& drive, Operator& messages, std::string_view path, FolderMode mode) {
    const std::string folder = GetFolderOfPath(path);
    if (drive.FolderExists(folder))
        return true;
    if (mode == FolderMode::Query)
        return false;
    if (mode == FolderMode::Ask) {
        const Message question{"The folder does not exist:\r\n\r\n    " + folder +
                                   "\r\n\r\nWould you like to create it?",
                               MessageIcon::Question, MessageButtons::YesNo};
        if (messages.Ask(question) != Answer::Yes)
            return false;
    }
    return CreateFolderPath(drive, folder);
}

bool CreateFolderPath(Drive& drive, std::string_view path) {
    std::string folder(path);
    if (folder.ends_with('\\'))
        folder.pop_back();
    folder = ReplaceAll(ReplaceAll(folder, "\\C:", "\\C"), "\\c:", "\\C");
    if (drive.FolderExists(GetFolderOfPath(folder)))
        return true;
    const std::string parent = LeftOfLast(folder, "\\");
    // A drive itself has no parent to create.
    if (parent == folder || !CreateFolderPath(drive, parent))
        return false;
    return drive.CreateFolder(folder);
}

std::string GetSystemFolder(Drive& drive, std::string_view subFolder, std::string_view fileName) {
    std::string candidate = R"(C:\)";
    for (const std::string_view programFiles : {R"(C:\Program Files\)", R"(C:\Programme\)"}) {
        if (!drive.FolderExists(programFiles))
            continue;
        candidate = std::string(programFiles) + R"(Pulvatron\System\)" + std::string(subFolder);
        if (!drive.FolderExists(candidate))
            drive.CreateFolder(candidate);
        break;
    }
    if (!drive.FolderExists(candidate))
        candidate = R"(C:\Pulvatron\System\)";
    if (!drive.FolderExists(candidate))
        candidate = R"(C:\)";
    return AddBackslash(candidate) + std::string(fileName);
}

std::string ColumnLetters(int column) {
    constexpr int letterCount = 26;
    std::string letters;
    // Letters count without a zero: AA follows Z.
    for (int rest = column + 1; rest > 0; rest = (rest - 1) / letterCount)
        letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % letterCount));
    return letters;
}

std::string CellAddress(int column, std::int64_t row) {
    return ColumnLetters(column) + std::to_string(row);
}

bool LinearFit(std::span<const std::array<std::int32_t, 2>> table, int first, int last,
               Line& line) {
    if (first > last) {
        line = {};
        return false;
    }
    const auto count = static_cast<float>(last - first + 1);
    float sumX = 0.0F;
    float sumY = 0.0F;
    float sumXX = 0.0F;
    float sumXY = 0.0F;
    for (int row = first; row <= last; ++row) {
        const auto x = static_cast<float>(table[static_cast<std::size_t>(row)][0]);
        const auto y = static_cast<float>(table[static_cast<std::size_t>(row)][1]);
        sumX += x;
        sumY += y;
        sumXX += x * x;
        sumXY += x * y;
    }
    const float divisor = count * sumXX - sumX * sumX;
    if (divisor == 0.0F)
        return false;
    line.Slope = (count * sumXY - sumX * sumY) / divisor;
    line.Intercept = sumY / count - line.Slope * sumX / count;
    return true;
}

bool ShellOpenFile(const Drive& drive, DocumentOpener& opener, std::string_view path) {
    try {
        return opener.OpenDocument(drive.RealPath(path));
    } catch (const DriveError&) {
        return false;
    }
}

} // namespace ombrix
