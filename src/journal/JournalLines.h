#pragma once

#include "board/AIB.h"
#include "calibration/unit/ACURecord.h"
#include "platform/ports/Platform.h"
#include "platform/text/SingleJson.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// A journal cannot be read. The text says where it is damaged.
class JournalError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What the first line of every journal says.
struct JournalHeader {
    /// Name of what runs ("velocity-system").
    std::string Kind{};
    OleDate Start{};
    ProgramIdentity Program{};
    /// The unit as the run found it.
    ACURecord Unit{};
    std::int32_t Serial = 0;
};

/// File name of a journal, without folder and ending. @param unit "ACU00301"
std::string JournalName(const std::string& unit, const std::string& kind, OleDate start);

/// The first line; a kind of run may add to it. @param board tells the serial number
SingleJson HeaderJson(const JournalHeader& header, const clsAIB& board);
/// @throws std::runtime_error for a version that is not known, SingleJson::exception
JournalHeader HeaderOf(const SingleJson& line);

/// The last line of a run that has ended.
std::string EndLine(OleDate date, const std::string& verdict,
                    const std::vector<std::string>& files);
/// Whether the text ends with such a line.
bool HasEnded(std::string_view text);

/// The kind that a journal names; empty when its first line cannot be read.
std::string KindOfJournal(std::string_view text);

/// Hands over line by line. What a crash has cut off at the end is passed over.
/// @param take may throw what it likes for a line that is damaged
/// @throws JournalError when a line is damaged, or there is none
void ReadJournalLines(std::string_view text, const std::function<void(const SingleJson&)>& take);

} // namespace ombrix
