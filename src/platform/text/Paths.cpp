#include "platform/text/Paths.h"

#include <algorithm>
#include <string_view>

namespace ombrix {

std::string FileNamePart(std::string text) {
    // A point would turn a folder's name into a file's, two of them lead out of the folder.
    std::replace_if(
        text.begin(), text.end(),
        [](char character) {
            constexpr unsigned char firstPrintable = 0x20;
            constexpr unsigned char deleted = 0x7F;
            const auto code = static_cast<unsigned char>(character);
            return code < firstPrintable || code == deleted ||
                   std::string_view(R"(\/:*?"<>|.)").find(character) != std::string_view::npos;
        },
        '_');
    return text;
}

} // namespace ombrix
