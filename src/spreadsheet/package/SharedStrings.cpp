#include "spreadsheet/package/SharedStrings.h"

#include "spreadsheet/package/XmlPart.h"

namespace ombrix::xlsx {

SharedStrings::SharedStrings(std::string_view xml) {
    const pugi::xml_document document = ParseXml(xml, "xl/sharedStrings.xml", "sst");
    for (const pugi::xml_node item : document.document_element().children("si")) {
        // Either one plain text or a row of runs, each with its own format.
        std::string text = item.child("t").text().get();
        for (const pugi::xml_node run : item.children("r"))
            text += run.child("t").text().get();
        m_Texts.push_back(DecodeCellText(text));
    }
}

std::string SharedStrings::Text(std::uint32_t index) const {
    return index < m_Texts.size() ? m_Texts[index] : "";
}

} // namespace ombrix::xlsx
