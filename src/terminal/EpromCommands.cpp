#include "board/eprom/EpromGuard.h"
#include "board/eprom/EpromWriter.h"
#include "board/unit/ACUCalibration.h"
#include "journal/UnitJson.h"
#include "platform/os/FolderDrive.h"
#include "platform/text/SingleJson.h"
#include "platform/text/Text.h"
#include "terminal/Commands.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

Json TablesJson(const std::array<ACUChannelCal, ACUChannels>& tables) {
    Json list = Json::array();
    for (const ACUChannelCal& table : tables)
        list.push_back(
            {{"Demand", table.Demand}, {"M", NumbersJson(table.M)}, {"C", NumbersJson(table.C)}});
    return list;
}

/// The record with the names of its fields. Dates are ISO 8601, null for never; numbers that JSON
/// lacks (an erased Single) are null; texts are without surrounding blanks.
Json RecordJson(const ACURecord& record) {
    return {{"ACUInitialised", record.ACUInitialised},
            {"DataVersion", record.DataVersion},
            {"ChannelCapacity", NumbersJson(record.ChannelCapacity)},
            {"CalibrationPoints", record.CalibrationPoints},
            {"HasSolenoidValves", record.HasSolenoidValves},
            {"DigitalMFCConfig", record.DigitalMFCConfig},
            {"DigitalPressureConfig", record.DigitalPressureConfig},
            {"VelocityCal", TablesJson(record.VelocityCal)},
            {"VelocitySystemDate", DateJson(record.VelocitySystemDate)},
            {"VelocityAuditDate", DateJson(record.VelocityAuditDate)},
            {"VelocitySystemPassed", record.VelocitySystemPassed},
            {"VelocityAuditPassed", record.VelocityAuditPassed},
            {"VelocitySystemUser", Trimmed(record.VelocitySystemUser)},
            {"VelocityAuditUser", Trimmed(record.VelocityAuditUser)},
            {"MFCNumber", Trimmed(record.MFCNumber)},
            {"PressurePresentCode", record.PressurePresentCode},
            {"MaxPressure", NumberJson(record.MaxPressure)},
            {"BaseDiameter", NumberJson(record.BaseDiameter)},
            {"PressureCoeff", NumbersJson(record.PressureCoeff)},
            {"PressureSystemDate", DateJson(record.PressureSystemDate)},
            {"PressureAuditDate", DateJson(record.PressureAuditDate)},
            {"PressureSystemPassed", record.PressureSystemPassed},
            {"PressureAuditPassed", record.PressureAuditPassed},
            {"PressureSystemUser", Trimmed(record.PressureSystemUser)},
            {"PressureAuditUser", Trimmed(record.PressureAuditUser)},
            {"PressurePresent", record.PressurePresent},
            {"PressureScale", NumberJson(record.PressureScale)},
            {"PressureOffset", NumberJson(record.PressureOffset)},
            {"PressureSpan", NumberJson(record.PressureSpan)},
            {"PressureZero", record.PressureZero}};
}

constexpr std::int32_t WordBytes = EpromWordBytes;
constexpr std::int32_t Words = EpromImage::WordCount;

void RequireAddress(std::int32_t address) {
    if (address < 0 || address >= EpromBytes || address % WordBytes != 0)
        throw CommandError(ExitStatus::WrongUsage,
                           fmt::format("{} is no EPROM address: 0 to {} in steps of {}.", address,
                                       EpromBytes - WordBytes, WordBytes));
}

std::int32_t ReadWord(AIB& board, std::int32_t address) {
    std::int32_t word = 0;
    const AIBStatus status = board.ReadEPROM(address, word);
    if (status != Status::NoError)
        throw CommandError(ExitStatus::NotPassed, fmt::format("The EPROM cannot be read at {}: {}",
                                                              address, AIB::AIBErrorStr(status)));
    return word;
}

/// Notes in the result that the EPROM does not hold what was written.
void NoteMismatch(CommandResult& result, const EpromMismatch& mismatch) {
    result.Status = ExitStatus::NotStored;
    result.Error = WithPlainLineEnds(mismatch.what());
}

/// Writes the whole EPROM until it is done or interrupted.
template <class Writing>
void WriteAll(CommandContext& context, const Writing& writing) {
    const EpromEnd ended = writing([&context](std::int32_t /*address*/) {
        context.Events.ProcessPendingEvents();
        return !context.Signals.Interrupted();
    });
    if (ended == EpromEnd::Declined)
        throw CommandError(ExitStatus::NotPassed, "Cancelled: nothing has been written.");
    if (ended == EpromEnd::BrokenOff)
        throw CommandError(ExitStatus::NotPassed,
                           "Interrupted: the EPROM has been written in part only.");
}

Json FieldsJson(const std::vector<EpromDifference>& differences) {
    Json fields = Json::array();
    for (const EpromDifference& difference : differences)
        fields.push_back({{"address", difference.Address},
                          {"name", difference.Name},
                          {"old", difference.Old},
                          {"new", difference.New}});
    return fields;
}

std::string FieldsText(const std::vector<EpromDifference>& differences, std::string_view lineEnd) {
    std::string text;
    for (const EpromDifference& difference : differences)
        text += DifferenceText(difference).append(lineEnd);
    return text;
}

} // namespace

CommandResult RunEpromRead(CommandContext& context, std::int32_t address, std::int32_t words) {
    RequireAddress(address);
    if (words < 1 || words > Words - address / WordBytes)
        throw CommandError(ExitStatus::WrongUsage,
                           fmt::format("{} words from {} on are not within the EPROM: at most {}.",
                                       words, address, Words - address / WordBytes));
    AIB& board = ChosenBoard(context);
    CommandResult result;
    result.Json["words"] = Json::array();
    for (std::int32_t i = 0; i < words; ++i) {
        const std::int32_t at = address + i * WordBytes;
        const std::int32_t word = ReadWord(board, at);
        result.Json["words"].push_back({{"address", at}, {"value", word}, {"hex", HexText(word)}});
        result.Text += fmt::format("{:4}  {:>8}  {}\n", at, HexText(word), word);
    }
    return result;
}

CommandResult RunEpromWrite(CommandContext& context, std::int32_t address, std::int32_t value) {
    RequireAddress(address);
    AIB& board = ChosenBoard(context);
    CommandResult result;
    try {
        WriteEPROMWord(context.TheStation, address, value);
    } catch (const EpromMismatch& mismatch) {
        NoteMismatch(result, mismatch);
    }
    const std::int32_t stored = ReadWord(board, address);
    result.Json["value"] = stored;
    result.Text = fmt::format("{:4}  {:>8}  {}\n", address, HexText(stored), stored);
    return result;
}

CommandResult RunEpromFill(CommandContext& context, std::int32_t value) {
    ChosenBoard(context);
    CommandResult result;
    WriteAll(context, [&](const EpromProgress& progress) {
        return WriteWholeEPROM(context.TheStation, value, progress);
    });
    context.TheStation.World.Messages.Ask({"All locations written"});
    return result;
}

CommandResult RunEpromSave(CommandContext& context, const std::filesystem::path& file) {
    ReplaceWholeFile(file, EpromImage::Read(ChosenBoard(context)).Bytes());
    CommandResult result;
    result.Json["files"] = {std::filesystem::absolute(file).string()};
    result.Text = fmt::format("{}\n", file.string());
    return result;
}

CommandResult RunEpromRestore(CommandContext& context, const std::filesystem::path& file) {
    const EpromImage image = ReadEpromFile(file);
    const std::string warning = OriginWarning(file, ChosenBoard(context));
    const auto agreed = [&](const std::vector<EpromDifference>& differences) {
        const std::string changes =
            warning + (warning.empty() ? "" : "\r\n\r\n") + FieldsText(differences, "\r\n");
        return differences.empty() ||
               context.TheStation.World.Messages.Ask(
                   {changes + "\r\nAre you sure you want to restore the EPROM?",
                    MessageIcon::Question, MessageButtons::YesNo}) == Answer::Yes;
    };
    CommandResult result;
    result.Json["differences"] = Json::array();
    try {
        WriteAll(context, [&](const EpromProgress& progress) {
            return RestoreEPROM(context.TheStation, image, agreed, progress);
        });
    } catch (const EpromMismatch& mismatch) {
        NoteMismatch(result, mismatch);
        for (const EpromMismatch::Word& word : mismatch.Words())
            result.Json["differences"].push_back(
                {{"address", word.Address}, {"value", word.Value}});
    }
    result.Text = fmt::format("{} words restored, {} read back wrong\n", Words,
                              result.Json["differences"].size());
    return result;
}

CommandResult RunEpromDiff(CommandContext& context, const std::filesystem::path& file,
                           const std::optional<std::filesystem::path>& other) {
    const EpromImage image = ReadEpromFile(file);
    const auto differences = EpromDifferences(
        image, other ? ReadEpromFile(*other) : EpromImage::Read(ChosenBoard(context)));
    CommandResult result;
    result.Json["fields"] = FieldsJson(differences);
    result.Text = FieldsText(differences, "\n");
    return result;
}

CommandResult RunEpromShow(CommandContext& context) {
    ChosenBoard(context);
    context.TheStation.Calibration().RequireRecord();
    CommandResult result;
    result.Json["record"] = RecordJson(context.TheStation.Calibration().Record());
    result.Text = result.Json["record"].dump(2) + "\n";
    return result;
}

} // namespace ombrix
