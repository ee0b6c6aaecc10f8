#include "terminal/EpromCommands.h"

#include "calibration/clsACUCalibration.h"
#include "platform/FolderDrive.h"
#include "support/Text.h"
#include "terminal/RecordJson.h"

#include <fmt/format.h>

#include <array>
#include <cstring>

namespace ombrix {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::int32_t WordBytes = 4;
constexpr std::int32_t Words = clsAIB::EPROMBytes / WordBytes;
using Image = std::array<std::int32_t, static_cast<std::size_t>(Words)>;

void RequireAddress(std::int32_t address) {
    if (address < 0 || address >= clsAIB::EPROMBytes || address % WordBytes != 0)
        throw CommandError(ExitStatus::WrongUsage,
                           fmt::format("{} is no EPROM address: 0 to {} in steps of {}.", address,
                                       clsAIB::EPROMBytes - WordBytes, WordBytes));
}

std::int32_t ReadWord(clsAIB& board, std::int32_t address) {
    std::int32_t word = 0;
    const AIBStatus status = board.ReadEPROM(address, word);
    if (status != Status::NoError)
        throw CommandError(ExitStatus::NotPassed,
                           fmt::format("The EPROM cannot be read at {}: {}", address,
                                       clsAIB::AIBErrorStr(status)));
    return word;
}

/// Writes words and counts those that read back as something else.
class VerifiedWriter {
  public:
    explicit VerifiedWriter(clsAIB& board) : m_Board(board) {}

    std::int32_t Write(std::int32_t address, std::int32_t word) {
        const AIBStatus status = m_Board.WriteEPROM(address, word);
        if (status != Status::NoError)
            m_LastFailure = clsAIB::AIBErrorStr(status);
        const std::int32_t stored = ReadWord(m_Board, address);
        if (stored != word)
            m_Differences.push_back(address);
        return stored;
    }
    const std::vector<std::int32_t>& Differences() const { return m_Differences; }

    /// Notes in the result whether everything was stored.
    void Judge(CommandResult& result) const {
        if (m_Differences.empty())
            return;
        result.Status = ExitStatus::NotStored;
        result.Error =
            fmt::format("{} word(s) read back wrong, the first at {}{}{}.", m_Differences.size(),
                        m_Differences.front(), m_LastFailure.empty() ? "" : ": ", m_LastFailure);
    }

  private:
    clsAIB& m_Board;
    std::vector<std::int32_t> m_Differences;
    std::string m_LastFailure;
};

void RequireNotInterrupted(CommandContext& context) {
    context.Events.ProcessPendingEvents();
    if (context.Signals.Interrupted())
        throw CommandError(ExitStatus::NotPassed,
                           "Interrupted: the EPROM has been written in part only.");
}

} // namespace

CommandResult RunEpromRead(CommandContext& context, std::int32_t address, std::int32_t words) {
    RequireAddress(address);
    if (words < 1 || words > Words - address / WordBytes)
        throw CommandError(ExitStatus::WrongUsage,
                           fmt::format("{} words from {} on are not within the EPROM: at most {}.",
                                       words, address, Words - address / WordBytes));
    clsAIB& board = ChosenBoard(context);
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
    VerifiedWriter writer(ChosenBoard(context));
    CommandResult result;
    const std::int32_t stored = writer.Write(address, value);
    result.Json["value"] = stored;
    result.Text = fmt::format("{:4}  {:>8}  {}\n", address, HexText(stored), stored);
    writer.Judge(result);
    return result;
}

CommandResult RunEpromFill(CommandContext& context, std::int32_t value) {
    VerifiedWriter writer(ChosenBoard(context));
    const Message question{
        fmt::format("Are you sure you want to overwrite all memory locations with: {}", value),
        MessageIcon::Question, MessageButtons::YesNo};
    if (context.Messages.Ask(question) != Answer::Yes)
        throw CommandError(ExitStatus::NotPassed, "Cancelled: nothing has been written.");
    for (std::int32_t address = 0; address < clsAIB::EPROMBytes; address += WordBytes) {
        RequireNotInterrupted(context);
        writer.Write(address, value);
    }
    CommandResult result;
    writer.Judge(result);
    if (result.Status == ExitStatus::Done)
        context.Messages.Ask({"All locations written"});
    return result;
}

CommandResult RunEpromSave(CommandContext& context, const std::filesystem::path& file) {
    clsAIB& board = ChosenBoard(context);
    Image image{};
    for (std::int32_t i = 0; i < Words; ++i)
        image.at(static_cast<std::size_t>(i)) = ReadWord(board, i * WordBytes);
    std::string bytes(sizeof image, '\0');
    std::memcpy(bytes.data(), image.data(), sizeof image);
    ReplaceWholeFile(file, bytes);
    CommandResult result;
    result.Json["files"] = {std::filesystem::absolute(file).string()};
    result.Text = fmt::format("{}\n", file.string());
    return result;
}

CommandResult RunEpromRestore(CommandContext& context, const std::filesystem::path& file) {
    const std::string bytes = ReadWholeFile(file);
    Image image{};
    if (bytes.size() != sizeof image)
        throw CommandError(ExitStatus::NotStored,
                           fmt::format("{} is no EPROM image: it has {} bytes, not {}. Nothing "
                                       "has been written.",
                                       file.string(), bytes.size(), sizeof image));
    std::memcpy(image.data(), bytes.data(), sizeof image);
    VerifiedWriter writer(ChosenBoard(context));
    for (std::int32_t i = 0; i < Words; ++i) {
        RequireNotInterrupted(context);
        writer.Write(i * WordBytes, image.at(static_cast<std::size_t>(i)));
    }
    CommandResult result;
    result.Json["differences"] = Json::array();
    for (const std::int32_t address : writer.Differences())
        result.Json["differences"].push_back(
            {{"address", address}, {"value", ReadWord(*context.TheStation.g_CurrentAIB, address)}});
    result.Text =
        fmt::format("{} words restored, {} read back wrong\n", Words, writer.Differences().size());
    writer.Judge(result);
    return result;
}

CommandResult RunEpromShow(CommandContext& context) {
    clsAIB& board = ChosenBoard(context);
    CommandResult result;
    result.Json["record"] = RecordJson(board.Calibration().Record());
    result.Text = result.Json["record"].dump(2) + "\n";
    return result;
}

} // namespace ombrix
