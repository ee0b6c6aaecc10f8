#include "board/eprom/EpromFields.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <utility>

namespace ombrix {

namespace {

namespace Map = ACUMemoryMap;

constexpr std::int32_t DateWords = 2;

class FieldTable {
  public:
    void Add(std::int32_t address, const std::string& name, EpromKind kind) {
        m_Fields[address] = {address, 1, name, kind};
    }
    void Date(std::int32_t address, const std::string& name) {
        m_Fields[address] = {address, DateWords, name, EpromKind::Date};
    }
    void Text(std::int32_t address, std::int32_t length, const std::string& name) {
        m_Fields[address] = {address, length / EpromWordBytes, name, EpromKind::Text};
    }
    /// The fields, and between them the words that belong to none.
    std::vector<EpromField> Take() {
        std::vector<EpromField> all;
        for (std::int32_t address = 0; address < EpromBytes;) {
            const auto found = m_Fields.find(address);
            all.push_back(found == m_Fields.end() ? EpromField{address} : std::move(found->second));
            address += all.back().Words * EpromWordBytes;
        }
        return all;
    }

  private:
    std::map<std::int32_t, EpromField> m_Fields;
};

void AddVelocity(FieldTable& fields) {
    fields.Add(Map::DataVersion_USB, "Data version", EpromKind::Long);
    fields.Add(Map::CalibrationPoints, "Calibration points", EpromKind::Long);
    fields.Add(Map::HasSolenoidValves, "Has solenoid valves", EpromKind::Long);
    fields.Add(Map::DigitalMFCConfig, "Digital MFC config", EpromKind::Long);
    fields.Add(Map::DigitalPressureConfig, "Digital pressure config", EpromKind::Long);
    for (std::int32_t point = 0; point < Map::LargestPointCount; ++point)
        fields.Add(Map::VelocityCal + point * EpromWordBytes, fmt::format("Demand {}", point + 1),
                   EpromKind::Long);
    for (std::int32_t channel = 0; channel < Map::Channels; ++channel) {
        fields.Add(Map::ChannelCapacity + channel * EpromWordBytes,
                   fmt::format("Channel {} capacity", channel + 1), EpromKind::Single);
        std::int32_t address =
            Map::VelocityCal + channel * Map::VelocityCalBytes + Map::VelocityCalDemandBytes;
        for (std::int32_t segment = 1; segment < Map::LargestPointCount; ++segment)
            for (const char* part : {"slope", "intercept"}) {
                fields.Add(address, fmt::format("Channel {} {} {}", channel + 1, part, segment),
                           EpromKind::Single);
                address += EpromWordBytes;
            }
    }
}

void AddPressure(FieldTable& fields) {
    fields.Add(Map::PressurePresent, "Pressure present", EpromKind::Long);
    fields.Add(Map::MaxPressure, "Max pressure", EpromKind::Single);
    fields.Add(Map::BaseDiameter, "Base diameter", EpromKind::Single);
    for (std::int32_t k = 0; k < 3; ++k)
        fields.Add(Map::PressureCoeff + k * EpromWordBytes, fmt::format("Pressure coeff {}", k),
                   EpromKind::Single);
}

void AddLastCalibrations(FieldTable& fields) {
    fields.Date(Map::VelocitySystemDate, "Velocity system date");
    fields.Date(Map::VelocityAuditDate, "Velocity audit date");
    fields.Add(Map::VelocitySystemPassed, "Velocity system passed", EpromKind::Long);
    fields.Add(Map::VelocityAuditPassed, "Velocity audit passed", EpromKind::Long);
    fields.Text(Map::VelocitySystemUser, Map::UserLength, "Velocity system user");
    fields.Text(Map::VelocityAuditUser, Map::UserLength, "Velocity audit user");
    fields.Date(Map::PressureSystemDate, "Pressure system date");
    fields.Date(Map::PressureAuditDate, "Pressure audit date");
    fields.Add(Map::PressureSystemPassed, "Pressure system passed", EpromKind::Long);
    fields.Add(Map::PressureAuditPassed, "Pressure audit passed", EpromKind::Long);
    fields.Text(Map::PressureSystemUser, Map::UserLength, "Pressure system user");
    fields.Text(Map::PressureAuditUser, Map::UserLength, "Pressure audit user");
    fields.Text(Map::MFCNumber, Map::MFCNumberLength, "MFC number");
}

std::uint32_t Bits(const EpromImage& image, const EpromField& field, std::int32_t word) {
    return static_cast<std::uint32_t>(image.Word(field.Address + word * EpromWordBytes));
}

std::string SingleText(std::uint32_t bits) {
    const auto value = std::bit_cast<float>(bits);
    return std::isfinite(value) ? fmt::format("{}", value) : "(no number)";
}

std::string LastTimeText(std::uint64_t bits) {
    const OleDate date(std::bit_cast<double>(bits));
    return date == OleDate() ? "never" : DateText(date, "dd/mm/yyyy hh:nn:ss");
}

/// Trailing blanks and what cannot be printed do not show.
std::string QuotedText(const EpromField& field, const EpromImage& image) {
    std::string bytes;
    for (std::int32_t word = 0; word < field.Words; ++word)
        for (unsigned shift = 0; shift < 32U; shift += 8U)
            bytes += static_cast<char>(Bits(image, field, word) >> shift & 0xFFU);
    bytes.resize(std::min(bytes.size(), bytes.find('\0')));
    bytes.resize(bytes.find_last_not_of(' ') + 1);
    std::erase_if(bytes, [](char byte) { return static_cast<unsigned char>(byte) < ' '; });
    return '"' + FromWindows1252(bytes) + '"';
}

std::string HexWords(const EpromField& field, const EpromImage& image) {
    std::string text = " (";
    for (std::int32_t word = 0; word < field.Words; ++word)
        text += fmt::format("{}{:08X}", word == 0 ? "" : " ", Bits(image, field, word));
    return text + ")";
}

bool IsErased(const EpromField& field, const EpromImage& image) {
    for (std::int32_t word = 0; word < field.Words; ++word)
        if (Bits(image, field, word) != 0xFFFFFFFFU)
            return false;
    return field.Kind != EpromKind::Long;
}

bool Differs(const EpromField& field, const EpromImage& before, const EpromImage& after) {
    for (std::int32_t word = 0; word < field.Words; ++word)
        if (Bits(before, field, word) != Bits(after, field, word))
            return true;
    return false;
}

} // namespace

std::vector<EpromField> EpromFields() {
    FieldTable fields;
    AddVelocity(fields);
    AddPressure(fields);
    AddLastCalibrations(fields);
    return fields.Take();
}

std::string ShowField(const EpromField& field, const EpromImage& image) {
    if (IsErased(field, image))
        return "(erased)";
    switch (field.Kind) {
    case EpromKind::Single: return SingleText(Bits(image, field, 0));
    case EpromKind::Date:
        return LastTimeText(std::uint64_t{Bits(image, field, 1)} << 32U | Bits(image, field, 0));
    case EpromKind::Text: return QuotedText(field, image);
    case EpromKind::Long: break;
    }
    return std::to_string(image.Word(field.Address));
}

std::vector<EpromDifference> EpromDifferences(const EpromImage& before, const EpromImage& after) {
    std::vector<EpromDifference> differences;
    for (const EpromField& field : EpromFields()) {
        if (!Differs(field, before, after))
            continue;
        EpromDifference difference{field.Address, field.Name, ShowField(field, before),
                                   ShowField(field, after)};
        if (difference.Old == difference.New) {
            difference.Old += HexWords(field, before);
            difference.New += HexWords(field, after);
        }
        differences.push_back(std::move(difference));
    }
    return differences;
}

std::string PlaceText(const EpromDifference& difference) {
    return difference.Name.empty() ? std::to_string(difference.Address)
                                   : fmt::format("{} {}", difference.Address, difference.Name);
}

std::string DifferenceText(const EpromDifference& difference) {
    return fmt::format("{}: {} → {}", PlaceText(difference), difference.Old, difference.New);
}

} // namespace ombrix
