#include "spreadsheet/sheet/FormulaText.h"

#include "platform/text/Text.h"
#include "spreadsheet/Cells.h"
#include "spreadsheet/sheet/CellArea.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace ombrix::xlsx {

namespace {

enum class TokenKind { Other, SheetPrefix, Reference };

struct Token {
    TokenKind Kind;
    std::string_view Text;
};

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsWordCharacter(char c) {
    return IsDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == '.' ||
           c == '$' || c == '\\' || c == '?' || static_cast<unsigned char>(c) >= 0x80;
}

/// One coordinate of a reference: "$A", "A", "$7" or "7".
struct Coordinate {
    bool Absolute = false;
    bool IsColumn = false;
    int Number = 0;
};

std::size_t CoordinateLength(std::string_view text) {
    std::size_t end = !text.empty() && text.front() == '$' ? 1 : 0;
    if (end == text.size())
        return 0;
    const bool digits = IsDigit(text[end]);
    while (end < text.size() && text[end] != '$' && IsDigit(text[end]) == digits)
        ++end;
    return end;
}

/// Number is 0 when the text is no coordinate.
Coordinate ReadCoordinate(std::string_view text) {
    Coordinate result;
    result.Absolute = !text.empty() && text.front() == '$';
    if (result.Absolute)
        text.remove_prefix(1);
    result.IsColumn = !text.empty() && !IsDigit(text.front());
    if (result.IsColumn) {
        result.Number = ColumnNumber(text);
        return result;
    }
    int row = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), row);
    if (error == std::errc() && end == text.data() + text.size() && row >= 1 && row <= MaxRow)
        result.Number = row;
    return result;
}

bool IsCellWord(std::string_view word) {
    const std::size_t split = CoordinateLength(word);
    const Coordinate column = ReadCoordinate(word.substr(0, split));
    const Coordinate row = ReadCoordinate(word.substr(split));
    return column.IsColumn && column.Number > 0 && !row.IsColumn && row.Number > 0;
}

/// The words on both sides of a colon name whole columns ("A:A") or whole rows ("1:3").
bool IsLineRange(std::string_view first, std::string_view second) {
    const Coordinate left = ReadCoordinate(first);
    const Coordinate right = ReadCoordinate(second);
    return left.Number > 0 && right.Number > 0 && left.IsColumn == right.IsColumn;
}

class Tokenizer {
  public:
    explicit Tokenizer(std::string_view formula) : m_Rest(formula) {}

    std::vector<Token> All() {
        std::vector<Token> tokens;
        while (!m_Rest.empty())
            tokens.push_back(Next());
        return tokens;
    }

  private:
    Token Next() {
        const char c = m_Rest.front();
        if (c == '"')
            return Take(TokenKind::Other, QuotedLength('"'));
        if (c == '\'')
            return Quoted();
        if (c == '[')
            return Bracketed();
        if (IsWordCharacter(c))
            return Word();
        return Take(TokenKind::Other, 1);
    }

    Token Take(TokenKind kind, std::size_t length) {
        const Token token{kind, m_Rest.substr(0, length)};
        m_Rest.remove_prefix(token.Text.size());
        return token;
    }

    /// A doubled quote inside quotes stands for the quote itself.
    std::size_t QuotedLength(char quote) const {
        std::size_t end = 1;
        while (end < m_Rest.size()) {
            if (m_Rest[end] != quote)
                ++end;
            else if (end + 1 < m_Rest.size() && m_Rest[end + 1] == quote)
                end += 2;
            else
                return end + 1;
        }
        return m_Rest.size();
    }

    Token Quoted() {
        const std::size_t length = QuotedLength('\'');
        if (At(length) == '!')
            return Take(TokenKind::SheetPrefix, length + 1);
        return Take(TokenKind::Other, length);
    }

    /// Another workbook or a table's column; a sheet name behind it is not ours.
    Token Bracketed() {
        std::size_t end = 0;
        int depth = 0;
        do {
            depth += m_Rest[end] == '[' ? 1 : 0;
            depth -= m_Rest[end] == ']' ? 1 : 0;
            ++end;
        } while (depth > 0 && end < m_Rest.size());
        const std::size_t word = WordLength(end);
        if (At(end + word) == '!')
            end += word + 1;
        return Take(TokenKind::Other, end);
    }

    Token Word() {
        const std::size_t length = WordLength(0);
        const std::string_view word = m_Rest.substr(0, length);
        if (At(length) == '!')
            return Take(TokenKind::SheetPrefix, length + 1);
        if (At(length) == '(')
            return Take(TokenKind::Other, length);
        if (At(length) == ':') {
            const std::size_t second = WordLength(length + 1);
            if (IsLineRange(word, m_Rest.substr(length + 1, second)))
                return Take(TokenKind::Reference, length + 1 + second);
        }
        return Take(IsCellWord(word) ? TokenKind::Reference : TokenKind::Other, length);
    }

    std::size_t WordLength(std::size_t from) const {
        std::size_t end = from;
        while (end < m_Rest.size() && IsWordCharacter(m_Rest[end]))
            ++end;
        return end - from;
    }

    char At(std::size_t index) const { return index < m_Rest.size() ? m_Rest[index] : '\0'; }

    std::string_view m_Rest;
};

/// Appends a coordinate moved along; false when it would leave the sheet.
bool AppendShifted(std::string& out, std::string_view text, int rows, int columns) {
    const Coordinate from = ReadCoordinate(text);
    if (from.Absolute) {
        out += text;
        return true;
    }
    const int number = from.Number + (from.IsColumn ? columns : rows);
    if (number < 1 || number > (from.IsColumn ? MaxColumn : MaxRow))
        return false;
    out += from.IsColumn ? ColumnLetters(number - 1) : std::to_string(number);
    return true;
}

std::string Shifted(std::string_view reference, int rows, int columns) {
    std::string out;
    while (!reference.empty()) {
        if (reference.front() == ':') {
            out += ':';
            reference.remove_prefix(1);
        }
        std::size_t length = CoordinateLength(reference);
        length = std::min(length, reference.find(':'));
        if (!AppendShifted(out, reference.substr(0, length), rows, columns))
            return "#REF!";
        reference.remove_prefix(length);
    }
    return out;
}

std::string Unquoted(std::string_view name) {
    if (name.size() < 2 || name.front() != '\'')
        return std::string(name);
    std::string plain;
    for (std::size_t i = 1; i + 1 < name.size(); ++i) {
        plain += name[i];
        if (name[i] == '\'')
            ++i;
    }
    return plain;
}

} // namespace

std::string ShiftReferences(std::string_view formula, int rows, int columns) {
    std::string out;
    for (const Token& token : Tokenizer(formula).All()) {
        if (token.Kind == TokenKind::Reference)
            out += Shifted(token.Text, rows, columns);
        else
            out += token.Text;
    }
    return out;
}

std::string RenameSheet(std::string_view formula, std::string_view from, std::string_view to) {
    if (formula.find('!') == std::string_view::npos)
        return std::string(formula);
    std::string out;
    for (const Token& token : Tokenizer(formula).All()) {
        const std::string_view name = token.Text.substr(0, token.Text.size() - 1);
        if (token.Kind == TokenKind::SheetPrefix && SameIgnoringCase(Unquoted(name), from))
            out += QuotedSheetName(to) + "!";
        else
            out += token.Text;
    }
    return out;
}

std::string BindNames(std::string_view formula, const std::vector<std::string>& names,
                      std::string_view sheet) {
    const auto isBound = [&names](std::string_view word) {
        return std::any_of(names.begin(), names.end(), [word](const std::string& name) {
            return SameIgnoringCase(name, word);
        });
    };
    std::string out;
    const std::vector<Token> tokens = Tokenizer(formula).All();
    for (auto token = tokens.begin(); token != tokens.end(); ++token) {
        if (token->Text == "[0]!" && token + 1 != tokens.end() && isBound((token + 1)->Text))
            out += QuotedSheetName(sheet) + "!";
        else
            out += token->Text;
    }
    return out;
}

std::string ReachingDown(std::string_view areas, int row) {
    struct Piece {
        std::string Sheet;
        std::string Cells;
    };
    std::vector<Piece> pieces(1);
    for (const Token& token : Tokenizer(areas).All()) {
        if (token.Text == ",")
            pieces.emplace_back();
        else
            (token.Kind == TokenKind::SheetPrefix ? pieces.back().Sheet : pieces.back().Cells) +=
                token.Text;
    }
    std::vector<CellArea> cells;
    for (const Piece& piece : pieces) {
        const auto area = FindArea(piece.Cells);
        if (!area)
            return std::string(areas);
        cells.push_back(*area);
    }
    const auto lowest = std::max_element(cells.begin(), cells.end(), [](auto& left, auto& right) {
        return left.Last.Row < right.Last.Row;
    });
    lowest->Last.Row = std::max(lowest->Last.Row, row);
    std::string out;
    for (std::size_t i = 0; i < pieces.size(); ++i)
        out += (i == 0 ? "" : ",") + pieces[i].Sheet + ToAbsoluteText(cells[i]);
    return out;
}

std::string QuotedSheetName(std::string_view name) {
    std::string quoted = "'";
    for (const char c : name) {
        quoted += c;
        if (c == '\'')
            quoted += c;
    }
    return quoted + "'";
}

} // namespace ombrix::xlsx
