#include "platform/text/DateText.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace ombrix {

std::string DateText(OleDate date, std::string_view pattern) {
    const auto time = date.ToCivil();
    if (!time)
        return "(no date)";
    struct Field {
        std::string_view Letters;
        int Value;
    };
    const std::array<Field, 7> fields = {{{"yyyy", time->Year},
                                          {"yy", time->Year % 100},
                                          {"mm", time->Month},
                                          {"dd", time->Day},
                                          {"hh", time->Hour},
                                          {"nn", time->Minute},
                                          {"ss", time->Second}}};
    std::string text;
    while (!pattern.empty()) {
        const auto* field = std::find_if(fields.begin(), fields.end(), [pattern](const Field& f) {
            return pattern.starts_with(f.Letters);
        });
        if (field == fields.end()) {
            text += pattern.front();
            pattern.remove_prefix(1);
        } else {
            text += fmt::format("{:0{}}", field->Value, field->Letters.size());
            pattern.remove_prefix(field->Letters.size());
        }
    }
    return text;
}

} // namespace ombrix
