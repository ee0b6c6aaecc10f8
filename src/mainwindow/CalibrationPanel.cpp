#include "mainwindow/CalibrationPanel.h"

#include "support/Controls.h"
#include "support/QtText.h"
#include "support/ValueLabel.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>

namespace ombrix {

namespace {

struct CommandText {
    const char* ObjectName;
    const char* Caption;
    const char* WhatItWillDo;
};

// One row each: velocity, pressure, both.
constexpr std::array<CommandText, 3> Initialise = {{
    {"cmdVelocity_Init", "Initalise Velocity",
     "runs two velocity system calibrations and two audits."},
    {"cmdPressure_Init", "Initalise Pressure", "runs the pressure calibrations."},
    {"cmdACU_InitBoth", "Init Both", "initialises velocity, then pressure."},
}};
constexpr std::array<CommandText, 3> Verify = {{
    {"cmdVelocity_PV16", "Run PV16", "verifies the velocity calibration."},
    {"cmdPressure_PV17", "Run PV17", "verifies the pressure calibration."},
    {"cmdACU_PVBoth", "PV Both", "verifies velocity and pressure."},
}};
constexpr std::array<CommandText, 2> RecordCommands = {{
    {"cmdClearPV17", "Clear Pressure", "clears the pressure part of the ACU's record."},
    {"cmdCreateACUInfoDoc", "Create ACU Info XLS", "writes the ACU information workbook."},
}};

QPushButton* MakeLaterCommand(const CommandText& text, QWidget* parent) {
    return ComesLater(
        MakeButton(QLatin1String(text.ObjectName), CalibrationPanel::tr(text.Caption), parent),
        CalibrationPanel::tr(text.WhatItWillDo));
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
      m_Hint(new ValueLabel(QStringLiteral("lblIntMsg"), tr("What to do"), this)) {
    m_Hint->setWordWrap(true);
    m_Hint->setAlignment(Qt::AlignTop);
    m_Hint->ShowValue(tr("To initialise the ACU, simply click on th e'Intialise Velocity' or "
                         "'Intialise Pressure' button."));
    HoldHintLines();
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeNumberRow());
    layout->addLayout(MakeCommands());
    layout->addWidget(MakeStateFrame(tr("Velocity"), m_VelocitySystem, m_VelocityAudit));
    layout->addWidget(MakeStateFrame(tr("Pressure"), m_PressureSystem, m_PressureAudit));
    layout->addLayout(MakeRecordCommands());
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
    m_MFCNumber->setText(QStringLiteral("M9200123Z"));
    m_MFCNumber->setReadOnly(true);
    m_MFCNumber->setToolTip(tr("The MFC number in the ACU's record. Not available yet: changing "
                               "it here."));
    auto* row = new QHBoxLayout;
    row->addWidget(MakeCaption(tr("MFC Number:"), this));
    row->addWidget(m_MFCNumber, 1);
    return row;
}

QLayout* CalibrationPanel::MakeCommands() {
    auto* grid = new QGridLayout;
    for (std::size_t column = 0; column < Initialise.size(); ++column) {
        const int gridColumn = static_cast<int>(column);
        grid->addWidget(MakeLaterCommand(Initialise.at(column), this), 0, gridColumn);
        grid->addWidget(MakeLaterCommand(Verify.at(column), this), 1, gridColumn);
    }
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
    auto* row = new QHBoxLayout;
    for (const CommandText& text : RecordCommands)
        row->addWidget(MakeLaterCommand(text, this));
    return row;
}

void CalibrationPanel::ShowSummary(const CalibrationSummary& summary) {
    Show(*m_VelocitySystem, summary.VelocitySystem);
    Show(*m_VelocityAudit, summary.VelocityAudit);
    Show(*m_PressureSystem, summary.PressureSystem);
    Show(*m_PressureAudit, summary.PressureAudit);
    m_Hint->setVisible(!summary.ACUInitialised);
    m_MFCNumber->setText(ToQt(summary.MFCNumber));
}

} // namespace ombrix
