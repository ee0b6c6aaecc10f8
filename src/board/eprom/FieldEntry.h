#pragma once

#include "board/eprom/EpromFields.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix {

/// What an operator has typed for a field.
struct FieldEntry {
    /// As many as the field has; none for a wrong entry.
    std::vector<std::int32_t> Words{};
    /// What is wrong with it, and what to enter instead; empty for a right one.
    std::string Error{};

    bool IsRight() const { return Error.empty(); }
};

/// A value in the field's kind. Long: a whole number. Single: a number with a point. Date:
/// "15/03/2024", "15/03/2024 14:05:09" or "2024-03-15T14:05:09", or "never". Text: as it is, filled
/// up with blanks. All but texts may be given as words too, each beginning with 0x.
FieldEntry ParseValue(const EpromField& field, std::string_view typed);

/// The words of a field, divided by blanks, each in decimal or as 0x….
FieldEntry ParseWords(const EpromField& field, std::string_view typed);

/// What stands in a field, as it is to be edited: ParseValue takes it. Empty where nothing that
/// can be typed stands there.
std::string ValueToEdit(const EpromField& field, const EpromImage& image);

} // namespace ombrix
