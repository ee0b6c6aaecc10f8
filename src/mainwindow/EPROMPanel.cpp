#include "mainwindow/EPROMPanel.h"

#include "support/Controls.h"
#include "support/ValueLabel.h"

#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

namespace ombrix {

namespace {

ValueLabel* MakeValue(const char* objectName, const QString& meaning, const QString& text,
                      QWidget* parent) {
    auto* label = new ValueLabel(QLatin1String(objectName), meaning, parent);
    label->ShowValue(text);
    return label;
}

} // namespace

EPROMPanel::EPROMPanel(QWidget* parent) : QGroupBox(tr("EPROM Interface"), parent) {
    auto* grid = new QGridLayout(this);
    AddAddressRows(*grid);
    AddValueRows(*grid);
    grid->addWidget(MakeCommands(), grid->rowCount(), 0, 1, 3);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);
    ComesLater(this, tr("shows any word of the board's EPROM and overwrites it."));
}

void EPROMPanel::AddAddressRows(QGridLayout& grid) {
    constexpr int lastWord = 511;
    auto* address = Named(new QScrollBar(Qt::Horizontal, this),
                          QStringLiteral("scrAddressLocation"), tr("Word of the EPROM"));
    address->setRange(0, lastWord);
    address->setFocusPolicy(Qt::StrongFocus);
    const QString unread = QStringLiteral("--");
    grid.addWidget(MakeCaption(tr("Address:"), this), 0, 0);
    grid.addWidget(MakeValue("lblCurrentAddress", tr("Address"), unread, this), 0, 1);
    grid.addWidget(address, 1, 0, 1, 3);
    grid.addWidget(MakeCaption(tr("Current:"), this), 2, 0);
    grid.addWidget(MakeValue("lblCurrentValue", tr("Value, hexadecimal"), unread, this), 2, 1);
    grid.addWidget(MakeValue("lblCurrentValueDec", tr("Value"), unread, this), 2, 2);
}

void EPROMPanel::AddValueRows(QGridLayout& grid) {
    grid.addWidget(MakeCaption(tr("New:"), this), 3, 0);
    grid.addWidget(Named(new QLineEdit(this), QStringLiteral("txtNewValue"), tr("New value")), 3,
                   1);
    grid.addWidget(
        MakeValue("lblNewValueHex", tr("New value, hexadecimal"), QStringLiteral("0"), this), 3, 2);
}

QWidget* EPROMPanel::MakeCommands() {
    auto* commands = new QWidget(this);
    auto* layout = new QHBoxLayout(commands);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(MakeButton(QStringLiteral("cmdWriteValue"), tr("Write"), commands));
    layout->addWidget(MakeButton(QStringLiteral("cmdWriteValueAll"), tr("To All"), commands));
    layout->addWidget(MakeButton(QStringLiteral("Command1"), tr("Command1"), commands));
    layout->addWidget(MakeValue("lblValueError", tr("Error of the new value"), {}, commands), 1);
    return commands;
}

} // namespace ombrix
