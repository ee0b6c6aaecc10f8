#pragma once

#include "board/eprom/EpromImage.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ombrix {

/// How the words of a field are to be understood.
enum class EpromKind { Long, Single, Date, Text };

/// A field of the ACU's record, or a word that belongs to none.
struct EpromField {
    /// Of its first word.
    std::int32_t Address = 0;
    std::int32_t Words = 1;
    /// "Channel 1 slope 3"; empty where no field of the ACU stands.
    std::string Name{};
    EpromKind Kind = EpromKind::Long;
};

/// Everything in an EPROM, in the order of the addresses: each of the 512 words belongs to one
/// field. The first two words, which differ between kinds of boards, have no name.
std::vector<EpromField> EpromFields();

/// What stands in a field, for people: a number, a date and time, or a text in quotes.
std::string ShowField(const EpromField& field, const EpromImage& image);

/// A field that two images do not have in common.
struct EpromDifference {
    std::int32_t Address = 0;
    /// As in EpromField.
    std::string Name{};
    std::string Old{};
    std::string New{};
};

/// The fields that differ, in the order of their addresses. The two texts are never the same:
/// where they would be, they are followed by the words in hexadecimal.
std::vector<EpromDifference> EpromDifferences(const EpromImage& before, const EpromImage& after);

/// "1024 MFC number", "1040" for a word without a name.
std::string PlaceText(const EpromDifference& difference);

/// "1024 MFC number: "M1" → "M2""
std::string DifferenceText(const EpromDifference& difference);

} // namespace ombrix
