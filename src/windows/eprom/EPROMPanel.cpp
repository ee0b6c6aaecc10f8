#include "windows/eprom/EPROMPanel.h"

#include "board/eprom/EpromGuard.h"
#include "board/eprom/FieldEntry.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "windows/eprom/RestoreEPROMWindow.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/NumberField.h"
#include "windows/widgets/QtText.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>

#include <cmath>
#include <limits>

namespace ombrix {

namespace {

constexpr int WordBytes = EpromWordBytes;
constexpr int LastWord = EpromBytes / WordBytes - 1;
constexpr int PollInterval_ms = 100;

ValueLabel* MakeValue(const char* objectName, const QString& meaning, const QString& text,
                      QWidget* parent) {
    auto* label = new ValueLabel(QLatin1String(objectName), meaning, parent);
    label->ShowValue(text);
    return label;
}

} // namespace

EPROMPanel::EPROMPanel(Station& station, QWidget* parent)
    : QGroupBox(tr("EPROM Interface"), parent), m_Station(station), m_Timer1(new QTimer(this)) {
    m_Timer1->setObjectName(QStringLiteral("Timer1"));
    m_Timer1->setInterval(PollInterval_ms);
    connect(m_Timer1, &QTimer::timeout, this, &EPROMPanel::Poll);
    auto* grid = new QGridLayout(this);
    AddAddressRows(*grid);
    AddValueRows(*grid);
    grid->addWidget(MakeCommands(), grid->rowCount(), 0, 1, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    TakeNewValue();
}

void EPROMPanel::AddAddressRows(QGridLayout& grid) {
    m_Address = Named(new QScrollBar(Qt::Horizontal, this), QStringLiteral("scrAddressLocation"),
                      tr("Word of the EPROM"));
    m_Address->setRange(0, LastWord);
    m_Address->setFocusPolicy(Qt::StrongFocus);
    m_Address->setToolTip(tr("The word that is shown, and written by \"Write\""));
    connect(m_Address, &QScrollBar::valueChanged, this, [this](int word) {
        if (GoToAddressTyped() != word * WordBytes)
            m_GoTo->clear();
        Guarded(m_Station.World.Messages, [this, word] { ShowEPROMAddress(word * WordBytes); });
    });
    m_CurrentAddress = MakeValue("lblCurrentAddress", tr("Address"), QStringLiteral("0"), this);
    m_CurrentValue =
        MakeValue("lblCurrentValue", tr("Value, hexadecimal"), QStringLiteral("AABBCCDD"), this);
    m_CurrentValueDec = new ClickableLabel(QStringLiteral("lblCurrentValueDec"), tr("Value"), this);
    m_CurrentValueDec->ShowValue(QStringLiteral("--"));
    connect(m_CurrentValueDec, &ClickableLabel::Clicked, this,
            [this] { m_Station.World.Messages.Ask({m_CurrentValueDec->text().toStdString()}); });
    m_GoTo = Named(new QLineEdit(this), QStringLiteral("txtAddress"), tr("Go to address"));
    m_GoTo->setPlaceholderText(tr("go to"));
    m_GoTo->setToolTip(tr("Shows the word at an address: 0 to 2044, or 0x0 to 0x7FC."));
    connect(m_GoTo, &QLineEdit::textChanged, this, &EPROMPanel::GoToAddress);
    auto* address = new QHBoxLayout;
    address->addWidget(m_CurrentAddress);
    address->addWidget(m_GoTo, 1);
    grid.addWidget(MakeCaption(tr("Address:"), this), 0, 0);
    grid.addLayout(address, 0, 1);
    auto* fields = MakeButton(QStringLiteral("cmdFields"), tr("Fields…"), this);
    fields->setToolTip(tr("Shows the fields of the record with their values, to be edited."));
    connect(fields, &QPushButton::clicked, this, &EPROMPanel::FieldsWanted);
    auto* restore = MakeButton(QStringLiteral("cmdRestore"), tr("Restore…"), this);
    restore->setToolTip(
        tr("Lists saved contents, shows what one would change, and brings it back."));
    connect(restore, &QPushButton::clicked, this, &EPROMPanel::Restore);
    grid.addWidget(fields, 0, 2);
    grid.addWidget(m_Address, 1, 0, 1, 2);
    grid.addWidget(restore, 1, 2);
    grid.addWidget(MakeCaption(tr("Current:"), this), 2, 0);
    grid.addWidget(m_CurrentValue, 2, 1);
    grid.addWidget(m_CurrentValueDec, 2, 2);
    SetTabOrder({m_GoTo, fields, m_Address, restore, m_CurrentValueDec});
}

void EPROMPanel::AddValueRows(QGridLayout& grid) {
    m_NewText = Named(new QLineEdit(QStringLiteral("0"), this), QStringLiteral("txtNewValue"),
                      tr("New value"));
    connect(m_NewText, &QLineEdit::textChanged, this, &EPROMPanel::TakeNewValue);
    m_NewValueHex =
        MakeValue("lblNewValueHex", tr("New value, hexadecimal"), QStringLiteral("0"), this);
    grid.addWidget(MakeCaption(tr("New:"), this), 3, 0);
    grid.addWidget(m_NewText, 3, 1);
    grid.addWidget(m_NewValueHex, 3, 2);
    m_Error = MakeValue("lblValueError", tr("Error of the new value"), {}, this);
    m_Error->setFixedHeight(m_Error->fontMetrics().height());
    m_AddressError = MakeValue("lblAddressError", tr("Error of the address"), {}, this);
    m_AddressError->CutToFit();
    auto* errors = new QHBoxLayout;
    errors->addWidget(m_AddressError, 1);
    errors->addWidget(m_Error);
    grid.addLayout(errors, 4, 0, 1, 3);
}

QWidget* EPROMPanel::MakeCommands() {
    auto* commands = new QWidget(this);
    auto* layout = new QHBoxLayout(commands);
    layout->setContentsMargins(0, 0, 0, 0);
    m_Write = MakeButton(QStringLiteral("cmdWriteValue"), tr("Write"), commands);
    m_WriteAll = MakeButton(QStringLiteral("cmdWriteValueAll"), tr("To All"), commands);
    m_Command1 = MakeButton(QStringLiteral("Command1"), tr("Not Recording"), commands);
    m_Write->setToolTip(tr("Writes the new value to the word that is shown."));
    m_WriteAll->setToolTip(tr("Writes the new value to every word of the EPROM."));
    m_Command1->setToolTip(tr("Reads the pressure register ten times a second; nothing is shown."));
    connect(m_Write, &QPushButton::clicked, this, &EPROMPanel::WriteValue);
    connect(m_WriteAll, &QPushButton::clicked, this, &EPROMPanel::WriteAll);
    connect(m_Command1, &QPushButton::clicked, this, &EPROMPanel::TogglePolling);
    layout->addWidget(m_Write);
    layout->addWidget(m_WriteAll);
    layout->addWidget(m_Command1);
    layout->addStretch(1);
    return commands;
}

void EPROMPanel::ShowBoard() {
    ShowEPROMAddress(m_ShownAddress);
}

void EPROMPanel::ClearError() {
    if (!m_Error->text().isEmpty())
        m_NewText->setText(QStringLiteral("0"));
}

void EPROMPanel::ShowEPROMAddress(std::int32_t address) {
    m_Address->setValue(address / WordBytes);
    m_ShownAddress = address;
    m_CurrentAddress->ShowValue(QString::number(address));
    std::int32_t word = 0;
    const AIBStatus status = m_Station.CurrentAIB->ReadEPROM(address, word);
    if (status != Status::NoError) {
        const QString reason = ToQt(AIB::AIBErrorStr(status));
        m_CurrentValue->ShowFailure(reason);
        m_CurrentValueDec->ShowFailure(reason);
        return;
    }
    m_CurrentValue->ShowValue(ToQt(HexText(word)));
    m_CurrentValueDec->ShowValue(QString::number(word));
}

std::optional<std::int32_t> EPROMPanel::GoToAddressTyped() const {
    const FieldEntry entry = ParseValue(EpromField{}, m_GoTo->text().toStdString());
    if (!entry.IsRight())
        return std::nullopt;
    const std::int32_t address = entry.Words.front();
    const bool isAddress = address >= 0 && address < EpromBytes && address % WordBytes == 0;
    return isAddress ? std::optional(address) : std::nullopt;
}

void EPROMPanel::GoToAddress() {
    const auto address = GoToAddressTyped();
    const bool wrong = !address && !m_GoTo->text().isEmpty();
    if (address)
        Guarded(m_Station.World.Messages, [&] { ShowEPROMAddress(*address); });
    MarkEntry(*m_GoTo, *m_AddressError, wrong ? Entry::Wrong : Entry::Taken,
              wrong ? tr("No address: 0 to 2044 in steps of 4, or 0x0 to 0x7FC.") : QString());
    // What is about to be written must not go to another word than the one that is meant.
    TakeNewValue();
}

void EPROMPanel::TakeNewValue() {
    ValidateNewValue(ParseNumber(m_NewText->text().toStdString()));
}

void EPROMPanel::ValidateNewValue(std::optional<double> value) {
    constexpr double largest = std::numeric_limits<std::int32_t>::max();
    const double rounded = value ? std::nearbyint(*value) : 0.0;
    const bool inRange = value && rounded >= 0.0 && rounded <= largest;
    // What is no number must not leave an earlier value ready to be written.
    MarkEntry(*m_NewText, *m_Error, inRange ? Entry::Taken : Entry::Wrong,
              !value    ? tr("Not a Number")
              : inRange ? QString()
                        : tr("Out of Range"));
    m_NewValue = inRange ? RoundHalfEven(rounded) : 0;
    m_Write->setEnabled(inRange && (m_GoTo->text().isEmpty() || GoToAddressTyped()));
    m_WriteAll->setEnabled(inRange);
    m_NewValueHex->ShowValue(ToQt(HexText(m_NewValue)));
}

void EPROMPanel::WriteValue() {
    WriteShown([this](const EpromProgress& /*progress*/) {
        WriteEPROMWord(m_Station, m_ShownAddress, m_NewValue);
        return EpromEnd::Done;
    });
}

void EPROMPanel::WriteAll() {
    const EpromEnd ended = WriteShown([this](const EpromProgress& progress) {
        return WriteWholeEPROM(m_Station, m_NewValue, progress);
    });
    if (ended == EpromEnd::Done)
        m_Station.World.Messages.Ask({"All locations written"});
}

void EPROMPanel::Restore() {
    RestoreFrom([this]() -> std::optional<EpromImage> {
        RestoreEPROMWindow form(m_Station, this);
        if (form.exec() != QDialog::Accepted)
            return std::nullopt;
        return form.Content();
    });
}

void EPROMPanel::OfferRestore(const PartialWrite& write) {
    Platform& world = m_Station.World;
    Message question{PartialWriteWarning(*m_Station.CurrentAIB, write) +
                         "\r\n\r\nIs that content to be restored now?",
                     MessageIcon::Warning, MessageButtons::YesNo};
    question.DefaultsToRefusal = true;
    if (world.Messages.Ask(question) == Answer::Yes)
        RestoreFrom([&] { return ReadEpromFile(write.Backup); });
}

void EPROMPanel::RestoreFrom(const std::function<std::optional<EpromImage>()>& content) {
    const EpromEnd ended = WriteShown([&](const EpromProgress& progress) {
        const std::optional<EpromImage> image = content();
        if (!image)
            return EpromEnd::Declined;
        // The operator has agreed already.
        return RestoreEPROM(
            m_Station, *image, [](const auto& /*differences*/) { return true; }, progress);
    });
    if (ended == EpromEnd::Done)
        m_Station.World.Messages.Ask({"The EPROM holds what the file holds."});
}

EpromEnd EPROMPanel::WriteShown(const std::function<EpromEnd(const EpromProgress&)>& writing) {
    if (m_Station.Procedures.Running())
        return EpromEnd::Declined;
    EpromEnd ended = EpromEnd::BrokenOff;
    Guarded(m_Station.World.Messages, [&] {
        ended = writing([this](std::int32_t address) {
            m_Error->ShowValue(QString::number(address));
            return true;
        });
    });
    // Also after a failure: what shows is what the EPROM holds.
    TakeNewValue();
    ShowEPROMAddress(m_ShownAddress);
    if (ended != EpromEnd::Declined && !m_Station.World.Events.ProgramEnding())
        Guarded(m_Station.World.Messages, [this] { emit Written(); });
    return ended;
}

void EPROMPanel::StopPolling() {
    if (m_Timer1->isActive())
        TogglePolling();
}

void EPROMPanel::TogglePolling() {
    const bool start = !m_Timer1->isActive();
    start ? m_Timer1->start() : m_Timer1->stop();
    m_Command1->setText(start ? tr("Recording...") : tr("Not Recording"));
}

void EPROMPanel::Poll() {
    // A running procedure has the board to itself.
    if (m_Station.Procedures.Running())
        return;
    Guarded(m_Station.World.Messages, [this] {
        std::int32_t value = 0;
        m_Station.CurrentAIB->ReadReg(AIB::PressureRegister, value);
    });
}

} // namespace ombrix
