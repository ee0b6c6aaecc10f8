#include "windows/main/CalibrationPanel.h"

#include "board/eprom/EpromFields.h"
#include "calibration/run/ACUSetUp.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/NumberField.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace ombrix {

namespace {

struct InitialiseCommand {
    const char* ObjectName;
    const char* Caption;
    const char* WhatItDoes;
    bool Velocity;
    bool Pressure;
};
constexpr std::array<InitialiseCommand, 3> Initialise = {{
    {"cmdVelocity_Init", "Initalise Velocity",
     "Runs two velocity system calibrations and two audits.", true, false},
    {"cmdPressure_Init", "Initalise Pressure",
     "Writes the MFC number; pressure runs are not implemented.", false, true},
    {"cmdACU_InitBoth", "Init Both", "Initialises velocity; pressure runs are not implemented.",
     true, true},
}};

struct IdleCommand {
    const char* ObjectName;
    const char* Caption;
};
constexpr std::array<IdleCommand, 3> Verify = {{
    {"cmdVelocity_PV16", "Run PV16"},
    {"cmdPressure_PV17", "Run PV17"},
    {"cmdACU_PVBoth", "PV Both"},
}};

QPushButton* MakeIdleCommand(const IdleCommand& command, QWidget* parent) {
    auto* button = MakeButton(QLatin1String(command.ObjectName),
                              CalibrationPanel::tr(command.Caption), parent);
    button->setEnabled(false);
    button->setFocusPolicy(Qt::NoFocus);
    button->setToolTip(CalibrationPanel::tr("This button has no function."));
    return button;
}

void Show(ValueLabel& label, const ColouredText& state) {
    label.ShowValue(ToQt(state.Text));
    label.ShowInColour(state.TextColour);
}

ValueLabel* MakeState(const char* objectName, const QString& meaning, QWidget* parent) {
    auto* label = new ValueLabel(QLatin1String(objectName), meaning, parent);
    label->CutToFit();
    return label;
}

} // namespace

CalibrationPanel::CalibrationPanel(QWidget* parent)
    : QGroupBox(tr("Initialisation and Calibration"), parent),
      m_MFCNumber(Named(new QLineEdit(this), QStringLiteral("txtMFCNumber"), tr("MFC number"))),
      m_VelocitySystem(MakeState("lblACUVel_System", tr("Velocity system calibration done"), this)),
      m_VelocityAudit(MakeState("lblACUVel_Audit", tr("Velocity audit calibration done"), this)),
      m_PressureSystem(
          MakeState("lblACUPresure_System", tr("Pressure system calibration done"), this)),
      m_PressureAudit(
          MakeState("lblACUPresure_Audit", tr("Pressure audit calibration done"), this)),
      m_Hint(new ValueLabel(QStringLiteral("lblIntMsg"), tr("What to do"), this)),
      m_ClearProgress(new ValueLabel(QStringLiteral("lblClearProgress"),
                                     tr("Clearing the pressure calibration"), this)) {
    m_Hint->setWordWrap(true);
    m_Hint->setAlignment(Qt::AlignTop);
    m_Hint->ShowValue(tr("To initialise the ACU, simply click on th e'Intialise Velocity' or "
                         "'Intialise Pressure' button."));
    HoldHintLines();
    m_ClearProgress->CutToFit();
    m_ClearProgress->setFixedHeight(fontMetrics().lineSpacing());
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeNumberRow());
    layout->addLayout(MakeCommands());
    layout->addWidget(MakeStateFrame(tr("Velocity"), m_VelocitySystem, m_VelocityAudit));
    layout->addWidget(MakeStateFrame(tr("Pressure"), m_PressureSystem, m_PressureAudit));
    layout->addLayout(MakeRecordCommands());
    layout->addWidget(m_ClearProgress);
    layout->addWidget(m_Hint);
    layout->addStretch(1);
}

void CalibrationPanel::HoldHintLines() {
    // A label whose height follows its width would make the whole window keep its preferred
    // height; room for three lines is enough at any width of the column.
    constexpr int lines = 3;
    QSizePolicy policy = m_Hint->sizePolicy();
    policy.setHeightForWidth(false);
    m_Hint->setSizePolicy(policy);
    m_Hint->setMinimumHeight(fontMetrics().lineSpacing() * lines);
}

QLayout* CalibrationPanel::MakeNumberRow() {
    m_MFCNumber->setText(QLatin1String(ACUSetUp::MFCNumberPlaceholder));
    m_MFCNumber->setToolTip(tr("The MFC number in the ACU's record. The commands that initialise "
                               "write it."));
    m_Commands.push_back(m_MFCNumber);
    m_NumberNote = MakeState("lblMFCNumberNote", tr("MFC number"), this);
    m_NumberNote->setFixedHeight(fontMetrics().height());
    connect(m_MFCNumber, &QLineEdit::textEdited, this, &CalibrationPanel::JudgeNumber);
    auto* grid = new QGridLayout;
    grid->setVerticalSpacing(0);
    grid->addWidget(MakeCaption(tr("MFC Number:"), this), 0, 0);
    grid->addWidget(m_MFCNumber, 0, 1);
    grid->addWidget(m_NumberNote, 1, 0, 1, 2);
    return grid;
}

void CalibrationPanel::JudgeNumber(const QString& typed) {
    const std::string number = typed.toStdString();
    if (!ACURecord::IsMFCNumber(number))
        MarkEntry(*m_MFCNumber, *m_NumberNote, Entry::Wrong,
                  tr("Too long: a unit holds %1 characters").arg(ACUMemoryMap::MFCNumberLength));
    else if (typed != m_NumberInRecord)
        MarkEntry(*m_MFCNumber, *m_NumberNote, Entry::Pending, tr("Not in the record yet"));
    else
        MarkEntry(*m_MFCNumber, *m_NumberNote, Entry::Taken, {});
}

QPushButton* CalibrationPanel::MakeCommand(const char* objectName, const QString& caption,
                                           const QString& whatItDoes) {
    auto* button = MakeButton(QLatin1String(objectName), caption, this);
    button->setToolTip(whatItDoes);
    m_Commands.push_back(button);
    return button;
}

QLayout* CalibrationPanel::MakeCommands() {
    auto* grid = new QGridLayout;
    int column = 0;
    for (const InitialiseCommand& command : Initialise) {
        auto* button = MakeCommand(command.ObjectName, tr(command.Caption), tr(command.WhatItDoes));
        connect(button, &QPushButton::clicked, this, [this, &command] {
            emit InitialisationWanted(m_MFCNumber->text(), command.Velocity, command.Pressure);
        });
        grid->addWidget(button, 0, column++);
    }
    column = 0;
    for (const IdleCommand& command : Verify)
        grid->addWidget(MakeIdleCommand(command, this), 1, column++);
    return grid;
}

QGroupBox* CalibrationPanel::MakeStateFrame(const QString& title, ValueLabel* system,
                                            ValueLabel* audit) {
    auto* frame = new QGroupBox(title, this);
    auto* grid = new QGridLayout(frame);
    constexpr int rowSpacing = 3;
    grid->setVerticalSpacing(rowSpacing);
    grid->addWidget(MakeCaption(tr("System Done:"), frame), 0, 0);
    grid->addWidget(system, 0, 1);
    grid->addWidget(MakeCaption(tr("Audit Done:"), frame), 1, 0);
    grid->addWidget(audit, 1, 1);
    grid->setColumnStretch(1, 1);
    return frame;
}

QLayout* CalibrationPanel::MakeRecordCommands() {
    auto* clear = MakeCommand("cmdClearPV17", tr("Clear Pressure"),
                              tr("Sets the pressure part of the ACU's record to zero."));
    auto* info = MakeCommand("cmdCreateACUInfoDoc", tr("Create ACU Info XLS"),
                             tr("Writes a workbook with the ACU's record and the raw EPROM."));
    connect(clear, &QPushButton::clicked, this, &CalibrationPanel::ClearPressureWanted);
    connect(info, &QPushButton::clicked, this, &CalibrationPanel::InfoWorkbookWanted);
    auto* row = new QHBoxLayout;
    row->addWidget(clear);
    row->addWidget(info);
    return row;
}

void CalibrationPanel::ShowSummary(const CalibrationSummary& summary) {
    Show(*m_VelocitySystem, summary.VelocitySystem);
    Show(*m_VelocityAudit, summary.VelocityAudit);
    Show(*m_PressureSystem, summary.PressureSystem);
    Show(*m_PressureAudit, summary.PressureAudit);
    // A record that cannot be read may be a good one: nobody is invited to write over it.
    m_Hint->setVisible(!summary.ACUInitialised.value_or(true));
    m_NumberInRecord =
        ToQt(summary.ACUInitialised ? summary.MFCNumber : ACUSetUp::MFCNumberPlaceholder);
    m_MFCNumber->setText(m_NumberInRecord);
    JudgeNumber(m_NumberInRecord);
}

void CalibrationPanel::ShowClearProgress(std::int32_t address) {
    m_ClearProgress->ShowValue(tr("Clearing EPROM address %1").arg(address));
}

void CalibrationPanel::HideClearProgress() {
    m_ClearProgress->ShowValue({});
}

void CalibrationPanel::TakeCommands(bool take) {
    for (QWidget* command : m_Commands)
        command->setEnabled(take);
}

} // namespace ombrix
