#include "soak/FileWatch.h"

#include "benchtests/BenchTest.h"
#include "platform/os/FolderDrive.h"
#include "spreadsheet/package/ZipArchive.h"

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <exception>
#include <set>
#include <utility>

namespace ombrix::soak {

namespace {

namespace fs = std::filesystem;

std::string FaultOfLines(const std::string& text, std::string_view lineEnd) {
    if (!text.ends_with(lineEnd))
        return "the last line is cut";
    return text.find('\0') == std::string::npos ? "" : "zero bytes between the lines";
}

/// A table may have several headings; its last line must be like one before it, or say why it ends
/// early.
std::string FaultOfTable(const std::string& text) {
    if (std::string fault = FaultOfLines(text, "\r\n"); !fault.empty())
        return fault;
    std::set<std::ptrdiff_t> counts;
    std::ptrdiff_t last = 0;
    std::string_view lastLine;
    std::size_t lines = 0;
    for (std::size_t start = 0; start < text.size(); ++lines) {
        const std::size_t end = text.find("\r\n", start);
        if (lines > 0)
            counts.insert(last);
        lastLine = std::string_view(text).substr(start, end - start);
        last = std::count(lastLine.begin(), lastLine.end(), ',');
        start = end + 2;
    }
    const bool saysWhy = lastLine == CancelledLine || lastLine.starts_with(StoppedLine(""));
    return saysWhy || lines < 3 || counts.contains(last) ? "" : "the last line has other columns";
}

std::string FaultOfWorkbook(const std::string& bytes) {
    const auto parts = xlsx::ReadZip(bytes);
    const auto types = parts.find("[Content_Types].xml");
    if (types == parts.end() || !parts.contains("xl/workbook.xml"))
        return "no package of a workbook";
    for (const auto& [name, content] : parts) {
        pugi::xml_document part;
        if ((name.ends_with(".xml") || name.ends_with(".rels")) &&
            !part.load_buffer(content.data(), content.size()))
            return "its part " + name + " is damaged";
    }
    pugi::xml_document list;
    list.load_buffer(types->second.data(), types->second.size());
    for (const pugi::xml_node part : list.child("Types").children("Override")) {
        const std::string name = std::string(part.attribute("PartName").value()).substr(1);
        if (!parts.contains(name))
            return "its part " + name + " is missing";
    }
    return "";
}

std::string FaultOfContent(const std::string& extension, const std::string& content) {
    if (extension == ".csv")
        return FaultOfTable(content);
    if (extension == ".txt")
        return FaultOfLines(content, "\r\n");
    if (extension == ".log" || extension == ".jsonl")
        return FaultOfLines(content, "\n");
    if (extension == ".xls" || extension == ".xlsx")
        return FaultOfWorkbook(content);
    constexpr std::array<std::string_view, 4> others = {".bin", ".bit", ".lock", ".running"};
    return std::find(others.begin(), others.end(), extension) != others.end()
               ? ""
               : "something half-made has been left";
}

std::string FaultOf(const fs::path& file, bool mayBeEmpty) {
    try {
        const std::string content = ReadWholeFile(file);
        if (content.empty() && mayBeEmpty)
            return "";
        if (file.filename().string().ends_with("_samples.csv") && !mayBeEmpty)
            return "samples that are in their table";
        return FaultOfContent(file.extension(), content);
    } catch (const std::exception& error) {
        return error.what();
    }
}

} // namespace

void FileWatch::Check(bool diskWasFull, Violations& violations) {
    std::vector<fs::path> passing;
    for (const auto& entry : fs::recursive_directory_iterator(m_Root)) {
        if (!entry.is_regular_file())
            continue;
        const std::uintmax_t size = entry.file_size();
        auto [known, isNew] = m_Sizes.emplace(entry.path().string(), size);
        if (!isNew && std::exchange(known->second, size) == size)
            continue;
        ++m_Looked;
        const std::string fault = FaultOf(entry.path(), diskWasFull);
        if (!fault.empty())
            violations.push_back(entry.path().string() + ": " + fault);
        const std::string extension = entry.path().extension();
        if (extension == ".csv" || extension == ".xls" || extension == ".xlsx" ||
            extension == ".txt")
            passing.push_back(entry.path());
    }
    for (const fs::path& file : passing) {
        fs::remove(file);
        m_Sizes.erase(file.string());
    }
}

} // namespace ombrix::soak
