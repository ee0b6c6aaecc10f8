#include "calibration/history/HistoryChain.h"

#include "platform/text/Fingerprint.h"
#include "platform/text/Paths.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <set>

namespace ombrix {

namespace {

constexpr const char* HistoryEnding = ".jsonl";
/// Beside each history: number and fingerprint of its last line, so that lines taken off its end
/// are missed.
constexpr const char* HeadEnding = ".head";
/// Held for the moment in which a line is made and written.
constexpr const char* WritingLock = R"(C:\History\writing.lock)";
constexpr double LongestWait_s = 2.0;

constexpr std::string_view FingerprintMember = ",\"fingerprint\":\"";
constexpr std::string_view EndOfLine = "\"}";

std::string UnitPath(std::int32_t serial, const char* ending) {
    return fmt::format("{}ACU{:05}{}", Paths::History, serial, ending);
}

/// A line without its last member, and what that says.
struct SealedLine {
    std::string Content;
    std::string Fingerprint;
};

std::string Sealed(const SingleJson& record) {
    std::string content = LineOf(record);
    content.pop_back(); // the end of the line
    const std::string fingerprint = FingerprintOf(content);
    content.pop_back(); // the brace, which comes behind the fingerprint
    return fmt::format("{}{}{}{}\n", content, FingerprintMember, fingerprint, EndOfLine);
}

/// Nothing for a line without a fingerprint.
std::optional<SealedLine> OpenedSeal(std::string_view line) {
    const std::size_t ending = FingerprintMember.size() + FingerprintLength + EndOfLine.size();
    if (line.size() < ending || !line.ends_with(EndOfLine))
        return std::nullopt;
    const std::string_view member = line.substr(line.size() - ending);
    if (!member.starts_with(FingerprintMember))
        return std::nullopt;
    return SealedLine{std::string(line.substr(0, line.size() - ending)) + "}",
                      std::string(member.substr(FingerprintMember.size(), FingerprintLength))};
}

/// Of a line that has one, with its end.
std::string FingerprintOfLine(std::string_view line) {
    return std::string(
        line.substr(line.size() - 1 - EndOfLine.size() - FingerprintLength, FingerprintLength));
}

/// An object without members for what is none.
SingleJson ObjectOf(std::string_view line) {
    SingleJson json = SingleJson::parse(line, nullptr, false);
    return json.is_object() ? json : SingleJson::object();
}

/// Null where nothing was passed over.
SingleJson FingerprintOrNull(const std::string& text) {
    return text.empty() ? SingleJson() : SingleJson(FingerprintOf(text));
}

SingleJson TextOrNull(const std::string& text) {
    return text.empty() ? SingleJson() : SingleJson(text);
}

/// Goes through a history, line by line.
class ChainReader {
  public:
    explicit ChainReader(std::int32_t serial) { m_Check.Serial = serial; }

    /// @param text of the whole file @param head that was kept of it; null without one
    ChainCheck Check(std::string_view text, const SingleJson& head);
    /// What the next line says of those before it.
    SingleJson Link(std::string_view text, const SingleJson& head);

  private:
    void TakeAll(std::string_view text);
    void Take(std::string_view line);
    void TakeSealed(const SealedLine& line);
    void TakeOther(std::string_view line);
    void CheckHead(const SingleJson& head);
    void Break(const char* reason);

    ChainCheck m_Check;
    /// What stands behind the last line of the chain without belonging to it: lines from before
    /// there were fingerprints, and what a crash has cut off.
    std::string m_PassedOver;
    /// A whole record without fingerprint stands behind the last line of the chain.
    bool m_PutIn = false;
    std::vector<std::string> m_Fingerprints;
};

void ChainReader::Break(const char* reason) {
    m_Check.FirstBroken = m_Check.Records + 1;
    m_Check.Reason = reason;
}

void ChainReader::TakeSealed(const SealedLine& line) {
    const SingleJson json = ObjectOf(line.Content);
    const auto is = [&json](const char* key, const SingleJson& value) {
        return json.contains(key) && json.at(key) == value;
    };
    if (FingerprintOf(line.Content) != line.Fingerprint)
        return Break("its content is not what its fingerprint was made of");
    if (m_PutIn)
        return Break("a record without a fingerprint was put in before it");
    if (!is("number", m_Check.Records + 1) || !is("before", TextOrNull(m_Check.Fingerprint)))
        return Break("it does not continue the line before it: one was removed or put in");
    if (!is("passedOver", FingerprintOrNull(m_PassedOver)))
        return Break("what stands before it is not what stood there when it was written");
    ++m_Check.Records;
    m_Check.Fingerprint = line.Fingerprint;
    m_Fingerprints.push_back(line.Fingerprint);
    m_PassedOver.clear();
}

void ChainReader::TakeOther(std::string_view line) {
    m_PassedOver.append(line).append("\n");
    // What a crash has cut off is no whole record.
    if (ObjectOf(line).empty())
        return;
    if (m_Check.Records == 0)
        ++m_Check.Unchained;
    else
        m_PutIn = true;
}

void ChainReader::Take(std::string_view line) {
    if (const auto sealed = OpenedSeal(line))
        TakeSealed(*sealed);
    else
        TakeOther(line);
}

void ChainReader::TakeAll(std::string_view text) {
    while (!text.empty() && !m_Check.FirstBroken) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        Take(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void ChainReader::CheckHead(const SingleJson& head) {
    const int number = head.value("number", 0);
    if (number > m_Check.Records)
        return Break("it was removed from the end");
    if (number > 0 &&
        m_Fingerprints.at(static_cast<std::size_t>(number - 1)) != head.value("fingerprint", "")) {
        m_Check.Records = number - 1;
        Break("it is not the line that was written there: the history was made again");
    }
}

ChainCheck ChainReader::Check(std::string_view text, const SingleJson& head) {
    TakeAll(text);
    if (!m_Check.FirstBroken && m_PutIn)
        Break("it has no fingerprint: it was put in");
    if (!m_Check.FirstBroken)
        CheckHead(head);
    return m_Check;
}

SingleJson ChainReader::Link(std::string_view text, const SingleJson& head) {
    // A chain that is broken goes on behind the last line it ever had, and stays broken where it
    // was.
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto sealed = OpenedSeal(line);
        if (!sealed) {
            m_PassedOver.append(line).append("\n");
            continue;
        }
        const SingleJson json = ObjectOf(sealed->Content);
        m_Check.Records = std::max(m_Check.Records + 1, json.value("number", 0));
        m_Check.Fingerprint = sealed->Fingerprint;
        m_PassedOver.clear();
    }
    if (const int number = head.value("number", 0); number > m_Check.Records) {
        m_Check.Records = number;
        m_Check.Fingerprint = head.value("fingerprint", "");
    }
    return {{"number", m_Check.Records + 1},
            {"before", TextOrNull(m_Check.Fingerprint)},
            {"passedOver", FingerprintOrNull(m_PassedOver)}};
}

std::string TextOf(const Drive& files, const std::string& path) {
    return files.FileExists(path) ? files.ReadFile(path) : std::string();
}

std::unique_ptr<FileLock> HoldHistory(Drive& files, Clock& time) {
    const double begin_s = MonotonicSeconds(time);
    while (MonotonicSeconds(time) - begin_s < LongestWait_s) {
        if (auto lock = files.TryLock(WritingLock, ""))
            return lock;
        time.Rest(LongestWait_s);
    }
    throw DriveError("Another program keeps writing to the history.");
}

} // namespace

std::string HistoryPath(std::int32_t serial) {
    return UnitPath(serial, HistoryEnding);
}

void AppendToChain(Drive& files, Clock& time, std::int32_t serial, SingleJson record) {
    files.CreateFolder(Paths::History);
    const std::string path = HistoryPath(serial);
    const std::unique_ptr<FileLock> hold = HoldHistory(files, time);
    const std::string before = TextOf(files, path);
    const SingleJson head = ObjectOf(TextOf(files, UnitPath(serial, HeadEnding)));
    SingleJson line = ChainReader(serial).Link(before, head);
    const SingleJson number = line.at("number");
    line.update(record);
    const std::string sealed = Sealed(line);
    // What a crash has cut off must not spoil the line that comes next.
    const bool isCutOff = !before.empty() && !before.ends_with('\n');
    const auto file = files.OpenForAppending(path);
    file->Write((isCutOff ? "\n" : "") + sealed);
    file->Sync();
    // The head of a chain that is broken stays to show it.
    if (ChainReader(serial).Check(before, head).FirstBroken)
        return;
    try {
        files.ReplaceFile(UnitPath(serial, HeadEnding),
                          LineOf({{"number", number}, {"fingerprint", FingerprintOfLine(sealed)}}));
    } catch (const DriveError&) {
        // The record is stored; a head that lags behind holds as well.
    }
}

ChainCheck CheckChain(const Drive& files, std::int32_t serial) {
    return ChainReader(serial).Check(TextOf(files, HistoryPath(serial)),
                                     ObjectOf(TextOf(files, UnitPath(serial, HeadEnding))));
}

std::vector<std::int32_t> UnitsWithChain(const Drive& files) {
    std::set<std::int32_t> serials;
    for (const std::string& name : files.FilesIn(Paths::History)) {
        std::int32_t serial = 0;
        if (std::sscanf(name.c_str(), "ACU%d", &serial) == 1 &&
            (HistoryPath(serial).ends_with(name) || UnitPath(serial, HeadEnding).ends_with(name)))
            serials.insert(serial);
    }
    return {serials.begin(), serials.end()};
}

} // namespace ombrix
