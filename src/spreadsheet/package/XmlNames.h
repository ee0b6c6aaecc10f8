#pragma once

#include <pugixml.hpp>

#include <string_view>

namespace ombrix::xlsx {

/// Programs may name a namespace as they like: "<x:worksheet>", "<wsDr>", "<xdr:wsDr>". The engine
/// matches names as spreadsheet programs usually write them: cells and styles without a prefix,
/// "r:", "xdr:", "a:", "c:", "mc:", "x14:", "xm:".

/// Whether every namespace that the text of a part declares has its usual prefix. Reads the text
/// once and touches nothing.
bool HasUsualNames(std::string_view content);

/// Gives every element and attribute of a known namespace its usual name and declares all prefixes
/// at the root. What is unknown keeps its prefix, unless that is another one's usual prefix.
/// @throws SpreadsheetError for a prefix that nothing declares
/// @throws UnsupportedTemplate for the strict variant of the format, which has other namespaces
void TakeUsualNames(pugi::xml_document& document, std::string_view partName);

} // namespace ombrix::xlsx
