#include "spreadsheet/XlsxApplication.h"

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/XlsxWorkbook.h"
#include "spreadsheet/package/TemplateKind.h"
#include "spreadsheet/package/WorkbookXml.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

std::string TemplateName(std::string_view path) {
    const std::string name = xlsx::FileNameOf(path);
    return name.substr(0, name.find_last_of('.'));
}

} // namespace

XlsxApplication::XlsxApplication(Drive& files, DocumentConverter& converter,
                                 std::string currentFolder)
    : m_Files(files), m_Converter(converter), m_CurrentFolder(std::move(currentFolder)) {}

XlsxApplication::~XlsxApplication() = default;

Workbook& XlsxApplication::Add(std::string_view templatePath) {
    const auto path = FindTemplateFile(m_Files, templatePath);
    if (!path)
        throw SpreadsheetError(fmt::format(
            "The template \"{}\" is missing. Put it there, or install the program anew.",
            templatePath));
    try {
        return Open(m_Files.ReadFile(*path), *path);
    } catch (const UnsupportedTemplate& error) {
        throw UnsupportedTemplate(
            fmt::format("The template \"{}\" cannot be used: {}", *path, error.what()));
    } catch (const std::runtime_error& error) {
        throw SpreadsheetError(fmt::format("The template \"{}\" cannot be used: {}. Put a sound "
                                           "copy of it there, or install the program anew.",
                                           *path, error.what()));
    }
}

Workbook& XlsxApplication::Open(std::string content, std::string_view name) {
    if (content.starts_with(xlsx::CompoundFile)) {
        xlsx::CheckCompoundFile(content);
        content = m_Converter.Convert(content, "xls", "xlsx");
    }
    m_Books.push_back(std::make_unique<xlsx::XlsxWorkbook>(*this, content, TemplateName(name)));
    return *m_Books.back();
}

int XlsxApplication::WorkbookCount() const {
    return static_cast<int>(m_Books.size());
}

void XlsxApplication::Quit() {
    m_Books.clear();
}

void XlsxApplication::SetVisible(bool visible) {
    for (const auto& book : m_Books)
        if (visible)
            book->KeepUnsaved();
}

// There is no window whose state or redrawing could matter.
void XlsxApplication::SetWindowState(WindowState /*state*/) {}
void XlsxApplication::SetScreenUpdating(bool /*updating*/) {}

void XlsxApplication::SetCalculation(Calculation calculation) {
    m_Calculation = calculation;
}

std::string XlsxApplication::Version() const {
    return "16.0";
}

void XlsxApplication::Forget(const Workbook& book) {
    std::erase_if(m_Books, [&](const auto& own) { return own.get() == &book; });
}

} // namespace ombrix
