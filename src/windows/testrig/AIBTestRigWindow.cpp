#include "windows/testrig/AIBTestRigWindow.h"

#include "windows/desktop/KeepAbove.h"
#include "windows/testrig/RigPanels.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QPushButton>
#include <QScrollArea>
#include <QShortcut>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <utility>

namespace ombrix {

namespace {

/// Columns of the list: number, job, status.
constexpr int StatusColumn = 2;

constexpr int UpdateInterval_ms = 100;

} // namespace

AIBTestRigWindow::AIBTestRigWindow(Station& station)
    : m_Station(station), m_JobName(new ValueLabel(QStringLiteral("lblJob"), tr("Job"), this)),
      m_Status(Named(new QTreeWidget(this), QStringLiteral("lvwStatus"), tr("Steps of the job"))),
      m_CurrentJob(new RampProgress(this)),
      m_Outcome(new ValueLabel(QStringLiteral("lblOutcome"), tr("Outcome"), this)),
      m_Cancel(MakeButton(QStringLiteral("cmdCancel"), tr("Cancel"), this)),
      m_Close(MakeButton(QStringLiteral("cmdClose"), tr("Close"), this)),
      m_UpdateScreen(new QTimer(this)) {
    Named(this, QStringLiteral("frmAIBTestRig"), tr("AIB and MFC Test Rig"));
    setWindowTitle(tr("AIB and MFC Test Rig"));
    setWindowModality(Qt::ApplicationModal);
    m_UpdateScreen->setObjectName(QStringLiteral("timUpdateScreen"));
    m_UpdateScreen->setInterval(UpdateInterval_ms);
    LayOut();
    TakeCancel(false);
    m_Cancel->setToolTip(tr("Ends the job with the outputs at zero (Esc)."));
    m_Close->setToolTip(tr("Closes the window (Esc)."));
    connect(m_UpdateScreen, &QTimer::timeout, this, &AIBTestRigWindow::UpdateScreen);
    connect(m_Cancel, &QPushButton::clicked, this, &AIBTestRigWindow::Cancel);
    connect(m_Close, &QPushButton::clicked, this, &QWidget::close);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            [this] { (m_Running ? m_Cancel : m_Close)->click(); });
}

AIBTestRigWindow::~AIBTestRigWindow() = default;

void AIBTestRigWindow::LayOut() {
    QFont strong = m_JobName->font();
    strong.setBold(true);
    m_JobName->setFont(strong);
    m_Outcome->CutToFit();
    m_Status->setRootIsDecorated(false);
    constexpr QSize list(0, 110);
    m_Status->setFixedHeight(ScaledToFonts(*this, list).height());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_JobName);
    layout->addWidget(m_Status);
    layout->addWidget(m_CurrentJob);
    layout->addWidget(m_Outcome);
    layout->addWidget(MakeCurrentValues(), 1);
    layout->addLayout(MakeButtons());
    constexpr QSize comfortable(720, 620);
    resize(ScaledToFonts(*this, comfortable));
}

QLayout* AIBTestRigWindow::MakeButtons() {
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_Cancel);
    buttons->addWidget(m_Close);
    return buttons;
}

QGroupBox* AIBTestRigWindow::MakeCurrentValues() {
    auto* frame = Named(new QGroupBox(tr("Current Values"), this), QStringLiteral("fraBoardOnTest"),
                        tr("Current Values"));
    m_BoardArea = new QWidget(frame);
    new QHBoxLayout(m_BoardArea);
    auto* layout = new QVBoxLayout(frame);
    layout->addWidget(MakeScrolling(m_BoardArea, tr("Inputs and outputs of the boards"), frame));
    return frame;
}

bool AIBTestRigWindow::RunTest(std::int32_t kind) {
    if (m_Station.Procedures.Running())
        return false;
    m_Kind = kind;
    m_Pending = true;
    m_CloseAfterRun = false;
    m_JobName->ShowValue({});
    m_Outcome->ShowValue({});
    m_CurrentJob->Clear();
    PrepareList();
    PrepareBoards();
    BringUp(*this);
    // The window shows first; the job is its own turn of the event loop.
    QTimer::singleShot(0, this, &AIBTestRigWindow::RunPendingJob);
    return true;
}

void AIBTestRigWindow::PrepareList() {
    m_Status->clear();
    m_Status->setColumnCount(StatusColumn + 1);
    m_Status->setHeaderLabels({tr("No."), tr("Job"), tr("Status")});
    AutoSizeColumns(*m_Status);
}

void AIBTestRigWindow::PrepareBoards() {
    for (RigBoardPanel* panel : std::exchange(m_Boards, {}))
        delete panel;
    const int count = m_Station.AIBList.AIBCount();
    for (int index = 0; index < count; ++index) {
        m_Boards.push_back(new RigBoardPanel(index, m_Station.AIBList.AIB(index), m_BoardArea));
        m_BoardArea->layout()->addWidget(m_Boards.back());
    }
}

void AIBTestRigWindow::RunPendingJob() {
    if (!std::exchange(m_Pending, false))
        return;
    Guarded(m_Station.World.Messages, [this] { RunJob(); });
    m_Running = false;
    TakeCancel(false);
    if (m_CloseAfterRun)
        close();
}

void AIBTestRigWindow::RunJob() {
    m_JobName->ShowValue(ToQt(TestRigJobName(m_Kind)));
    UpdateScreen();
    m_UpdateScreen->start();
    if (const auto missing = TestRigRun::Missing(m_Station, m_Kind)) {
        m_Outcome->ShowValue(tr("Not run: a board is missing."));
        m_Station.World.Messages.Ask({*missing, MessageIcon::Warning, MessageButtons::Ok});
        return;
    }
    m_Running = true;
    TakeCancel(true);
    ShowOutcome(TestRigRun(m_Station, *this).Run(m_Kind));
    UpdateScreen();
}

void AIBTestRigWindow::ShowOutcome(const TestRigResult& result) {
    if (JobStepCount(m_Kind) == 0)
        m_Outcome->ShowValue(tr("This job has no steps."));
    else if (const TestRigStep* failed = result.FirstFailed())
        m_Outcome->ShowValue(ToQt(failed->Remark));
    else if (result.Ended == End::Cancelled)
        m_Outcome->ShowValue(tr("Cancelled."));
    else if (result.Ended != End::Passed)
        m_Outcome->ShowValue( // the whole of it has been told in a box
            ToQt(result.Error).section(QStringLiteral("\r\n"), 0, 0));
    else
        m_Outcome->ShowValue(tr("Samples: %1").arg(ToQt(result.Files.back().string())));
}

void AIBTestRigWindow::TakeCancel(bool take) {
    m_Cancel->setEnabled(take);
    m_Close->setEnabled(!take);
}

void AIBTestRigWindow::Cancel() {
    m_Station.Procedures.Cancel();
    m_Cancel->setEnabled(false);
}

void AIBTestRigWindow::UpdateScreen() {
    const bool updated = Guarded(m_Station.World.Messages, [this] {
        for (RigBoardPanel* board : m_Boards)
            board->Refresh();
    });
    if (!updated)
        m_UpdateScreen->stop(); // told once, not ten times a second
}

void AIBTestRigWindow::ShowSteps(const std::vector<TestRigStep>& steps) {
    m_Status->clear();
    for (const TestRigStep& step : steps) {
        auto* line =
            new QTreeWidgetItem(m_Status, {QString::number(m_Status->topLevelItemCount() + 1),
                                           ToQt(step.Name), ToQt(RigStatusText(step.Status))});
        line->setToolTip(StatusColumn, ToQt(step.Remark));
    }
    AutoSizeColumns(*m_Status);
}

void AIBTestRigWindow::BeginProgress(const RampStep& ramp) {
    m_CurrentJob->Begin(ramp);
}

void AIBTestRigWindow::ShowProgress(double elapsed_s) {
    m_CurrentJob->Show(elapsed_s);
}

void AIBTestRigWindow::closeEvent(QCloseEvent* event) {
    if (!m_Running) {
        m_Pending = false;
        m_UpdateScreen->stop();
        event->accept();
        return;
    }
    m_CloseAfterRun = true;
    Cancel();
    event->ignore();
}

void AIBTestRigWindow::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!isVisible()) // a minimised window is still open
        emit Closed();
}

} // namespace ombrix
