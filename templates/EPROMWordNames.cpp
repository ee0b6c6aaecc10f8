#include "EPROMWordNames.h"

#include "board/eprom/EpromFields.h"

#include <fmt/format.h>

namespace ombrix::templates {

namespace {

const char* KindText(const EpromField& field) {
    if (field.Name.empty())
        return "";
    switch (field.Kind) {
    case EpromKind::Single: return "Single";
    case EpromKind::Date: return "Date";
    case EpromKind::Text: return "Text";
    case EpromKind::Long: break;
    }
    return "Long";
}

std::string WordName(const EpromField& field, std::int32_t word) {
    constexpr std::int32_t charactersPerWord = EpromWordBytes;
    if (field.Kind == EpromKind::Date)
        return field.Name + (word == 0 ? " (low)" : " (high)");
    if (field.Kind == EpromKind::Text)
        return fmt::format("{} ({}-{})", field.Name, word * charactersPerWord + 1,
                           (word + 1) * charactersPerWord);
    return field.Name;
}

} // namespace

std::vector<EPROMWord> EPROMWords() {
    std::vector<EPROMWord> words;
    for (EpromField field : EpromFields()) {
        if (field.Address == ACUMemoryMap::DataVersion_USB)
            field.Name.clear(); // the report names it by the kind of the board
        for (std::int32_t word = 0; word < field.Words; ++word)
            words.push_back(
                {field.Address + word * EpromWordBytes, WordName(field, word), KindText(field)});
    }
    return words;
}

} // namespace ombrix::templates
