#include "spreadsheet/package/XmlNames.h"

#include "spreadsheet/Spreadsheet.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ombrix::xlsx {

namespace {

/// A prefix (nothing for the default) and the namespace that it stands for.
struct Declaration {
    std::string_view Prefix;
    std::string_view Uri;
};

constexpr std::string_view CompatibilityPrefix = "mc";

/// Those without a prefix never meet in one part.
constexpr std::array<Declaration, 11> UsualDeclarations = {
    {{"", "http://schemas.openxmlformats.org/spreadsheetml/2006/main"},
     {"", "http://schemas.openxmlformats.org/package/2006/relationships"},
     {"", "http://schemas.openxmlformats.org/package/2006/content-types"},
     {"", "http://schemas.microsoft.com/office/spreadsheetml/2018/threadedcomments"},
     {"r", "http://schemas.openxmlformats.org/officeDocument/2006/relationships"},
     {"xdr", "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"},
     {"a", "http://schemas.openxmlformats.org/drawingml/2006/main"},
     {"c", "http://schemas.openxmlformats.org/drawingml/2006/chart"},
     {CompatibilityPrefix, "http://schemas.openxmlformats.org/markup-compatibility/2006"},
     {"x14", "http://schemas.microsoft.com/office/spreadsheetml/2009/9/main"},
     {"xm", "http://schemas.microsoft.com/office/excel/2006/main"}}};
constexpr std::string_view StrictNamespaces = "http://purl.oclc.org/ooxml/";
constexpr std::string_view DeclarationWord = "xmlns";

std::optional<std::string_view> UsualPrefix(std::string_view uri) {
    const auto found = std::find_if(UsualDeclarations.begin(), UsualDeclarations.end(),
                                    [uri](const Declaration& usual) { return usual.Uri == uri; });
    return found == UsualDeclarations.end() ? std::nullopt : std::optional(found->Prefix);
}

bool IsUsualPrefix(std::string_view prefix) {
    return std::any_of(UsualDeclarations.begin(), UsualDeclarations.end(),
                       [prefix](const Declaration& usual) { return usual.Prefix == prefix; });
}

/// What stands behind "xmlns": an attribute that declares a namespace; nothing for other text.
std::optional<Declaration> ReadDeclaration(std::string_view text) {
    const std::size_t equals = std::min(text.find('='), text.size());
    std::string_view prefix = text.substr(0, equals);
    if (!prefix.empty() && prefix.front() != ':')
        return std::nullopt;
    prefix.remove_prefix(prefix.empty() ? 0 : 1);
    text.remove_prefix(std::min(equals + 1, text.size()));
    if (text.empty() || (text.front() != '"' && text.front() != '\''))
        return std::nullopt;
    const std::size_t end = text.find(text.front(), 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    return Declaration{prefix, text.substr(1, end - 1)};
}

bool IsUsual(const Declaration& declaration) {
    const auto usual = UsualPrefix(declaration.Uri);
    return usual ? *usual == declaration.Prefix : !IsUsualPrefix(declaration.Prefix);
}

/// "x" and "row" of "x:row".
std::pair<std::string_view, std::string_view> Split(std::string_view name) {
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos)
        return {{}, name};
    return {name.substr(0, colon), name.substr(colon + 1)};
}

std::string Joined(std::string_view prefix, std::string_view local) {
    return prefix.empty() ? std::string(local) : fmt::format("{}:{}", prefix, local);
}

/// Renames a document from its root down.
class Renaming {
  public:
    explicit Renaming(std::string_view partName) : m_PartName(partName) {}

    void Run(pugi::xml_node root) {
        Rename(root, "");
        for (const auto& [uri, prefix] : m_Prefixes)
            if (!prefix.empty())
                Declare(root, prefix, uri);
    }

  private:
    struct Scoped {
        std::string Prefix;
        std::string Uri;
    };

    static void Declare(pugi::xml_node element, const std::string& prefix, const std::string& uri) {
        element
            .prepend_attribute(
                prefix.empty() ? "xmlns" : fmt::format("{}:{}", DeclarationWord, prefix).c_str())
            .set_value(uri.c_str());
    }

    /// @param without the namespace of names without a prefix, as the parent leaves it
    void Rename(pugi::xml_node element, std::string without) {
        const std::size_t outer = m_Scope.size();
        TakeDeclarations(element);
        const auto [prefix, local] = Split(element.name());
        const std::string uri = Resolve(prefix);
        const std::string& usual = m_Prefixes[uri];
        const bool isChoice = usual == CompatibilityPrefix && local == "Choice";
        element.set_name(Joined(usual, local).c_str());
        for (pugi::xml_attribute attribute : element.attributes())
            RenameAttribute(attribute, isChoice);
        if (usual.empty() && uri != without) {
            without = uri;
            Declare(element, "", uri);
        }
        for (const pugi::xml_node child : element.children())
            if (child.type() == pugi::node_element)
                Rename(child, without);
        m_Scope.resize(outer);
    }

    void TakeDeclarations(pugi::xml_node element) {
        pugi::xml_attribute next;
        for (pugi::xml_attribute attribute = element.first_attribute(); attribute;
             attribute = next) {
            next = attribute.next_attribute();
            const auto [word, prefix] = Split(attribute.name());
            const bool isDefault = word.empty() && prefix == DeclarationWord;
            if (!isDefault && word != DeclarationWord)
                continue;
            m_Scope.push_back({isDefault ? "" : std::string(prefix), attribute.value()});
            EnterPrefix(m_Scope.back());
            element.remove_attribute(attribute);
        }
    }

    /// Settles the prefix of a namespace that is met for the first time.
    void EnterPrefix(const Scoped& declared) {
        if (declared.Uri.starts_with(StrictNamespaces))
            throw UnsupportedTemplate(
                "it is saved in the strict variant of the format. Save it as an ordinary template "
                "(.xltx), not as \"Strict Open XML\".");
        if (m_Prefixes.contains(declared.Uri))
            return;
        if (const auto usual = UsualPrefix(declared.Uri)) {
            m_Prefixes.emplace(declared.Uri, *usual);
            return;
        }
        std::string prefix = declared.Prefix;
        for (int number = 1; !declared.Uri.empty() && (IsUsualPrefix(prefix) || IsTaken(prefix));
             ++number)
            prefix = fmt::format("ns{}", number);
        m_Prefixes.emplace(declared.Uri, prefix);
    }

    bool IsTaken(const std::string& prefix) const {
        return std::any_of(m_Prefixes.begin(), m_Prefixes.end(),
                           [&](const auto& entered) { return entered.second == prefix; });
    }

    std::optional<std::string> FindUri(std::string_view prefix) const {
        const auto found =
            std::find_if(m_Scope.rbegin(), m_Scope.rend(),
                         [prefix](const Scoped& declared) { return declared.Prefix == prefix; });
        return found == m_Scope.rend() ? std::nullopt : std::optional(found->Uri);
    }

    /// The namespace of a prefix; that of names without one may be none.
    std::string Resolve(std::string_view prefix) const {
        auto uri = FindUri(prefix);
        if (!uri && !prefix.empty())
            throw SpreadsheetError(fmt::format("its part {} is damaged (the prefix \"{}\" is not "
                                               "declared)",
                                               m_PartName, prefix));
        return uri.value_or("");
    }

    void RenameAttribute(pugi::xml_attribute attribute, bool ofChoice) {
        const auto [prefix, local] = Split(attribute.name());
        if (prefix == "xml")
            return;
        const std::string usual = prefix.empty() ? "" : m_Prefixes[Resolve(prefix)];
        const bool listsPrefixes =
            usual == CompatibilityPrefix || (ofChoice && usual.empty() && local == "Requires");
        if (listsPrefixes)
            attribute.set_value(RenamedList(attribute.value()).c_str());
        if (usual != prefix)
            attribute.set_name(Joined(usual, local).c_str());
    }

    /// A list of prefixes or of names with prefixes, such as "x14ac xr", less what nothing uses.
    std::string RenamedList(std::string_view list) {
        constexpr std::string_view blanks = " \t\r\n";
        std::string renamed;
        for (std::size_t begin = list.find_first_not_of(blanks); begin != std::string_view::npos;
             begin = list.find_first_not_of(blanks)) {
            list.remove_prefix(begin);
            const std::string_view word = list.substr(0, list.find_first_of(blanks));
            list.remove_prefix(word.size());
            const std::size_t colon = std::min(word.find(':'), word.size());
            const auto uri = FindUri(word.substr(0, colon));
            if (!uri)
                continue;
            renamed += renamed.empty() ? "" : " ";
            renamed += m_Prefixes[*uri];
            renamed += word.substr(colon);
        }
        return renamed;
    }

    std::string_view m_PartName;
    /// What is declared where the renaming is; inner declarations stand behind outer ones.
    std::vector<Scoped> m_Scope;
    /// The new prefixes by namespace.
    std::map<std::string, std::string> m_Prefixes;
};

} // namespace

bool HasUsualNames(std::string_view content) {
    std::size_t at = content.find(DeclarationWord);
    if (at == std::string_view::npos)
        return false;
    for (; at != std::string_view::npos; at = content.find(DeclarationWord, at + 1)) {
        const auto declaration = ReadDeclaration(content.substr(at + DeclarationWord.size()));
        if (!declaration || !IsUsual(*declaration))
            return false;
    }
    return true;
}

void TakeUsualNames(pugi::xml_document& document, std::string_view partName) {
    Renaming(partName).Run(document.document_element());
}

} // namespace ombrix::xlsx
