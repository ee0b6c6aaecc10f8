#include "simulator/SimulatedEPROM.h"

#include "platform/os/FileDescriptor.h"
#include "platform/os/FolderDrive.h"

#include <fmt/format.h>

#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace ombrix {

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
    const FileDescriptor file(::open(m_File.c_str(), O_WRONLY | O_CLOEXEC));
    const bool written =
        file.IsOpen() && ::pwrite(file.Get(), &word, sizeof word, address) == sizeof word;
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

} // namespace ombrix
