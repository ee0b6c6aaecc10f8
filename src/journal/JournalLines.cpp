#include "journal/JournalLines.h"

#include "calibration/history/RunJson.h"
#include "platform/text/OleDate.h"
#include "platform/text/Text.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// Version of the format, which stands in the first line.
constexpr int JournalVersion = 1;

SingleJson BoardJson(const clsAIB& board) {
    return {{"serial", board.SerialNumber()},
            {"bus", board.BusTypeText()},
            {"hwVersion", board.HWVersion()},
            {"buildDate", Trimmed(board.BuildDate())}};
}

/// An object without members for a line that cannot be read.
SingleJson ObjectOf(std::string_view line) {
    SingleJson json = SingleJson::parse(line, nullptr, false);
    return json.is_object() ? json : SingleJson::object();
}

} // namespace

std::string JournalName(const std::string& unit, const std::string& kind, OleDate start) {
    return fmt::format("{}_{}_{}", unit, kind, DateText(start, "yyyymmdd_hhnnss"));
}

SingleJson HeaderJson(const JournalHeader& header, const clsAIB& board) {
    return {{"journal", JournalVersion},           {"kind", header.Kind},
            {"start", DateJson(header.Start)},     {"program", header.Program.Name},
            {"version", header.Program.Version},   {"station", header.Program.Computer},
            {"process", header.Program.ProcessId}, {"board", BoardJson(board)},
            {"unit", UnitJson(header.Unit)}};
}

JournalHeader HeaderOf(const SingleJson& line) {
    if (const int version = line.at("journal").get<int>(); version != JournalVersion)
        throw std::runtime_error(fmt::format(
            "it is a journal of version {}, which this program does not know", version));
    return {line.at("kind").get<std::string>(), DateOf(line.at("start")),
            ProgramIdentity{
                line.at("program").get<std::string>(), line.at("version").get<std::string>(),
                line.at("station").get<std::string>(), line.at("process").get<std::int64_t>()},
            UnitOf(line.at("unit")), line.at("board").at("serial").get<std::int32_t>()};
}

std::string EndLine(OleDate date, const std::string& verdict,
                    const std::vector<std::string>& files) {
    return LineOf({{"end", DateJson(date)}, {"verdict", verdict}, {"files", files}});
}

bool HasEnded(std::string_view text) {
    const std::size_t end = text.rfind('\n');
    if (end == std::string_view::npos || end == 0)
        return false;
    const std::size_t before = text.rfind('\n', end - 1);
    const std::size_t begin = before == std::string_view::npos ? 0 : before + 1;
    return ObjectOf(text.substr(begin, end - begin)).contains("end");
}

std::string KindOfJournal(std::string_view text) {
    const SingleJson header = ObjectOf(text.substr(0, text.find('\n')));
    const auto kind = header.find("kind");
    return kind != header.end() && kind->is_string() ? kind->get<std::string>() : std::string();
}

void ReadJournalLines(std::string_view text, const std::function<void(const SingleJson&)>& take) {
    if (text.find('\n') == std::string_view::npos)
        throw JournalError("The journal is empty: the run had not begun to measure.");
    for (int number = 1; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos)
            break; // cut off
        try {
            take(SingleJson::parse(text.substr(0, end)));
        } catch (const SingleJson::exception&) {
            throw JournalError(fmt::format("The journal is damaged in line {}.", number));
        } catch (const std::exception& error) {
            throw JournalError(
                fmt::format("The journal is damaged in line {}: {}.", number, error.what()));
        }
        text.remove_prefix(end + 1);
    }
}

} // namespace ombrix
