#include "spreadsheet/package/XmlPart.h"

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/XmlNames.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

namespace ombrix::xlsx {

namespace {

constexpr std::string_view Replacement = "\xEF\xBF\xBD";

/// Length of the valid UTF-8 character at the front that XML may carry; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned lead = byte(0);
    if (lead < 0x80)
        return lead >= 0x20 || lead == '\t' || lead == '\n' || lead == '\r' ? 1 : 0;
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    std::uint32_t code = lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U)
            return 0;
        code = code << 6U | (byte(i) & 0x3FU);
    }
    const std::uint32_t smallest = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    const bool forbidden = code == 0xFFFE || code == 0xFFFF;
    return code < smallest || code > 0x10FFFF || surrogate || forbidden ? 0 : length;
}

/// The code of a "_xHHHH_" at the front, if there is one.
std::optional<std::uint32_t> EscapedCode(std::string_view text) {
    if (text.size() < 7 || text[0] != '_' || text[1] != 'x' || text[6] != '_')
        return std::nullopt;
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(text.data() + 2, text.data() + 6, code, 16);
    if (error != std::errc() || end != text.data() + 6)
        return std::nullopt;
    return code;
}

} // namespace

std::string CleanText(std::string_view text) {
    std::string clean;
    clean.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        clean += length > 0 ? text.substr(0, length) : Replacement;
        text.remove_prefix(length > 0 ? length : 1);
    }
    return clean;
}

void AppendEscaped(std::string& out, std::string_view text) {
    for (const char c : CleanText(text)) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        case '\r': out += "&#13;"; break;
        default: out += c;
        }
    }
}

void AppendAttribute(std::string& out, std::string_view name, std::string_view value) {
    out.append(" ").append(name).append("=\"");
    AppendEscaped(out, value);
    out += '"';
}

std::string EncodeCellText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto c = static_cast<unsigned char>(text.front());
        if (c < 0x20 && c != '\t' && c != '\n')
            fmt::format_to(std::back_inserter(out), "_x{:04X}_", c);
        else if (EscapedCode(text))
            out += "_x005F_";
        else
            out += text.front();
        text.remove_prefix(1);
    }
    return CleanText(out);
}

std::string DecodeCellText(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        const auto code = EscapedCode(text);
        const bool single = code && *code < 0x80;
        out += single ? static_cast<char>(*code) : text.front();
        text.remove_prefix(single ? 7 : 1);
    }
    return out;
}

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

namespace {

/// Deeper than any real part; keeps recursive work on nodes within the stack.
constexpr int DeepestNesting = 100;
constexpr unsigned ParseFlags =
    pugi::parse_cdata | pugi::parse_escapes | pugi::parse_eol | pugi::parse_ws_pcdata;
constexpr const char* Declaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

bool IsNestedTooDeeply(const pugi::xml_document& document) {
    int depth = 0;
    pugi::xml_node node = document.first_child();
    while (node) {
        if (node.first_child()) {
            node = node.first_child();
            if (++depth > DeepestNesting)
                return true;
            continue;
        }
        while (node && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        node = node.next_sibling();
    }
    return false;
}

pugi::xml_node FirstChildNamed(const pugi::xml_node& parent,
                               std::span<const std::string_view> names) {
    return parent.find_child([&](const pugi::xml_node& child) {
        return std::find(names.begin(), names.end(), child.name()) != names.end();
    });
}

class StringWriter final : public pugi::xml_writer {
  public:
    void write(const void* data, std::size_t size) override {
        Text.append(static_cast<const char*>(data), size);
    }
    std::string Text;
};

} // namespace

pugi::xml_document ParseXml(std::string_view content, std::string_view partName,
                            std::string_view rootName) {
    pugi::xml_document document;
    const auto result = document.load_buffer(content.data(), content.size(), ParseFlags);
    if (!result)
        throw SpreadsheetError(fmt::format("its part {} is damaged ({} at byte {})", partName,
                                           result.description(), result.offset));
    if (IsNestedTooDeeply(document))
        throw SpreadsheetError(fmt::format("its part {} is nested too deeply", partName));
    if (!HasUsualNames(content))
        TakeUsualNames(document, partName);
    if (document.document_element().name() != rootName)
        throw SpreadsheetError(
            fmt::format("its part {} does not hold a \"{}\"", partName, rootName));
    return document;
}

std::string ToXml(const pugi::xml_document& document) {
    StringWriter writer;
    writer.Text = Declaration;
    document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return std::move(writer.Text);
}

std::string ToXml(const pugi::xml_node& node) {
    StringWriter writer;
    node.print(writer, "", pugi::format_raw, pugi::encoding_utf8);
    return std::move(writer.Text);
}

pugi::xml_node ChildInOrder(pugi::xml_node parent, const char* name,
                            std::span<const std::string_view> behind) {
    if (const pugi::xml_node present = parent.child(name))
        return present;
    if (const pugi::xml_node next = FirstChildNamed(parent, behind))
        return parent.insert_child_before(name, next);
    return parent.append_child(name);
}

pugi::xml_node InsertCopyInOrder(pugi::xml_node parent, const pugi::xml_node& element,
                                 std::span<const std::string_view> behind) {
    if (const pugi::xml_node next = FirstChildNamed(parent, behind))
        return parent.insert_copy_before(element, next);
    return parent.append_copy(element);
}

void UpdateCount(pugi::xml_node list) {
    const auto elements = list.children();
    SetAttribute(list, "count",
                 static_cast<unsigned>(std::distance(elements.begin(), elements.end())));
}

} // namespace ombrix::xlsx
