#include "simulator/OutputsFile.h"

#include "platform/os/FolderDrive.h"

#include <fmt/format.h>

#include <fcntl.h>
#include <iterator>
#include <sstream>
#include <unistd.h>

namespace ombrix {

namespace {

/// Of the same length for all values, so that it overwrites itself.
std::string TextOf(const BoardOutputs& outputs) {
    std::string text;
    const auto add = [&text](const char* name, const auto& values) {
        int channel = 0;
        for (const std::int32_t value : values)
            fmt::format_to(std::back_inserter(text), "{:<9} {} {:>6}\n", name, channel++, value);
    };
    add("DAC", outputs.DAC);
    add("Set-point", outputs.SetPoint);
    add("Air", outputs.Demand_bits);
    return text;
}

BoardOutputs Parse(const std::string& content) {
    std::istringstream text(content);
    BoardOutputs outputs;
    const auto take = [&text](auto& values) {
        std::string name;
        int channel = 0;
        for (std::int32_t& value : values)
            text >> name >> channel >> value;
    };
    take(outputs.DAC);
    take(outputs.SetPoint);
    take(outputs.Demand_bits);
    return text ? outputs : BoardOutputs{};
}

} // namespace

OutputsFile::OutputsFile(const std::filesystem::path& file) {
    if (std::filesystem::exists(file))
        m_Kept = Parse(ReadWholeFile(file));
    else
        ReplaceWholeFile(file, TextOf(m_Kept));
    m_File = FileDescriptor(::open(file.c_str(), O_WRONLY | O_CLOEXEC));
    if (!m_File.IsOpen())
        throw DriveError(file.string() + " cannot be opened for writing.");
}

void OutputsFile::Keep(const BoardOutputs& outputs) {
    if (!m_File.IsOpen() || outputs == m_Kept)
        return;
    const std::string text = TextOf(outputs);
    if (::pwrite(m_File.Get(), text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()))
        m_Kept = outputs;
}

} // namespace ombrix
