#include "spreadsheet/package/PartReferences.h"

#include "platform/text/Text.h"
#include "spreadsheet/package/Guid.h"
#include "spreadsheet/package/XmlPart.h"

namespace ombrix::xlsx {

namespace {

using Change = std::function<std::string(std::string_view)>;

bool IsChart(const std::string& type) {
    return type.ends_with("drawingml.chart+xml");
}

bool IsDrawing(const std::string& type) {
    return type.ends_with("drawing+xml");
}

bool IsThread(const std::string& type) {
    return type.ends_with(".threadedcomments+xml");
}

/// Charts name cells in "f" elements, those of later years also in "sqref" of other namespaces.
void ChangeChart(Package& package, const std::string& part, const Change& change) {
    // A chart of ours has no words yet.
    if (package.Content(part).empty())
        return;
    static const pugi::xpath_query references(
        "//*[local-name()='f' or local-name()='sqref'][not(*)]");
    const pugi::xml_document chart = ParseXml(package.Content(part), part, "c:chartSpace");
    for (const pugi::xpath_node& found : references.evaluate_node_set(chart)) {
        pugi::xml_text text = found.node().text();
        text.set(change(text.get()).c_str());
    }
    package.SetContent(part, ToXml(chart));
}

/// A shape may show the text of a cell.
void ChangeShapes(Package& package, const std::string& part, const Change& change) {
    if (package.Content(part).find("textlink=\"") == std::string::npos)
        return;
    const pugi::xml_document drawing = ParseXml(package.Content(part), part, "xdr:wsDr");
    for (const pugi::xpath_node& found : drawing.select_nodes("//xdr:sp/@textlink"))
        found.attribute().set_value(change(found.attribute().value()).c_str());
    package.SetContent(part, ToXml(drawing));
}

/// A shape or a picture may lead to a cell: "#Overview!A1", its blanks as in addresses.
void ChangeLinks(Package& package, const std::string& part, const Change& change) {
    std::vector<Relationship> relationships = package.Relationships(part);
    bool changed = false;
    for (Relationship& relationship : relationships) {
        if (!relationship.Is("hyperlink") || !relationship.Target.starts_with('#'))
            continue;
        const std::string before = ReplaceAll(relationship.Target.substr(1), "%20", " ");
        const std::string after = change(before);
        if (after == before)
            continue;
        relationship.Target = "#" + ReplaceAll(after, " ", "%20");
        changed = true;
    }
    if (changed)
        package.SetRelationships(part, relationships);
}

} // namespace

void RequireReadable(const Package& package) {
    for (const std::string& part : package.PartNames()) {
        package.Relationships(part);
        const std::string type = package.ContentType(part);
        const char* root = IsChart(type)     ? "c:chartSpace"
                           : IsDrawing(type) ? "xdr:wsDr"
                           : IsThread(type)  ? "ThreadedComments"
                                             : nullptr;
        if (root != nullptr)
            ParseXml(package.Content(part), part, root);
    }
}

void ChangePartReferences(Package& package, const std::vector<std::string>& parts,
                          const Change& change) {
    for (const std::string& part : parts) {
        const std::string type = package.ContentType(part);
        if (IsChart(type)) {
            ChangeChart(package, part, change);
        } else if (IsDrawing(type)) {
            ChangeShapes(package, part, change);
            ChangeLinks(package, part, change);
        }
    }
}

void GiveCommentsOwnIds(Package& package, const std::map<std::string, std::string>& copies) {
    std::vector<std::string> parts;
    std::map<std::string, std::string> ids;
    for (const auto& [original, part] : copies) {
        const std::string type = package.Has(part) ? package.ContentType(part) : "";
        const bool threaded = IsThread(type);
        if (threaded || type.ends_with(".comments+xml"))
            parts.push_back(part);
        if (!threaded)
            continue;
        const pugi::xml_document threads =
            ParseXml(package.Content(part), part, "ThreadedComments");
        for (const pugi::xml_node comment :
             threads.document_element().children("threadedComment")) {
            const std::string id = comment.attribute("id").value();
            if (const std::string own = DerivedGuid(id, part); own != id)
                ids.emplace(id, own);
        }
    }
    for (const std::string& part : parts) {
        std::string content = package.Content(part);
        for (const auto& [id, own] : ids)
            content = ReplaceAll(content, id, own);
        package.SetContent(part, std::move(content));
    }
}

} // namespace ombrix::xlsx
