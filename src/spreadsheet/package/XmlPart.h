#pragma once

#include <pugixml.hpp>

#include <span>
#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// Reads a part of a package. @throws SpreadsheetError naming the part when it is no XML, is
/// nested beyond reason or has another root element than expected.
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
