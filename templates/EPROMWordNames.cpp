#include "EPROMWordNames.h"

#include "board/ACUMemoryMap.h"
#include "board/clsAIB.h"
#include "calibration/ACURecord.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

namespace Map = ACUMemoryMap;

constexpr std::int32_t BytesPerWord = 4;

class WordTable {
  public:
    WordTable() {
        for (std::int32_t address = 0; address < clsAIB::EPROMBytes; address += BytesPerWord)
            m_Words.push_back({address, "", ""});
    }

    void Name(std::int32_t address, const std::string& name, const char* kind) {
        EPROMWord& word = m_Words.at(static_cast<std::size_t>(address / BytesPerWord));
        word.Name = name;
        word.Kind = kind;
    }
    void Date(std::int32_t address, const std::string& name) {
        Name(address, name + " (low)", "Date");
        Name(address + BytesPerWord, name + " (high)", "Date");
    }
    void Text(std::int32_t address, std::int32_t length, const std::string& name) {
        for (std::int32_t first = 0; first < length; first += BytesPerWord)
            Name(address + first, fmt::format("{} ({}-{})", name, first + 1, first + BytesPerWord),
                 "Text");
    }
    std::vector<EPROMWord> Take() { return std::move(m_Words); }

  private:
    std::vector<EPROMWord> m_Words;
};

void NameVelocity(WordTable& words) {
    words.Name(Map::CalibrationPoints, "Calibration points", "Long");
    words.Name(Map::HasSolenoidValves, "Has solenoid valves", "Long");
    words.Name(Map::DigitalMFCConfig, "Digital MFC config", "Long");
    words.Name(Map::DigitalPressureConfig, "Digital pressure config", "Long");
    constexpr auto points = static_cast<std::int32_t>(MaxCalibrationPoints);
    for (std::int32_t point = 0; point < points; ++point)
        words.Name(Map::VelocityCal + point * BytesPerWord, fmt::format("Demand {}", point + 1),
                   "Long");
    constexpr auto channels = static_cast<std::int32_t>(ACUChannels);
    for (std::int32_t channel = 0; channel < channels; ++channel) {
        words.Name(Map::ChannelCapacity + channel * BytesPerWord,
                   fmt::format("Channel {} capacity", channel + 1), "Single");
        std::int32_t address =
            Map::VelocityCal + channel * Map::VelocityCalBytes + Map::VelocityCalDemandBytes;
        for (std::int32_t segment = 1; segment < points; ++segment)
            for (const char* part : {"slope", "intercept"}) {
                words.Name(address, fmt::format("Channel {} {} {}", channel + 1, part, segment),
                           "Single");
                address += BytesPerWord;
            }
    }
}

void NamePressure(WordTable& words) {
    words.Name(Map::PressurePresent, "Pressure present", "Long");
    words.Name(Map::MaxPressure, "Max pressure", "Single");
    words.Name(Map::BaseDiameter, "Base diameter", "Single");
    for (std::int32_t k = 0; k < 3; ++k)
        words.Name(Map::PressureCoeff + k * BytesPerWord, fmt::format("Pressure coeff {}", k),
                   "Single");
}

void NameLastCalibrations(WordTable& words) {
    words.Date(Map::VelocitySystemDate, "Velocity system date");
    words.Date(Map::VelocityAuditDate, "Velocity audit date");
    words.Name(Map::VelocitySystemPassed, "Velocity system passed", "Long");
    words.Name(Map::VelocityAuditPassed, "Velocity audit passed", "Long");
    words.Text(Map::VelocitySystemUser, Map::UserLength, "Velocity system user");
    words.Text(Map::VelocityAuditUser, Map::UserLength, "Velocity audit user");
    words.Date(Map::PressureSystemDate, "Pressure system date");
    words.Date(Map::PressureAuditDate, "Pressure audit date");
    words.Name(Map::PressureSystemPassed, "Pressure system passed", "Long");
    words.Name(Map::PressureAuditPassed, "Pressure audit passed", "Long");
    words.Text(Map::PressureSystemUser, Map::UserLength, "Pressure system user");
    words.Text(Map::PressureAuditUser, Map::UserLength, "Pressure audit user");
    words.Text(Map::MFCNumber, Map::MFCNumberLength, "MFC number");
}

} // namespace

std::vector<EPROMWord> EPROMWords() {
    WordTable words;
    NameVelocity(words);
    NamePressure(words);
    NameLastCalibrations(words);
    return words.Take();
}

} // namespace ombrix::templates
