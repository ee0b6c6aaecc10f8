#include "windows/healthcheck/ACUHealthCheckWindow.h"

#include "healthcheck/HealthCheckReport.h"
#include "platform/ports/Folders.h"
#include "windows/desktop/KeepAbove.h"
#include "windows/desktop/QtOperator.h"
#include "windows/healthcheck/GraphWidget.h"
#include "windows/healthcheck/StepListWidget.h"
#include "windows/healthcheck/VerdictPanel.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>

namespace ombrix {

HealthCheckOptionsPanel::HealthCheckOptionsPanel(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picOptions"), tr("Options"));
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
    auto* folder = MakeButton(QStringLiteral("cmdOpenFolder"), tr("Folder"), this);
    folder->setToolTip(tr("Opens the folder of the reports."));
    auto* commands = new QHBoxLayout;
    for (QPushButton* command : {m_Start, m_Cancel, folder})
        commands->addWidget(command);
    grid->addLayout(commands, 3, 0, 1, 2);
    const auto box = [this](std::size_t place) { return m_Options.at(place).Box; };
    SetTabOrder({box(0), box(5), box(1), box(4), box(2), box(3), m_Start, m_Cancel, folder});
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

namespace {

constexpr int ProgressSteps = 1000;

} // namespace

ACUHealthCheckWindow::ACUHealthCheckWindow(Station& station,
                                           const std::function<ReportTools(OpenExcelView&)>& tools)
    : m_Station(station), m_Options(new HealthCheckOptionsPanel(this)),
      m_Sequence(new ValueLabel(QStringLiteral("lblSequence"), tr("Sequence"), this)),
      m_Time(new ValueLabel(QStringLiteral("lblTime"), tr("Time"), this)),
      m_Verdict(new VerdictPanel(this)), m_Steps(new StepListWidget(this)),
      m_Progress(new QProgressBar(this)), m_Graphs(new GraphColumn(this)), m_Wait(nullptr),
      m_Reports(tools(m_Wait)), m_Times(station) {
    KeepAbove(m_Wait, *this);
    Named(this, QStringLiteral("frmACUHealthCheck"), tr("Health Checking"));
    setWindowTitle(tr("Health Checking"));
    Named(m_Progress, QStringLiteral("prgRun"), tr("Progress of the run"));
    m_Progress->setRange(0, ProgressSteps);
    auto* right = new QVBoxLayout;
    right->addLayout(MakeHead());
    right->addWidget(m_Graphs, 1);
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(MakeSideColumn());
    layout->addLayout(right, 1);
    constexpr QSize size(1200, 680);
    resize(ScaledToScreen(*this, size));
    connect(m_Options, &HealthCheckOptionsPanel::StartWanted, this, &ACUHealthCheckWindow::Start);
    connect(m_Options, &HealthCheckOptionsPanel::CancelWanted, this,
            [this] { m_Station.Procedures.Cancel(); });
    connect(m_Options, &HealthCheckOptionsPanel::FolderWanted, this,
            [this] { Guarded(m_Station.World.Messages, [this] { OpenSaveFolder(m_Station); }); });
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
    ProcedureRunning(station.Procedures.Running());
}

QLayout* ACUHealthCheckWindow::MakeHead() {
    QFont bold = font();
    bold.setBold(true);
    m_Sequence->setFont(bold);
    m_Sequence->CutToFit();
    m_Sequence->ShowValue(tr("No sequence runs"));
    auto* head = new QHBoxLayout;
    head->addWidget(m_Sequence, 1);
    head->addWidget(m_Time);
    return head;
}

QLayout* ACUHealthCheckWindow::MakeSideColumn() {
    auto* column = new QVBoxLayout;
    column->addWidget(m_Options);
    column->addWidget(m_Verdict);
    column->addWidget(m_Steps, 1);
    column->addWidget(m_Progress);
    const int width = m_Steps->WholeWidth();
    for (QWidget* part : std::initializer_list<QWidget*>{m_Options, m_Verdict, m_Steps, m_Progress})
        part->setFixedWidth(width);
    return column;
}

void ACUHealthCheckWindow::ProcedureRunning(bool running) {
    m_Options->UpdateOptionControls(!running);
    m_Options->TakeCancel(running && m_Running);
}

void ACUHealthCheckWindow::Start() {
    if (m_Station.Procedures.Running())
        return;
    m_Running = true;
    Guarded(m_Station.World.Messages, [this] { RunHealthCheck(); });
    m_Running = false;
    if (m_CloseAfterRun)
        close();
}

void ACUHealthCheckWindow::RunHealthCheck() {
    m_CloseAfterRun = false;
    const GraphSurfaces surfaces = m_Graphs->Surfaces();
    HealthCheckView view{&surfaces, m_Graphs, m_Steps};
    view.Progress = [this](double share) { ShowProgress(share); };
    view.Sequence = [this](const RunningSequence& sequence) {
        m_Sequence->ShowValue(tr("Sequence %1 of %2: %3")
                                  .arg(sequence.Number)
                                  .arg(sequence.Count)
                                  .arg(ToQt(sequence.Sheet)));
    };
    view.Judged = [this](const HealthCheckFigures& check) { m_Verdict->ShowRunning(check); };
    view.Ended = [this](const HealthCheckResult& result) {
        if (result.Ended == End::Passed || result.Ended == End::Failed)
            m_Progress->setValue(ProgressSteps);
        m_Verdict->ShowEnd(result.Check, result.Limits, result.Error);
    };
    m_Progress->setValue(0);
    m_Verdict->Clear();
    const std::vector<HealthCheckOption> chosen = m_Options->Chosen();
    HealthCheckRun(m_Reports).Run(chosen, view);
}

void ACUHealthCheckWindow::ShowProgress(double share) {
    m_Progress->setValue(static_cast<int>(share * ProgressSteps));
    m_Times.Look();
    m_Time->ShowValue(m_Times.Text());
}

void ACUHealthCheckWindow::closeEvent(QCloseEvent* event) {
    if (!m_Running) {
        event->accept();
        return;
    }
    event->ignore();
    AskWhileRunning(*this, tr("The health check is running.\n\nCancel it and close the window?"),
                    [this] {
                        m_CloseAfterRun = true;
                        if (m_Running)
                            m_Station.Procedures.Cancel();
                        else
                            close();
                    });
}

} // namespace ombrix
