#include "spreadsheet/package/Package.h"

#include "platform/text/Text.h"
#include "spreadsheet/Spreadsheet.h"
#include "spreadsheet/package/XmlPart.h"
#include "spreadsheet/package/ZipArchive.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace ombrix::xlsx {

namespace {

constexpr const char* ContentTypesNamespace =
    "http://schemas.openxmlformats.org/package/2006/content-types";
constexpr const char* RelationshipsNamespace =
    "http://schemas.openxmlformats.org/package/2006/relationships";
constexpr const char* RelationshipsType =
    "application/vnd.openxmlformats-package.relationships+xml";
constexpr std::string_view XmlDeclaration =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";

std::string Folder(const std::string& part) {
    return part.substr(0, part.find_last_of('/') + 1); // npos + 1 is 0: no folder
}

std::string FileName(const std::string& part) {
    return part.substr(Folder(part).size());
}

std::string PartExtension(const std::string& part) {
    const std::string name = FileName(part);
    const std::size_t dot = name.find_last_of('.');
    return dot == std::string::npos ? "" : name.substr(dot + 1);
}

std::string RelationshipsPart(const std::string& part) {
    return Folder(part) + "_rels/" + FileName(part) + ".rels";
}

/// Takes "." and ".." out of a path; ".." at the root stays at the root.
std::string Normalised(std::string_view path) {
    std::vector<std::string_view> steps;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view step = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (step == ".." && !steps.empty())
            steps.pop_back();
        if (step != ".." && step != "." && !step.empty())
            steps.push_back(step);
    }
    return fmt::format("{}", fmt::join(steps, "/"));
}

/// "xl/charts/chart" and ".xml" of "xl/charts/chart12.xml".
std::pair<std::string, std::string> AroundNumber(const std::string& part) {
    const std::string extension = PartExtension(part);
    std::string before = part.substr(0, part.size() - extension.size());
    if (before.ends_with('.'))
        before.pop_back();
    before.erase(before.find_last_not_of("0123456789") + 1);
    return {before, extension.empty() ? "" : "." + extension};
}

} // namespace

bool Package::NameOrder::operator()(const std::string& left, const std::string& right) const {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char a, char b) { return LowerCase(a) < LowerCase(b); });
}

bool Relationship::Is(std::string_view lastWord) const {
    return Type.size() > lastWord.size() && Type.ends_with(lastWord) &&
           Type[Type.size() - lastWord.size() - 1] == '/';
}

Package Package::FromArchive(std::string_view archive) {
    Package package;
    for (auto& [name, content] : ReadZip(archive))
        package.SetContent(ReplaceAll(name, "\\", "/"), std::move(content));
    package.ReadContentTypes();
    return package;
}

void Package::ReadContentTypes() {
    if (!Has(ContentTypesPart) && Has("META-INF/manifest.xml"))
        throw UnsupportedTemplate("it is an OpenDocument file. Save it as a template (.xltx).");
    const pugi::xml_document types = ParseXml(Content(ContentTypesPart), ContentTypesPart, "Types");
    for (const pugi::xml_node entry : types.document_element().children()) {
        const std::string type = entry.attribute("ContentType").value();
        if (entry.name() == std::string_view("Default"))
            m_TypeByExtension[entry.attribute("Extension").value()] = type;
        else if (entry.name() == std::string_view("Override"))
            m_TypeByPart[Normalised(entry.attribute("PartName").value())] = type;
    }
    m_TypeByExtension["rels"] = RelationshipsType;
    m_Parts.erase(ContentTypesPart);
}

const std::string& Package::Content(const std::string& part) const {
    const auto found = m_Parts.find(part);
    if (found == m_Parts.end())
        throw SpreadsheetError(fmt::format("its part {} is missing", part));
    return *found->second;
}

void Package::SetContent(const std::string& part, std::string content) {
    m_Parts[part] = std::make_shared<const std::string>(std::move(content));
}

void Package::Remove(const std::string& part) {
    m_Parts.erase(part);
    m_Parts.erase(RelationshipsPart(part));
    m_TypeByPart.erase(part);
}

std::vector<std::string> Package::PartNames() const {
    std::vector<std::string> names;
    std::transform(m_Parts.begin(), m_Parts.end(), std::back_inserter(names),
                   [](const auto& part) { return part.first; });
    return names;
}

std::string Package::ContentType(const std::string& part) const {
    if (const auto found = m_TypeByPart.find(part); found != m_TypeByPart.end())
        return found->second;
    const auto found = m_TypeByExtension.find(PartExtension(part));
    return found == m_TypeByExtension.end() ? "" : found->second;
}

void Package::SetContentType(const std::string& part, std::string type) {
    m_TypeByPart[part] = std::move(type);
}

std::string Package::ContentTypesXml() const {
    std::string xml = fmt::format("{}<Types xmlns=\"{}\">", XmlDeclaration, ContentTypesNamespace);
    const auto append = [&xml](std::string_view element, std::string_view key,
                               const std::string& name, const std::string& type) {
        xml += fmt::format("<{} {}=\"", element, key);
        AppendEscaped(xml, name);
        xml += "\" ContentType=\"";
        AppendEscaped(xml, type);
        xml += "\"/>";
    };
    for (const auto& [extension, type] : m_TypeByExtension)
        append("Default", "Extension", extension, type);
    for (const auto& [part, type] : m_TypeByPart)
        append("Override", "PartName", "/" + part, type);
    return xml + "</Types>";
}

std::vector<Relationship> Package::Relationships(const std::string& part) const {
    const std::string name = RelationshipsPart(part);
    if (!Has(name))
        return {};
    std::vector<Relationship> relationships;
    const pugi::xml_document document = ParseXml(Content(name), name, "Relationships");
    for (const pugi::xml_node entry : document.document_element().children("Relationship"))
        relationships.push_back(
            {entry.attribute("Id").value(), entry.attribute("Type").value(),
             entry.attribute("Target").value(),
             entry.attribute("TargetMode").value() == std::string_view("External")});
    return relationships;
}

void Package::SetRelationships(const std::string& part,
                               const std::vector<Relationship>& relationships) {
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("Relationships");
    SetAttribute(root, "xmlns", RelationshipsNamespace);
    for (const Relationship& relationship : relationships) {
        pugi::xml_node entry = root.append_child("Relationship");
        SetAttribute(entry, "Id", relationship.Id.c_str());
        SetAttribute(entry, "Type", relationship.Type.c_str());
        SetAttribute(entry, "Target", relationship.Target.c_str());
        if (relationship.External)
            SetAttribute(entry, "TargetMode", "External");
    }
    SetContent(RelationshipsPart(part), ToXml(document));
}

std::string Package::Relate(const std::string& from, std::string type, const std::string& to) {
    std::vector<Relationship> relationships = Relationships(from);
    std::string id;
    for (int number = 1; id.empty(); ++number) {
        const std::string candidate = fmt::format("rId{}", number);
        if (std::none_of(relationships.begin(), relationships.end(),
                         [&](const Relationship& other) { return other.Id == candidate; }))
            id = candidate;
    }
    relationships.push_back({id, std::move(type), "/" + to, false});
    SetRelationships(from, relationships);
    return id;
}

std::string Package::TargetPart(const std::string& from, const Relationship& relationship) const {
    if (relationship.External)
        return "";
    std::string target =
        Normalised(relationship.Target.starts_with('/') ? relationship.Target
                                                        : Folder(from) + relationship.Target);
    const auto part = m_Parts.find(target);
    return part == m_Parts.end() ? target : part->first;
}

std::string Package::FreshName(std::string_view before, std::string_view after) const {
    for (int number = 1;; ++number) {
        std::string name = fmt::format("{}{}{}", before, number, after);
        if (!Has(name))
            return name;
    }
}

std::map<std::string, std::string> Package::CopyTree(const std::string& part) {
    std::map<std::string, std::string> copies;
    CopyBranch(part, copies);
    return copies;
}

void Package::CopyBranch(const std::string& part, std::map<std::string, std::string>& copies) {
    const auto [before, after] = AroundNumber(part);
    const std::string copy = FreshName(before, after);
    copies[part] = copy;
    m_Parts[copy] = m_Parts.at(part);
    if (const auto type = m_TypeByPart.find(part); type != m_TypeByPart.end())
        m_TypeByPart[copy] = std::string(type->second);

    std::vector<Relationship> relationships = Relationships(part);
    for (Relationship& relationship : relationships) {
        const std::string target = TargetPart(part, relationship);
        if (!Has(target) || IsPicture(target))
            continue;
        if (!copies.contains(target))
            CopyBranch(target, copies);
        relationship.Target = "/" + copies[target];
    }
    if (!relationships.empty())
        SetRelationships(copy, relationships);
}

} // namespace ombrix::xlsx
