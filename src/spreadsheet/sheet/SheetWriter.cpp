#include "spreadsheet/sheet/SheetWriter.h"

#include "spreadsheet/Cells.h"
#include "spreadsheet/package/XmlPart.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace ombrix::xlsx {

namespace {

/// About what a cell with a measured value takes.
constexpr std::size_t BytesPerCell = 36;

/// @param attributes with a blank before each
void AppendElement(std::string& out, std::string_view name, std::string_view text,
                   std::string_view attributes = {}) {
    const bool keepsBlanks = !text.empty() && (std::strchr(" \t\n", text.front()) != nullptr ||
                                               std::strchr(" \t\n", text.back()) != nullptr);
    out += fmt::format("<{}{}{}>", name, attributes, keepsBlanks ? " xml:space=\"preserve\"" : "");
    AppendEscaped(out, text);
    out += fmt::format("</{}>", name);
}

/// Writes what stands behind a cell's place: its format, type and value.
class ContentWriter {
  public:
    explicit ContentWriter(std::string& out) : m_Out(out) {}

    void operator()(std::monostate) { m_Out += "/>"; }
    void operator()(EmptyContent) { m_Out += "/>"; }
    void operator()(double value) { Number(value); }
    void operator()(float value) { Number(value); }
    void operator()(std::int32_t value) { Number(value); }
    void operator()(bool value) { Value(" t=\"b\"", value ? "1" : "0"); }
    void operator()(const SharedText& text) { Value(" t=\"s\"", std::to_string(text.Index)); }
    void operator()(const std::string& text) {
        m_Out += " t=\"inlineStr\"><is>";
        AppendElement(m_Out, "t", EncodeCellText(text));
        m_Out += "</is></c>";
    }
    void operator()(const Formula& formula) {
        // No result: the spreadsheet program calculates when it opens the workbook.
        Number("cm", formula.Notes.Cell);
        Number("vm", formula.Notes.Value);
        m_Out += '>';
        std::string attributes;
        if (formula.Array)
            AppendAttribute(attributes.append(" t=\"array\""), "ref", ToText(*formula.Array));
        if (formula.Always)
            attributes += " ca=\"1\"";
        AppendElement(m_Out, "f", formula.Text, attributes);
        m_Out += "</c>";
    }
    void operator()(const RawContent& raw) {
        m_Out.append(raw.Attributes).append(">").append(raw.Xml).append("</c>");
    }

  private:
    void Number(std::string_view attribute, std::uint32_t value) {
        if (value > 0)
            AppendAttribute(m_Out, attribute, std::to_string(value));
    }
    template <class T>
    void Number(T value) {
        if constexpr (std::floating_point<T>) {
            if (!std::isfinite(value)) {
                Value(" t=\"e\"", "#NUM!");
                return;
            }
        }
        m_Out += "><v>";
        AppendNumber(m_Out, value);
        m_Out += "</v></c>";
    }
    void Value(std::string_view type, std::string_view text) {
        m_Out.append(type).append("><v>").append(text).append("</v></c>");
    }

    std::string& m_Out;
};

/// What stands before a cell's value does not change down a column; it is put together once.
class CellOpenings {
  public:
    explicit CellOpenings(const SheetColumns& columns) : m_Columns(columns) {}

    const std::string& Letters(int column) { return At(column).Letters; }
    int ColumnFormat(int column) { return At(column).Format; }

  private:
    struct Opening {
        std::string Letters;
        int Format = 0;
    };
    const Opening& At(int column) {
        const auto index = static_cast<std::size_t>(column);
        if (index >= m_Known.size())
            m_Known.resize(index + 1);
        if (m_Known[index].Letters.empty())
            m_Known[index] = {"<c r=\"" + ColumnLetters(column - 1), m_Columns.Format(column)};
        return m_Known[index];
    }

    const SheetColumns& m_Columns;
    std::vector<Opening> m_Known;
};

class RowsWriter {
  public:
    RowsWriter(const CellStore& cells, std::string& out)
        : m_Cells(cells), m_Openings(cells.Columns()), m_Out(out) {
        for (const ValueBlock& block : cells.Blocks())
            m_Waiting.push_back(&block);
        std::stable_sort(m_Waiting.begin(), m_Waiting.end(),
                         [](const ValueBlock* left, const ValueBlock* right) {
                             return left->Area.First.Row > right->Area.First.Row;
                         });
    }

    void Write() {
        auto row = m_Cells.Rows().begin();
        const auto end = m_Cells.Rows().end();
        while (const int number = NextRow(row != end ? row->first : 0)) {
            TurnToRow(number);
            const bool present = row != end && row->first == number;
            WriteRow(number, present ? &row->second : nullptr);
            if (present)
                ++row;
        }
    }

  private:
    /// The next row that has a cell of its own or one of a block; 0 at the end.
    int NextRow(int nextOwn) const {
        int next = nextOwn;
        const auto consider = [&next](int candidate) {
            next = next == 0 ? candidate : std::min(next, candidate);
        };
        for (const ValueBlock* block : m_Active)
            if (block->Area.Last.Row > m_Row)
                consider(m_Row + 1);
        if (!m_Waiting.empty())
            consider(m_Waiting.back()->Area.First.Row);
        return next;
    }

    /// Keeps the blocks that reach into the row, in the order in which they were written.
    void TurnToRow(int number) {
        m_Row = number;
        std::erase_if(m_Active, [&](const ValueBlock* b) { return b->Area.Last.Row < number; });
        bool added = false;
        for (; !m_Waiting.empty() && m_Waiting.back()->Area.First.Row <= number; added = true) {
            m_Active.push_back(m_Waiting.back());
            m_Waiting.pop_back();
        }
        if (added)
            std::sort(m_Active.begin(), m_Active.end());
    }

    void WriteRow(int number, const Row* row) {
        m_Number.clear();
        AppendNumber(m_Number, number);
        m_Out.append("<row r=\"").append(m_Number).append("\"");
        if (row != nullptr)
            for (const auto& [name, value] : row->Attributes)
                AppendAttribute(m_Out, name, value);
        m_Out += '>';
        PaintRow(row);
        WritePainted(row);
        m_Out += "</row>";
    }

    /// What shows in each column: a cell of its own before a block's value.
    struct Spot {
        const Cell* Own = nullptr;
        const ValueBlock* Block = nullptr;
    };

    Spot& At(int column) {
        const auto index = static_cast<std::size_t>(column);
        if (index >= m_Spots.size())
            m_Spots.resize(index + 1);
        return m_Spots[index];
    }

    void PaintRow(const Row* row) {
        m_Spots.clear();
        for (const ValueBlock* block : m_Active)
            for (int column = block->Area.First.Column; column <= block->Area.Last.Column; ++column)
                At(column).Block = block;
        if (row == nullptr)
            return;
        for (const Cell& cell : row->Cells)
            At(cell.Column).Own = &cell;
    }

    void WritePainted(const Row* row) {
        for (std::size_t index = 1; index < m_Spots.size(); ++index) {
            const Spot& spot = m_Spots[index];
            if (spot.Own == nullptr && spot.Block == nullptr)
                continue;
            const int column = static_cast<int>(index);
            m_Out.append(m_Openings.Letters(column)).append(m_Number).append("\"");
            WriteFormat(spot, row, column);
            const bool own =
                spot.Own != nullptr &&
                (spot.Block == nullptr || !std::holds_alternative<std::monostate>(spot.Own->Value));
            const Content content = own ? Content() : spot.Block->At({m_Row, column});
            std::visit(ContentWriter(m_Out), own ? spot.Own->Value : content);
        }
    }

    void WriteFormat(const Spot& spot, const Row* row, int column) {
        int format = m_Openings.ColumnFormat(column);
        if (row != nullptr && row->Format)
            format = *row->Format;
        if (spot.Own != nullptr)
            format = spot.Own->Format;
        if (format == 0)
            return;
        m_Out += " s=\"";
        AppendNumber(m_Out, format);
        m_Out += '"';
    }

    const CellStore& m_Cells;
    CellOpenings m_Openings;
    std::string& m_Out;
    int m_Row = 0;
    std::string m_Number;
    std::vector<const ValueBlock*> m_Waiting;
    std::vector<const ValueBlock*> m_Active;
    std::vector<Spot> m_Spots;
};

/// The opening tag of the root element with its attributes.
std::string OpeningTag(const pugi::xml_node& element) {
    pugi::xml_document alone;
    pugi::xml_node copy = alone.append_child(element.name());
    for (const pugi::xml_attribute attribute : element.attributes())
        copy.append_copy(attribute);
    std::string tag = ToXml(alone);
    tag.erase(tag.rfind('/'));
    return tag + ">";
}

} // namespace

std::size_t CellCount(const CellStore& cells) {
    std::size_t count = 0;
    for (const auto& [number, row] : cells.Rows())
        count += row.Cells.size() + 1;
    for (const ValueBlock& block : cells.Blocks())
        count += static_cast<std::size_t>(block.Area.Rows()) *
                 static_cast<std::size_t>(block.Area.Columns());
    return count;
}

std::string WriteSheet(const pugi::xml_node& worksheet, const CellStore& cells) {
    std::string xml = OpeningTag(worksheet);
    xml.reserve(CellCount(cells) * BytesPerCell);
    for (const pugi::xml_node child : worksheet.children()) {
        if (std::strcmp(child.name(), "sheetData") != 0) {
            xml += ToXml(child);
            continue;
        }
        xml += "<sheetData>";
        RowsWriter(cells, xml).Write();
        xml += "</sheetData>";
    }
    xml += fmt::format("</{}>", worksheet.name());
    return xml;
}

} // namespace ombrix::xlsx
