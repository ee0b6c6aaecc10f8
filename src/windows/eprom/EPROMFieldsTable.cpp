#include "windows/eprom/EPROMFieldsTable.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/NumberField.h"
#include "windows/widgets/QtText.h"

#include <QEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <fmt/format.h>

#include <algorithm>

namespace ombrix {

namespace {

enum FieldColumn { FieldName, Address, Type, Value, RawWords, FieldColumnCount };

const char* NameOf(EpromKind kind) {
    switch (kind) {
    case EpromKind::Single: return "Single";
    case EpromKind::Date: return "Date";
    case EpromKind::Text: return "Text";
    case EpromKind::Long: break;
    }
    return "Long";
}

/// Edits a cell in a line that turns red while what stands in it is wrong.
class CellEditor final : public QStyledItemDelegate {
  public:
    explicit CellEditor(EPROMFieldsTable& table) : QStyledItemDelegate(&table), m_Table(table) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                          const QModelIndex& index) const override {
        auto* line = Named(new QLineEdit(parent), QStringLiteral("txtField"),
                           ToQt(m_Table.FieldOf(index.row()).Name));
        line->setFrame(false);
        line->setAutoFillBackground(true);
        QObject::connect(line, &QLineEdit::textEdited, &m_Table,
                         [this, line, row = index.row(), column = index.column()] {
                             const QString error = m_Table.Judge(row, column, line->text());
                             ColourEntry(*line, error.isEmpty() ? Entry::Taken : Entry::Wrong);
                             emit m_Table.Judged(error);
                         });
        return line;
    }
    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto& line = dynamic_cast<QLineEdit&>(*editor);
        line.setText(m_Table.TextToEdit(index.row(), index.column()));
        line.selectAll();
    }
    void setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                      const QModelIndex& index) const override {
        m_Table.Enter(index.row(), index.column(), dynamic_cast<QLineEdit&>(*editor).text());
    }
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& /*index*/) const override {
        // A line in the cell, however many the reason below it has.
        editor->setGeometry(option.rect.x(), option.rect.y(), option.rect.width(),
                            editor->sizeHint().height());
    }

  private:
    EPROMFieldsTable& m_Table;
};

} // namespace

EPROMFieldsTable::EPROMFieldsTable(QWidget* parent) : QTableWidget(parent) {
    Named(this, QStringLiteral("tblFields"), tr("Fields of the EPROM"));
    setColumnCount(FieldColumnCount);
    setHorizontalHeaderLabels({tr("Field"), tr("Address"), tr("Type"), tr("Value"), tr("Words")});
    for (int column = 0; column < FieldColumnCount; ++column)
        horizontalHeaderItem(column)->setTextAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // What was entered wrongly, and why, need room beside the words.
    for (const int column : {Value, RawWords})
        horizontalHeader()->setSectionResizeMode(column, QHeaderView::Stretch);
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column) {
        if (column == Value)
            resizeRowsToContents();
    });
    verticalHeader()->hide();
    setSelectionMode(QAbstractItemView::SingleSelection);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setItemDelegate(new CellEditor(*this));
    setToolTip(tr("Type, press F2 or double-click to change a value or its words."));
    ListFields(false);
}

void EPROMFieldsTable::ListFields(bool isFireWire) {
    m_Fields.clear();
    for (EpromField& field : EpromFields()) {
        const bool isIdentity = field.Address == ACUMemoryMap::DataVersion_FireWire && !isFireWire;
        if (field.Part.empty() || isIdentity)
            continue;
        if (field.Name.empty())
            field.Name = field.Part;
        m_Fields.push_back(std::move(field));
    }
    setRowCount(static_cast<int>(m_Fields.size()));
    for (int row = 0; row < rowCount(); ++row) {
        const EpromField& field = FieldOf(row);
        const QString texts[] = {ToQt(field.Name),
                                 ToQt(fmt::format("0x{:03X}", field.Address)),
                                 QLatin1String(NameOf(field.Kind)),
                                 {},
                                 {}};
        for (int column = 0; column < FieldColumnCount; ++column) {
            auto* cell = new QTableWidgetItem(texts[column]);
            if (column < Value)
                cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            setItem(row, column, cell);
        }
        item(row, Address)->setToolTip(QString::number(field.Address));
    }
}

void EPROMFieldsTable::ShowContent(const std::optional<EpromImage>& content, bool isFireWire) {
    m_Content = content;
    const bool listsFireWire = FieldOf(0).Address == ACUMemoryMap::DataVersion_FireWire;
    if (listsFireWire != isFireWire)
        ListFields(isFireWire);
    ForgetWhatIsHeld();
    ShowAll();
    emit EntriesChanged();
}

void EPROMFieldsTable::TakeEntries(bool take) {
    setEditTriggers(take ? DoubleClicked | EditKeyPressed | AnyKeyPressed : NoEditTriggers);
}

void EPROMFieldsTable::Discard() {
    m_Entries.clear();
    ShowAll();
    emit EntriesChanged();
}

void EPROMFieldsTable::ForgetWhatIsHeld() {
    if (!m_Content)
        return;
    std::erase_if(m_Entries, [this](const auto& entered) {
        const auto& [address, what] = entered;
        bool held = what.Entry.IsRight();
        for (std::size_t word = 0; held && word < what.Entry.Words.size(); ++word)
            held = m_Content->Word(address + static_cast<std::int32_t>(word) * EpromWordBytes) ==
                   what.Entry.Words[word];
        return held;
    });
}

EpromWords EPROMFieldsTable::Words() const {
    EpromWords words;
    for (const auto& [address, what] : m_Entries) {
        std::int32_t at = address;
        for (const std::int32_t word : what.Entry.Words)
            words.WriteEPROMLng(at, word);
    }
    return words;
}

EpromImage EPROMFieldsTable::Wanted() const {
    EpromImage wanted = *m_Content;
    const EpromWords words = Words();
    for (const EpromWords::Word& word : words.All())
        wanted.SetWord(word.Address, word.Value);
    return wanted;
}

std::vector<EpromDifference> EPROMFieldsTable::Changes() const {
    return m_Content ? EpromDifferences(*m_Content, Wanted()) : std::vector<EpromDifference>();
}

QString EPROMFieldsTable::WrongEntry() const {
    for (const EpromField& field : m_Fields) {
        const auto entered = m_Entries.find(field.Address);
        if (entered != m_Entries.end() && !entered->second.Entry.IsRight())
            return ToQt(fmt::format("{}: {}", field.Name, entered->second.Entry.Error));
    }
    return {};
}

QString EPROMFieldsTable::TextToEdit(int row, int column) const {
    const EpromField& field = FieldOf(row);
    const auto entered = m_Entries.find(field.Address);
    if (entered != m_Entries.end() && entered->second.Column == column)
        return entered->second.Text;
    if (!m_Content)
        return {};
    const EpromImage wanted = Wanted();
    return ToQt(column == Value ? ValueToEdit(field, wanted) : WordsText(field, wanted));
}

QString EPROMFieldsTable::Judge(int row, int column, const QString& text) const {
    if (text == TextToEdit(row, column) && m_Entries.count(FieldOf(row).Address) == 0)
        return {};
    const std::string typed = text.toStdString();
    return ToQt(
        (column == Value ? ParseValue(FieldOf(row), typed) : ParseWords(FieldOf(row), typed))
            .Error);
}

void EPROMFieldsTable::Enter(int row, int column, const QString& text) {
    // Nothing was changed: what is shown may be less than what the words hold.
    if (!m_Content || text == TextToEdit(row, column))
        return;
    const EpromField& field = FieldOf(row);
    const std::string typed = text.toStdString();
    m_Entries.erase(field.Address);
    if (text != TextToEdit(row, column))
        m_Entries[field.Address] = {
            text, column, column == Value ? ParseValue(field, typed) : ParseWords(field, typed)};
    ForgetWhatIsHeld();
    ShowRow(row);
    resizeRowToContents(row);
    emit EntriesChanged();
}

void EPROMFieldsTable::ShowAll() {
    for (int row = 0; row < rowCount(); ++row)
        ShowRow(row);
    resizeRowsToContents();
}

void EPROMFieldsTable::ShowRow(int row) {
    const EpromField& field = FieldOf(row);
    const auto found = m_Entries.find(field.Address);
    const Entered* entered = found == m_Entries.end() ? nullptr : &found->second;
    if (m_Content) {
        const EpromImage wanted = Wanted();
        for (const int column : {Value, RawWords})
            ShowCell(row, column, entered, wanted);
    } else {
        for (const int column : {Value, RawWords})
            item(row, column)->setText(QStringLiteral("--"));
    }
    QFont marked = font();
    marked.setBold(entered != nullptr);
    item(row, FieldName)->setFont(marked);
    marked.setBold(entered != nullptr && entered->Entry.IsRight());
    for (const int column : {Value, RawWords})
        item(row, column)->setFont(marked);
}

void EPROMFieldsTable::ShowCell(int row, int column, const Entered* entered,
                                const EpromImage& wanted) {
    const EpromField& field = FieldOf(row);
    QTableWidgetItem& cell = *item(row, column);
    const auto text = [&](const EpromImage& image) {
        return ToQt(column == Value ? ShowField(field, image) : WordsText(field, image));
    };
    const bool wrong = entered != nullptr && entered->Column == column && !entered->Entry.IsRight();
    const QString held = text(*m_Content);
    const QString shown = text(wanted) == held ? held : held + QStringLiteral(" → ") + text(wanted);
    cell.setText(wrong ? entered->Text + QLatin1Char('\n') + ToQt(entered->Entry.Error) : shown);
    const QColor ground = palette().color(row % 2 == 0 ? QPalette::Base : QPalette::AlternateBase);
    cell.setForeground(wrong ? QBrush(ReadableColour(WrongRed, ground)) : QBrush());
    // Long ones are cut in the cell.
    cell.setToolTip(entered != nullptr || column == RawWords ? cell.text() : QString());
}

void EPROMFieldsTable::changeEvent(QEvent* event) {
    QTableWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        ShowAll();
}

} // namespace ombrix
