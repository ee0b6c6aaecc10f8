#include "windows/healthcheck/HealthCheckOptionsPanel.h"

#include "windows/widgets/Controls.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>

#include <algorithm>

namespace ombrix {

HealthCheckOptionsPanel::HealthCheckOptionsPanel(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picOptions"), tr("Options"));
    auto* folder = MakeButton(QStringLiteral("cmdOpenFolder"), tr("Folder"), this);
    folder->setToolTip(tr("Opens the folder of the reports."));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    using Option = HealthCheckOption;
    grid->addWidget(AddOption(0, Option::Short, "chkShort", "Short"), 0, 0);
    grid->addWidget(AddOption(1, Option::LowCh1, "chkLowCh1", "Low Ch1"), 1, 0);
    grid->addWidget(AddOption(2, Option::LowCh2, "chkLowCh2", "Low Ch2"), 2, 0);
    grid->addWidget(AddOption(3, Option::LongCh2, "chkLongCh2", "L Ch2"), 2, 1);
    grid->addWidget(AddOption(4, Option::LongCh1, "chkLongCh1", "L Ch1"), 1, 1);
    grid->addWidget(AddOption(5, Option::PressureCheck, "chkPressureCheck", "Pressure"), 0, 1);
    m_Start = MakeButton(QStringLiteral("cmdStart"), tr("Start"), this);
    m_Cancel = MakeButton(QStringLiteral("cmdCancel"), tr("Cancel"), this);
    auto* commands = new QHBoxLayout;
    for (QPushButton* command : {m_Start, m_Cancel, folder})
        commands->addWidget(command);
    grid->addLayout(commands, 3, 0, 1, 2);
    setTabOrder(m_Cancel, folder);
    connect(m_Start, &QPushButton::clicked, this, &HealthCheckOptionsPanel::StartWanted);
    connect(m_Cancel, &QPushButton::clicked, this, &HealthCheckOptionsPanel::CancelWanted);
    connect(folder, &QPushButton::clicked, this, &HealthCheckOptionsPanel::FolderWanted);
    UpdateOptionControls(true);
    TakeCancel(false);
}

QCheckBox* HealthCheckOptionsPanel::AddOption(std::size_t place, HealthCheckOption option,
                                              const char* objectName, const char* caption) {
    QCheckBox* box = MakeCheckBox(QLatin1String(objectName), tr(caption), this);
    m_Options.at(place) = {option, box};
    connect(box, &QCheckBox::toggled, this, [this] { UpdateOptionControls(true); });
    return box;
}

std::vector<HealthCheckOption> HealthCheckOptionsPanel::Chosen() const {
    std::vector<HealthCheckOption> chosen;
    for (const OptionBox& option : m_Options) {
        if (option.Box->isChecked())
            chosen.push_back(option.Option);
    }
    std::sort(chosen.begin(), chosen.end());
    return chosen;
}

void HealthCheckOptionsPanel::UpdateOptionControls(bool enable) {
    for (const OptionBox& option : m_Options)
        option.Box->setEnabled(enable);
    m_Start->setEnabled(enable && !Chosen().empty());
}

void HealthCheckOptionsPanel::TakeCancel(bool take) {
    m_Cancel->setEnabled(take);
}

} // namespace ombrix
