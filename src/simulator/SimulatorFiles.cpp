#include "simulator/SimulatorFiles.h"

#include "platform/os/Files.h"
#include "platform/os/FolderDrive.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <cstring>
#include <iterator>
#include <sstream>
#include <system_error>

namespace ombrix {

namespace fs = std::filesystem;

fs::path PrepareSimulatorFolder(const fs::path& dataRoot) {
    fs::path folder = dataRoot / Paths::Simulator;
    if (fs::exists(folder))
        return folder;
    const fs::path systemFolder = dataRoot / "Program Files" / "Pulvatron" / "System";
    std::error_code error;
    fs::create_directories(systemFolder, error);
    if (error)
        throw DriveError(systemFolder.string() + " cannot be made: " + error.message());
    for (const char* name : {"AIBCNF00.bin", "AIBCNF01.bin", "AIBCNF02.bin", "AIBCNF03.bit"}) {
        if (!fs::exists(systemFolder / name))
            ReplaceWholeFile(systemFolder / name, "FPGA configuration of the simulated bench\n");
    }
    // Made last: a folder that is there says that the files were laid.
    fs::create_directory(folder, error);
    if (error)
        throw DriveError(folder.string() + " cannot be made: " + error.message());
    return folder;
}

SimulatedEPROM::SimulatedEPROM(std::filesystem::path file, const Words& content)
    : m_File(std::move(file)), m_Words(content) {
    if (std::filesystem::exists(m_File))
        Load(ReadWholeFile(m_File));
    else
        ReplaceWholeFile(m_File, Image());
}

bool SimulatedEPROM::IsWordAddress(std::int32_t address) {
    return address >= 0 && address < Bytes && address % 4 == 0;
}

AIBStatus SimulatedEPROM::Read(std::int32_t address, std::int32_t& word) const {
    if (!IsWordAddress(address))
        return Status::HardwareError;
    word = m_Words.at(static_cast<std::size_t>(address) / 4);
    return Status::NoError;
}

AIBStatus SimulatedEPROM::Write(std::int32_t address, std::int32_t word) {
    if (!IsWordAddress(address))
        return Status::HardwareError;
    m_Words.at(static_cast<std::size_t>(address) / 4) = word;
    if (m_File.empty())
        return Status::NoError;
    // Word by word in place, as the memory itself is written.
    std::array<char, sizeof word> bytes{};
    std::memcpy(bytes.data(), &word, sizeof word);
    const FileDescriptor file = OpenInPlace(m_File);
    const bool written =
        file.IsOpen() && WriteAt(file, address, std::string_view(bytes.data(), bytes.size()));
    return written ? Status::NoError : Status::HardwareError;
}

std::string SimulatedEPROM::Image() const {
    std::string image(static_cast<std::size_t>(Bytes), '\0');
    std::memcpy(image.data(), m_Words.data(), image.size());
    return image;
}

void SimulatedEPROM::Load(std::string_view image) {
    if (image.size() != static_cast<std::size_t>(Bytes))
        throw DriveError(fmt::format("An EPROM image has {} bytes, this one has {}{}.", Bytes,
                                     image.size(), m_File.empty() ? "" : ": " + m_File.string()));
    std::memcpy(m_Words.data(), image.data(), image.size());
    if (!m_File.empty())
        ReplaceWholeFile(m_File, image);
}

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
    m_File = OpenInPlace(file);
    if (!m_File.IsOpen())
        throw DriveError(file.string() + " cannot be opened for writing.");
}

void OutputsFile::Keep(const BoardOutputs& outputs) {
    if (!m_File.IsOpen() || outputs == m_Kept)
        return;
    const std::string text = TextOf(outputs);
    if (WriteAt(m_File, 0, text))
        m_Kept = outputs;
}

} // namespace ombrix
