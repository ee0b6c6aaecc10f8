#include "platform/ports/Folders.h"

#include "platform/text/Paths.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <sstream>

namespace ombrix {

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
    std::string candidate = Paths::DriveC;
    for (const std::string_view programFiles : Paths::ProgramFiles) {
        if (!drive.FolderExists(programFiles))
            continue;
        candidate = std::string(programFiles) + Paths::SystemSubfolder + std::string(subFolder);
        if (!drive.FolderExists(candidate))
            drive.CreateFolder(candidate);
        break;
    }
    if (!drive.FolderExists(candidate))
        candidate = std::string(Paths::DriveC) + Paths::SystemSubfolder;
    if (!drive.FolderExists(candidate))
        candidate = Paths::DriveC;
    return AddBackslash(candidate) + std::string(fileName);
}

std::string FreePath(const Drive& files, std::string_view path) {
    const std::size_t point = path.find_last_of("\\.");
    const bool hasExtension = point != std::string_view::npos && path[point] == '.';
    const std::string_view stem = path.substr(0, hasExtension ? point : path.size());
    std::string free(path);
    for (int number = 2; files.FileExists(free); ++number)
        free = fmt::format("{} ({}){}", stem, number, path.substr(stem.size()));
    return free;
}

namespace {

/// Another program may be as quick to find the same name free: then the next one is taken.
template <class Make>
auto MakeUnderFreeName(const Drive& files, std::string_view path, const Make& make) {
    while (true) {
        const std::string free = FreePath(files, path);
        try {
            return make(free);
        } catch (const DriveError&) {
            if (!files.FileExists(free))
                throw;
        }
    }
}

} // namespace

std::unique_ptr<OutputFile> OpenUnderFreeName(Drive& files, std::string_view path) {
    return MakeUnderFreeName(files, path,
                             [&files](const std::string& free) { return files.OpenNew(free); });
}

std::string StoreUnderFreeName(Drive& files, std::string_view path, std::string_view content) {
    return MakeUnderFreeName(files, path, [&](const std::string& free) {
        files.CreateFile(free, content);
        return free;
    });
}

namespace {

bool IsDrivePath(std::string_view line) {
    constexpr std::size_t drive = 3; // "C:\"
    return line.size() > drive && LowerCase(line[0]) >= 'a' && LowerCase(line[0]) <= 'z' &&
           line.substr(1, 2) == ":\\";
}

/// The first line of a text that is a path; empty when there is none.
std::string PathIn(const std::string& text) {
    std::istringstream lines(ReplaceAll(text, "\r\n", "\n"));
    for (std::string line; std::getline(lines, line);) {
        line = Trimmed(line);
        if (IsDrivePath(line) || line.starts_with('/'))
            return line;
    }
    return {};
}

} // namespace

Message WithPlace(Message message, const Drive& files) {
    const std::string path = PathIn(message.Text);
    if (path.empty() || !message.Place.empty())
        return message;
    try {
        message.Place = IsDrivePath(path) ? files.RealPath(path) : std::filesystem::path(path);
    } catch (const DriveError&) {
        return message; // a path that leads nowhere has no place
    }
    // Some texts say themselves where that is.
    if (message.Text.find(message.Place.parent_path().string()) == std::string::npos)
        message.Text += "\r\n\r\nOn this computer:\r\n\r\n   " + message.Place.string();
    return message;
}

void OpenOrTell(Platform& world, const std::filesystem::path& path) {
    if (!world.Documents.OpenDocument(path))
        world.Messages.Ask({"The desktop has no program that opens it:\r\n\r\n   " + path.string(),
                            MessageIcon::Warning, MessageButtons::Ok});
}

bool ShellOpenFile(const Drive& drive, DocumentOpener& opener, std::string_view path) {
    try {
        return opener.OpenDocument(drive.RealPath(path));
    } catch (const DriveError&) {
        return false;
    }
}

} // namespace ombrix
