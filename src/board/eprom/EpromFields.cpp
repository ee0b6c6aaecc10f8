#include "board/eprom/EpromFields.h"

#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cctype>
#include <cmath>
#include <map>
#include <utility>

namespace ombrix {

namespace {

namespace Map = ACUMemoryMap;

constexpr std::int32_t DateWords = 2;

class FieldTable {
  public:
    /// What follows belongs to this part of the record.
    void Begin(const std::string& part) { m_Part = part; }
    void Add(std::int32_t address, const std::string& name, EpromKind kind) {
        m_Fields[address] = {address, 1, name, kind, m_Part};
    }
    void Date(std::int32_t address, const std::string& name) {
        m_Fields[address] = {address, DateWords, name, EpromKind::Date, m_Part};
    }
    void Text(std::int32_t address, std::int32_t length, const std::string& name) {
        m_Fields[address] = {address, length / EpromWordBytes, name, EpromKind::Text, m_Part};
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
    std::string m_Part;
    std::map<std::int32_t, EpromField> m_Fields;
};

void AddHeader(FieldTable& fields) {
    fields.Begin("data version");
    fields.Add(Map::DataVersion_FireWire, "", EpromKind::Long); // of a USB board its identity
    fields.Add(Map::DataVersion_USB, "Data version", EpromKind::Long);
    fields.Begin("capacities");
    for (std::int32_t channel = 0; channel < Map::Channels; ++channel)
        fields.Add(Map::ChannelCapacity + channel * EpromWordBytes,
                   fmt::format("Channel {} capacity", channel + 1), EpromKind::Single);
    fields.Begin("calibration points");
    fields.Add(Map::CalibrationPoints, "Calibration points", EpromKind::Long);
    fields.Begin("solenoid valves");
    fields.Add(Map::HasSolenoidValves, "Has solenoid valves", EpromKind::Long);
    fields.Begin("digital configuration");
    fields.Add(Map::DigitalMFCConfig, "Digital MFC config", EpromKind::Long);
    fields.Add(Map::DigitalPressureConfig, "Digital pressure config", EpromKind::Long);
    fields.Begin("MFC number");
    fields.Text(Map::MFCNumber, Map::MFCNumberLength, "MFC number");
}

void AddVelocity(FieldTable& fields) {
    fields.Begin("velocity table");
    for (std::int32_t point = 0; point < Map::LargestPointCount; ++point)
        fields.Add(Map::VelocityCal + point * EpromWordBytes, fmt::format("Demand {}", point + 1),
                   EpromKind::Long);
    for (std::int32_t channel = 0; channel < Map::Channels; ++channel) {
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
    fields.Begin("pressure sensor");
    fields.Add(Map::PressurePresent, "Pressure present", EpromKind::Long);
    fields.Add(Map::MaxPressure, "Max pressure", EpromKind::Single);
    fields.Begin("pressure coefficients");
    fields.Add(Map::BaseDiameter, "Base diameter", EpromKind::Single);
    for (std::int32_t k = 0; k < 3; ++k)
        fields.Add(Map::PressureCoeff + k * EpromWordBytes, fmt::format("Pressure coeff {}", k),
                   EpromKind::Single);
}

void AddLastCalibration(FieldTable& fields, const std::string& name, std::int32_t date,
                        std::int32_t passed, std::int32_t user) {
    fields.Begin(fmt::format("result of the {} calibration", name));
    const std::string capitalised = static_cast<char>(std::toupper(name.front())) + name.substr(1);
    fields.Date(date, capitalised + " date");
    fields.Add(passed, capitalised + " passed", EpromKind::Long);
    fields.Text(user, Map::UserLength, capitalised + " user");
}

void AddLastCalibrations(FieldTable& fields) {
    AddLastCalibration(fields, "velocity system", Map::VelocitySystemDate,
                       Map::VelocitySystemPassed, Map::VelocitySystemUser);
    AddLastCalibration(fields, "velocity audit", Map::VelocityAuditDate, Map::VelocityAuditPassed,
                       Map::VelocityAuditUser);
    AddLastCalibration(fields, "pressure system", Map::PressureSystemDate,
                       Map::PressureSystemPassed, Map::PressureSystemUser);
    AddLastCalibration(fields, "pressure audit", Map::PressureAuditDate, Map::PressureAuditPassed,
                       Map::PressureAuditUser);
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
    AddHeader(fields);
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

std::string WordsText(const EpromField& field, const EpromImage& image) {
    std::string text;
    for (std::int32_t word = 0; word < field.Words; ++word)
        text += fmt::format("{}0x{:08X}", word == 0 ? "" : " ", Bits(image, field, word));
    return text;
}

std::vector<EpromDifference> EpromDifferences(const EpromImage& before, const EpromImage& after) {
    std::vector<EpromDifference> differences;
    for (const EpromField& field : EpromFields()) {
        if (!Differs(field, before, after))
            continue;
        EpromDifference difference{field.Address, field.Name, ShowField(field, before),
                                   ShowField(field, after)};
        if (difference.Old == difference.New) {
            difference.Old += fmt::format(" ({})", WordsText(field, before));
            difference.New += fmt::format(" ({})", WordsText(field, after));
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

std::string PartsText(const std::set<std::int32_t>& addresses) {
    constexpr int listedWords = 3;
    std::vector<std::string> parts;
    int words = 0;
    for (const EpromField& field : EpromFields()) {
        const auto first = addresses.lower_bound(field.Address);
        if (first == addresses.end() || *first >= field.Address + field.Words * EpromWordBytes)
            continue;
        if (field.Part.empty() && ++words > listedWords)
            continue;
        const std::string part =
            field.Part.empty() ? fmt::format("word {}", field.Address) : field.Part;
        if (std::find(parts.begin(), parts.end(), part) == parts.end())
            parts.push_back(part);
    }
    if (words > listedWords)
        parts.push_back(fmt::format("{} more words", words - listedWords));
    return fmt::format("{}", fmt::join(parts, ", "));
}

} // namespace ombrix
