#pragma once

#include "board/eprom/FieldEntry.h"

#include <QTableWidget>

#include <map>
#include <optional>
#include <vector>

namespace ombrix {

/// The fields of the record in an EPROM, each with name, address, type, value and words, of which
/// the last two can be edited. What was entered stays until it is discarded or the EPROM holds it:
/// right or wrong, whatever the EPROM is read as meanwhile.
class EPROMFieldsTable final : public QTableWidget {
    Q_OBJECT

  public:
    explicit EPROMFieldsTable(QWidget* parent);

    /// Shows what an EPROM holds, or of one that could not be read no values.
    /// @param isFireWire such a board keeps its data version where others have their identity
    void ShowContent(const std::optional<EpromImage>& content, bool isFireWire);
    /// Whether values can be edited now.
    void TakeEntries(bool take);
    /// Forgets what was entered.
    void Discard();

    bool HasEntries() const { return !m_Entries.empty(); }
    /// What is entered rightly, as differences from what the EPROM holds and as words.
    std::vector<EpromDifference> Changes() const;
    EpromWords Words() const;
    /// "Max pressure: Not a number. …" of the first wrong entry; empty where there is none.
    QString WrongEntry() const;

    /// Takes what was entered in a cell; what stands there already is no change.
    void Enter(int row, int column, const QString& text);
    /// What is to be edited in a cell.
    QString TextToEdit(int row, int column) const;
    /// What is wrong with a text in a cell; empty for nothing.
    QString Judge(int row, int column, const QString& text) const;
    const EpromField& FieldOf(int row) const { return m_Fields.at(static_cast<std::size_t>(row)); }

  signals:
    void EntriesChanged();
    /// A text is being entered. @param error what is wrong with it; empty for nothing
    void Judged(const QString& error);

  protected:
    void changeEvent(QEvent* event) override;

  private:
    /// What was entered for a field.
    struct Entered {
        QString Text;
        int Column = 0;
        FieldEntry Entry;
    };

    void ListFields(bool isFireWire);
    void ForgetWhatIsHeld();
    void ShowAll();
    void ShowRow(int row);
    void ShowCell(int row, int column, const Entered* entered, const EpromImage& wanted);
    EpromImage Wanted() const;

    std::vector<EpromField> m_Fields;
    std::optional<EpromImage> m_Content;
    /// By the address of the field.
    std::map<std::int32_t, Entered> m_Entries;
};

} // namespace ombrix
