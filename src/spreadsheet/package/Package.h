#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// A part's reference to another part ("xl/drawings/drawing1.xml") or to something outside.
struct Relationship {
    std::string Id;
    std::string Type;
    /// As it stands in the file: relative to the part, or from the root with a leading slash.
    std::string Target;
    bool External = false;

    /// Types are told apart by their last word: "worksheet", "drawing", "chart".
    bool Is(std::string_view lastWord) const;
};

/// A package of parts with their content types and relationships. Copies share the content of
/// their parts, so that copying costs little.
class Package {
  public:
    /// @throws SpreadsheetError
    static Package FromArchive(std::string_view archive);

    bool Has(const std::string& part) const { return m_Parts.contains(part); }
    /// @throws SpreadsheetError naming the part when it is missing
    const std::string& Content(const std::string& part) const;
    void SetContent(const std::string& part, std::string content);
    /// Takes the part, its content type and its relationships away.
    void Remove(const std::string& part);
    /// All parts but content types, by name.
    std::vector<std::string> PartNames() const;

    std::string ContentType(const std::string& part) const;
    void SetContentType(const std::string& part, std::string type);
    std::string ContentTypesXml() const;

    /// Relationships of a part; of the package itself when the name is empty.
    std::vector<Relationship> Relationships(const std::string& part) const;
    void SetRelationships(const std::string& part, const std::vector<Relationship>& relationships);
    /// Adds a relationship to another part and gives its id.
    std::string Relate(const std::string& from, std::string type, const std::string& to);
    /// The part that a relationship leads to, by its own name; empty for one that leads outside.
    std::string TargetPart(const std::string& from, const Relationship& relationship) const;

    /// A name that no part has: before, the lowest free number, after.
    std::string FreshName(std::string_view before, std::string_view after) const;

    /// Copies a part and all that it refers to, under new names. Pictures are shared.
    /// @return new names by old names
    std::map<std::string, std::string> CopyTree(const std::string& part);

  private:
    using PartContent = std::shared_ptr<const std::string>;
    /// The format tells parts and extensions apart without regard to case.
    struct NameOrder {
        bool operator()(const std::string& left, const std::string& right) const;
    };

    void ReadContentTypes();
    void CopyBranch(const std::string& part, std::map<std::string, std::string>& copies);

    bool IsPicture(const std::string& part) const {
        return ContentType(part).starts_with("image/");
    }

    std::map<std::string, PartContent, NameOrder> m_Parts;
    std::map<std::string, std::string, NameOrder> m_TypeByExtension;
    std::map<std::string, std::string, NameOrder> m_TypeByPart;
};

/// What the types of the format's own relationships begin with.
inline constexpr const char* RelationshipTypes =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
inline constexpr const char* ContentTypesPart = "[Content_Types].xml";

} // namespace ombrix::xlsx
