#include "windows/healthcheck/ACUHealthCheckWindow.h"

#include "healthcheck/SaveFolder.h"
#include "windows/healthcheck/GraphColumn.h"
#include "windows/healthcheck/HealthCheckOptionsPanel.h"
#include "windows/healthcheck/StepListWidget.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/OpenQuestion.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QProgressBar>

namespace ombrix {

namespace {

constexpr int ProgressSteps = 1000;

} // namespace

frmACUHealthCheck::frmACUHealthCheck(Station& station, DACSliders& sliders,
                                     SpreadsheetLauncher launcher, std::string templates)
    : m_Station(station), m_Sliders(sliders), m_Launcher(std::move(launcher)),
      m_Templates(std::move(templates)), m_Options(new HealthCheckOptionsPanel(this)),
      m_Steps(new StepListWidget(this)), m_Progress(new QProgressBar(this)),
      m_Graphs(new GraphColumn(this)), m_Wait(nullptr) {
    Named(this, QStringLiteral("frmACUHealthCheck"), tr("Health Checking"));
    setWindowTitle(tr("Health Checking"));
    Named(m_Progress, QStringLiteral("prgRun"), tr("Progress of the run"));
    m_Progress->setRange(0, ProgressSteps);
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(MakeSideColumn());
    layout->addWidget(m_Graphs, 1);
    constexpr QSize size(1200, 680);
    resize(ScaledToFonts(*this, size));
    connect(m_Options, &HealthCheckOptionsPanel::StartWanted, this, &frmACUHealthCheck::Start);
    connect(m_Options, &HealthCheckOptionsPanel::CancelWanted, this, [this] { m_Run->Cancel(); });
    connect(m_Options, &HealthCheckOptionsPanel::FolderWanted, this,
            [this] { Guarded(m_Station.World.Messages, [this] { OpenSaveFolder(m_Station); }); });
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
    ProcedureRunning(station.Procedures.Running());
}

QLayout* frmACUHealthCheck::MakeSideColumn() {
    auto* column = new QVBoxLayout;
    column->addWidget(m_Options);
    column->addWidget(m_Steps, 1);
    column->addWidget(m_Progress);
    // Wide enough for the line of a step with two-digit figures.
    const int width = fontMetrics().horizontalAdvance(
        QStringLiteral("00.    Ch1 100.0%     Ch2 100.0%     for     00s__"));
    m_Steps->setFixedWidth(width);
    m_Options->setFixedWidth(width);
    m_Progress->setFixedWidth(width);
    return column;
}

void frmACUHealthCheck::ProcedureRunning(bool running) {
    m_Options->UpdateOptionControls(!running);
    m_Options->TakeCancel(running && m_Run != nullptr);
}

void frmACUHealthCheck::Start() {
    if (m_Station.Procedures.Running())
        return;
    Guarded(m_Station.World.Messages, [this] { OfferWorkbook(RunHealthCheck()); });
    m_Run.reset();
    if (m_CloseAfterRun)
        close();
}

HealthCheckResult frmACUHealthCheck::RunHealthCheck() {
    m_CloseAfterRun = false;
    m_Run = std::make_unique<HealthCheckRun>(m_Station, m_Sliders, m_Launcher, m_Wait, m_Templates);
    const GraphSurfaces surfaces = m_Graphs->Surfaces();
    HealthCheckView view{&surfaces, m_Graphs, m_Steps};
    view.Progress = [this](double share) {
        m_Progress->setValue(static_cast<int>(share * ProgressSteps));
    };
    m_Progress->setValue(0);
    const std::vector<HealthCheckOption> chosen = m_Options->Chosen();
    HealthCheckResult result = m_Run->Run(chosen, view);
    if (result.Ended == ProcedureOutcome::End::Completed)
        m_Progress->setValue(ProgressSteps);
    return result;
}

void frmACUHealthCheck::OfferWorkbook(const HealthCheckResult& result) {
    Platform& world = m_Station.World;
    if (result.Files.empty() || world.Events.ProgramEnding())
        return;
    const std::filesystem::path& workbook = result.Files.front();
    const Answer answer =
        world.Messages.Ask({"Open the report now?\r\n\r\n   " + workbook.filename().string(),
                            MessageIcon::Question, MessageButtons::YesNo});
    if (answer == Answer::Yes && !world.Documents.OpenDocument(workbook))
        world.Messages.Ask(
            {"The desktop has no program that opens the report:\r\n\r\n   " + workbook.string(),
             MessageIcon::Warning, MessageButtons::Ok});
}

void frmACUHealthCheck::closeEvent(QCloseEvent* event) {
    if (m_Run == nullptr) {
        event->accept();
        return;
    }
    event->ignore();
    AskWhileRunning(*this, tr("The health check is running.\n\nCancel it and close the window?"),
                    [this] {
                        m_CloseAfterRun = true;
                        if (m_Run != nullptr)
                            m_Run->Cancel();
                        else
                            close();
                    });
}

} // namespace ombrix
