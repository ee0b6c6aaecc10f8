#include "spreadsheet/XlsxApplication.h"

#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/XlsxWorkbook.h"
#include "spreadsheet/package/WorkbookXml.h"

#include <fmt/format.h>

namespace ombrix {

namespace {

/// Both the old and the new kind of file tell themselves by their first bytes.
constexpr std::string_view BinaryWorkbook = "\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1";

std::string TemplateName(const std::string& path) {
    const std::string name = xlsx::FileNameOf(path);
    return name.substr(0, name.find_last_of('.'));
}

} // namespace

XlsxApplication::XlsxApplication(Drive& files, DocumentConverter& converter,
                                 std::string currentFolder)
    : m_Files(files), m_Converter(converter), m_CurrentFolder(std::move(currentFolder)) {}

XlsxApplication::~XlsxApplication() = default;

std::string XlsxApplication::ReadTemplate(const std::string& path) {
    std::string content = m_Files.ReadFile(path);
    if (content.starts_with(BinaryWorkbook))
        content = m_Converter.Convert(content, "xls", "xlsx");
    return content;
}

Workbook& XlsxApplication::Add(std::string_view templatePath) {
    const auto path = FindTemplateFile(m_Files, templatePath);
    if (!path)
        throw SpreadsheetError(fmt::format(
            "The template \"{}\" is missing. Put it there, or install the program anew.",
            templatePath));
    try {
        m_Books.push_back(
            std::make_unique<xlsx::XlsxWorkbook>(*this, ReadTemplate(*path), TemplateName(*path)));
        return *m_Books.back();
    } catch (const std::runtime_error& error) {
        throw SpreadsheetError(fmt::format("The template \"{}\" cannot be used: {}. Put a sound "
                                           "copy of it there, or install the program anew.",
                                           *path, error.what()));
    }
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
