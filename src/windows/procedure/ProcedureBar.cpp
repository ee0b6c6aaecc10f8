#include "windows/procedure/ProcedureBar.h"

#include "platform/ports/Folders.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>

#include <algorithm>

namespace ombrix {

namespace {

constexpr int BarSteps = 1000;
constexpr int RefreshSpacing_ms = 100;

/// The workbook of a procedure that has left one, else its first file.
std::filesystem::path ReportOf(const Outcome& outcome) {
    const auto& files = outcome.Files;
    const auto report = std::find_if(files.begin(), files.end(), [](const auto& file) {
        return file.extension().string().starts_with(".xls");
    });
    if (report != files.end())
        return *report;
    return files.empty() ? std::filesystem::path() : files.front();
}

} // namespace

ProcedureBar::ProcedureBar(Station& station, QWidget* parent)
    : QWidget(parent), m_Station(station),
      m_What(new ValueLabel(QStringLiteral("lblProcedure"), tr("Procedure"), this)),
      m_Left(new ValueLabel(QStringLiteral("lblProcedureLeft"), tr("Time left"), this)),
      m_Progress(Named(new QProgressBar(this), QStringLiteral("prgProcedure"),
                       tr("Progress of the procedure"))),
      m_Cancel(MakeButton(QStringLiteral("cmdCancelProcedure"), tr("Cancel"), this)),
      m_Open(MakeButton(QStringLiteral("cmdOpenReport"), tr("Open Report"), this)),
      m_Folder(MakeButton(QStringLiteral("cmdShowInFolder"), tr("Show in Folder"), this)),
      m_StopAir(MakeButton(QStringLiteral("cmdStopAir"), tr("Stop Air"), this)), m_Times(station) {
    Named(this, QStringLiteral("picProcedure"), tr("Procedure"));
    m_Cancel->setToolTip(tr("Ends the procedure with the outputs at zero (Esc)."));
    m_StopAir->setToolTip(
        tr("Brings all outputs of all boards to zero and cancels the procedure (Shift+Esc)."));
    QFont strong = m_StopAir->font();
    strong.setBold(true);
    m_StopAir->setFont(strong);
    m_Progress->setRange(0, BarSteps);
    m_What->CutToFit();
    LayOut();
    connect(m_Cancel, &QPushButton::clicked, this, [this] { m_Station.Procedures.Cancel(); });
    connect(m_Open, &QPushButton::clicked, this, [this] { OpenReport(false); });
    connect(m_Folder, &QPushButton::clicked, this, [this] { OpenReport(true); });
    connect(m_StopAir, &QPushButton::clicked, this, &ProcedureBar::StopAirWanted);
    connect(&m_Refresh, &QTimer::timeout, this, &ProcedureBar::Refresh);
    m_Refresh.start(RefreshSpacing_ms);
    Refresh();
}

void ProcedureBar::LayOut() {
    constexpr int progressWidth = 180;
    m_Progress->setMaximumWidth(progressWidth);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_What, 1);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_Left, m_Progress, m_Open, m_Folder, m_Cancel, m_StopAir})
        layout->addWidget(widget);
}

void ProcedureBar::Refresh() {
    const ProcedureGate& gate = m_Station.Procedures;
    m_Times.Look();
    m_Progress->setVisible(gate.Running());
    m_Left->setVisible(gate.Running() && !gate.CancelRequested());
    m_Cancel->setEnabled(gate.Running() && !gate.CancelRequested());
    if (gate.Running())
        ShowRunning();
    else
        ShowEnd();
}

void ProcedureBar::ShowRunning() {
    const ProcedureGate& gate = m_Station.Procedures;
    m_Report.clear();
    m_Open->hide();
    m_Folder->hide();
    const QString step = gate.CancelRequested() ? tr("ending…") : ToQt(m_Times.Told().Step);
    m_What->ShowInPaletteColour();
    m_What->ShowValue(ToQt(gate.Name()) +
                      (step.isEmpty() ? QString() : QStringLiteral(": ") + step));
    const auto left_s = m_Times.Left_s();
    m_Left->ShowValue(left_s ? tr("%1 left").arg(DurationText(*left_s)) : QString());
    m_Progress->setValue(static_cast<int>(m_Times.Told().Share * BarSteps));
}

void ProcedureBar::ShowEnd() {
    const auto& end = m_Station.Procedures.LastEnd();
    m_Report = end ? ReportOf(end->Result) : std::filesystem::path();
    m_Open->setVisible(!m_Report.empty());
    m_Folder->setVisible(!m_Report.empty());
    if (!end) {
        m_What->ShowInPaletteColour();
        m_What->ShowValue({});
        return;
    }
    const bool isGood = end->Result.Ended == End::Passed;
    constexpr Colour red{192, 0, 0};
    if (isGood)
        m_What->ShowInPaletteColour();
    else
        m_What->ShowInColour(red);
    const QString reason = ToQt(end->Result.Error).simplified();
    m_What->ShowValue(QStringLiteral("%1 %2: %3%4")
                          .arg(isGood ? QStringLiteral("✓") : QStringLiteral("✗"), ToQt(end->Name),
                               ToQt(end->Verdict),
                               reason.isEmpty() ? QString() : QStringLiteral(". ") + reason));
}

void ProcedureBar::OpenReport(bool folder) {
    Platform& world = m_Station.World;
    const std::filesystem::path path = folder ? m_Report.parent_path() : m_Report;
    Guarded(world.Messages, [&] { OpenOrTell(world, path); });
}

} // namespace ombrix
