#pragma once

#include <pugixml.hpp>

#include <charconv>
#include <concepts>
#include <span>
#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// Text as it may stand in XML: valid UTF-8 and none of the characters that XML forbids;
/// what is not becomes U+FFFD.
std::string CleanText(std::string_view text);

/// Appends clean text with the characters escaped that mean something in XML.
void AppendEscaped(std::string& out, std::string_view text);

/// Appends an attribute with a blank before it.
void AppendAttribute(std::string& out, std::string_view name, std::string_view value);

/// Text of a cell: characters that XML cannot carry stand as _xHHHH_, the way spreadsheets do.
std::string EncodeCellText(std::string_view text);
std::string DecodeCellText(std::string_view text);

/// Appends the shortest decimal form that reads back as the same number; the number is finite.
template <class T>
requires std::integral<T> || std::floating_point<T>
void AppendNumber(std::string& out, T value) {
    char digits[40];
    const auto result = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, result.ptr);
}

} // namespace ombrix::xlsx

namespace ombrix::xlsx {

/// Reads a part of a package; its names are the usual ones (XmlNames.h), whatever prefixes it came
/// with. @throws SpreadsheetError naming the part when it is no XML, is nested beyond reason or
/// has another root element than expected.
pugi::xml_document ParseXml(std::string_view content, std::string_view partName,
                            std::string_view rootName);

std::string ToXml(const pugi::xml_document& document);
/// One element with its content, as it is written; serves to tell equal elements.
std::string ToXml(const pugi::xml_node& node);

/// The child of that name, made when missing, in its place: before the first child that the
/// schema puts behind it. @param behind names of the elements that come later
pugi::xml_node ChildInOrder(pugi::xml_node parent, const char* name,
                            std::span<const std::string_view> behind);

/// Puts a copy of an element in its place among the children, behind others of its name.
pugi::xml_node InsertCopyInOrder(pugi::xml_node parent, const pugi::xml_node& element,
                                 std::span<const std::string_view> behind);

/// Sets an attribute, making it when missing.
template <class T>
void SetAttribute(pugi::xml_node node, const char* name, const T& value) {
    pugi::xml_attribute attribute = node.attribute(name);
    if (!attribute)
        attribute = node.append_attribute(name);
    attribute.set_value(value);
}

/// Sets the "count" of a list to the number of its elements.
void UpdateCount(pugi::xml_node list);

} // namespace ombrix::xlsx
