#pragma once

#include "board/Station.h"
#include "board/eprom/EpromWriter.h"
#include "board/eprom/PartialWrite.h"

#include <QGroupBox>

#include <cstdint>
#include <functional>
#include <optional>

class QGridLayout;
class QLineEdit;
class QPushButton;
class QScrollBar;
class QTimer;

namespace ombrix {

class ClickableLabel;
class ValueLabel;

/// Frame "EPROM Interface": shows any word of the current board's EPROM and overwrites one word
/// or every word, or brings a saved content back. Beside it a button polls the pressure register,
/// to load the link.
class EPROMPanel final : public QGroupBox {
    Q_OBJECT

  public:
    EPROMPanel(Station& station, QWidget* parent);

    /// Shows the word at the present address of the board that is current now.
    void ShowBoard();
    /// A new value that cannot be written goes back to 0.
    void ClearError();
    void StopPolling();
    /// Asks whether an EPROM that was written in part is to get back what it held before.
    void OfferRestore(const PartialWrite& write);

  signals:
    /// The EPROM has been written, or a part of it.
    void Written();
    /// The table of the fields is to be opened.
    void FieldsWanted();

  private:
    void AddAddressRows(QGridLayout& grid);
    void AddValueRows(QGridLayout& grid);
    QWidget* MakeCommands();
    void Restore();
    /// @param content is fetched when the writing begins
    void RestoreFrom(const std::function<std::optional<EpromImage>()>& content);
    void ShowEPROMAddress(std::int32_t address);
    /// The address that stands in the field; nothing where that is none.
    std::optional<std::int32_t> GoToAddressTyped() const;
    void GoToAddress();
    void TakeNewValue();
    void ValidateNewValue(std::optional<double> value);
    void WriteValue();
    void WriteAll();
    EpromEnd WriteShown(const std::function<EpromEnd(const EpromProgress&)>& writing);
    void TogglePolling();
    void Poll();

    Station& m_Station;
    QScrollBar* m_Address = nullptr;
    ValueLabel* m_CurrentAddress = nullptr;
    QLineEdit* m_GoTo = nullptr;
    ValueLabel* m_CurrentValue = nullptr;
    ClickableLabel* m_CurrentValueDec = nullptr;
    QLineEdit* m_NewText = nullptr;
    ValueLabel* m_NewValueHex = nullptr;
    ValueLabel* m_AddressError = nullptr;
    ValueLabel* m_Error = nullptr;
    QPushButton* m_Write = nullptr;
    QPushButton* m_WriteAll = nullptr;
    QPushButton* m_Command1 = nullptr;
    QTimer* m_Timer1 = nullptr;
    std::int32_t m_ShownAddress = 0;
    std::int32_t m_NewValue = 0;
};

} // namespace ombrix
