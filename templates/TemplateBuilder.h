#pragma once

#include "SheetBuilder.h"

#include <deque>
#include <string>

namespace ombrix::templates {

/// Puts a workbook template together.
class TemplateBuilder {
  public:
    explicit TemplateBuilder(std::string title) : m_Title(std::move(title)) {}

    /// Sheets come in the order in which they are added; the reference stays good.
    SheetBuilder& AddSheet(const std::string& name);
    /// The template's bytes (".xltx").
    std::string Build() const;

  private:
    std::string WorkbookXml() const;
    std::string WorkbookRelationshipsXml() const;
    std::string ContentTypesXml() const;
    std::string PropertiesXml() const;

    std::string m_Title;
    StyleTable m_Styles;
    TextTable m_Texts;
    std::deque<SheetBuilder> m_Sheets;
};

} // namespace ombrix::templates
