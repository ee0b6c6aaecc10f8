#include "spreadsheet/package/XmlPart.h"

#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

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
    if (document.document_element().name() != rootName)
        throw SpreadsheetError(
            fmt::format("its part {} does not hold a \"{}\"", partName, rootName));
    if (IsNestedTooDeeply(document))
        throw SpreadsheetError(fmt::format("its part {} is nested too deeply", partName));
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
