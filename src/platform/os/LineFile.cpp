#include "platform/os/LineFile.h"

#include "platform/os/ProgramLog.h"
#include "platform/ports/Folders.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <system_error>
#include <utility>

namespace ombrix {

namespace {

void Put(OutputFile& file, std::string_view line) {
    file.Write(fmt::format("{}\r\n", line));
}

} // namespace

LineFile LineFile::Begin(Platform& world, const std::string& name, const std::string& path,
                         Existing existing) {
    LineFile file(world, name, path);
    file.Take(existing == Existing::Replaced ? world.Files.OpenForWriting(path)
                                             : OpenUnderFreeName(world.Files, path));
    return file;
}

LineFile LineFile::BeginAnywhere(Platform& world, const std::string& name,
                                 const std::string& path) {
    try {
        return Begin(world, name, path);
    } catch (const DriveError& error) {
        LineFile file(world, name, path);
        file.GoOnElsewhere(error.what());
        return file;
    }
}

void LineFile::Take(std::unique_ptr<OutputFile> file) {
    m_File = std::move(file);
    m_Files.push_back(m_File->RealPath());
}

void LineFile::WriteHeading(std::string_view line) {
    WriteLine(line);
    m_Headings.emplace_back(line);
}

void LineFile::WriteLine(std::string_view line) {
    try {
        Put(*m_File, line);
    } catch (const DriveError& error) {
        if (!m_Trouble.empty())
            throw;
        GoOnElsewhere(error.what());
        Put(*m_File, line);
    }
}

void LineFile::WriteLast(std::string_view line) noexcept {
    if (!IsOpen())
        return;
    try {
        WriteLine(line);
    } catch (const std::exception& error) {
        WriteLog(m_World, error.what());
    }
}

void LineFile::GoOnElsewhere(const std::string& reason) {
    const std::string trouble =
        fmt::format("The {} cannot be written where it belongs:\r\n\r\n{}\r\n\r\n", m_Name, reason);
    try {
        Take(OpenUnderFreeName(m_World.Files,
                               Paths::Temporary + m_Path.substr(m_Path.find_last_of('\\') + 1)));
        for (const std::string& heading : m_Headings)
            Put(*m_File, heading);
    } catch (const DriveError& error) {
        throw DriveError(trouble +
                         "It cannot be kept in the folder for temporary files "
                         "either:\r\n\r\n" +
                         error.what());
    }
    m_Trouble = trouble + "It goes on in the folder for temporary files:\r\n\r\n   " +
                m_Files.back().string() + "\r\n\r\nPlease move it to a safe place.";
    WriteLog(m_World, m_Trouble);
}

void LineFile::Remove() {
    Close();
    for (const std::filesystem::path& file : std::exchange(m_Files, {})) {
        std::error_code error;
        std::filesystem::remove(file, error);
        if (error)
            WriteLog(m_World,
                     fmt::format("{} cannot be removed: {}", file.string(), error.message()));
    }
}

} // namespace ombrix
