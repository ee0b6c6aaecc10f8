#include "windows/testrig/UARTsWindow.h"

#include "platform/text/DateText.h"
#include "windows/testrig/UARTChannel.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <fmt/format.h>

#include <utility>

namespace ombrix {

namespace {

constexpr int ReadInterval_ms = 100;

} // namespace

frmUARTs::frmUARTs(Station& station)
    : m_Station(station),
      m_BoardName(new ValueLabel(QStringLiteral("lblAIBSerial"), tr("Board"), this)),
      m_Errors(Named(new QListWidget(this), QStringLiteral("lstErrors"), tr("Failed exchanges"))),
      m_Update(new QTimer(this)) {
    Named(this, QStringLiteral("frmUARTs"), tr("UART Testing"));
    setWindowTitle(tr("UART Testing"));
    m_Update->setObjectName(QStringLiteral("timUpdate"));
    m_Update->setInterval(ReadInterval_ms);
    connect(m_Update, &QTimer::timeout, this, &frmUARTs::ReadTickedChannels);
    auto* layout = new QHBoxLayout(this);
    for (int channel = 0; channel < Channels; ++channel) {
        auto* controls = new UARTChannel(channel, this);
        m_Channels.at(static_cast<std::size_t>(channel)) = controls;
        connect(controls, &UARTChannel::SetWanted, this, &frmUARTs::Set);
        connect(controls, &UARTChannel::GetWanted, this, &frmUARTs::Get);
        layout->addWidget(controls);
    }
    layout->addLayout(MakeErrorColumn(), 1);
    constexpr QSize comfortable(760, 420);
    resize(ScaledToFonts(*this, comfortable));
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
}

QLayout* frmUARTs::MakeErrorColumn() {
    auto* clear = MakeButton(QStringLiteral("cmdClear"), tr("Clear"), this);
    connect(clear, &QPushButton::clicked, m_Errors, &QListWidget::clear);
    auto* column = new QVBoxLayout;
    column->addWidget(m_BoardName);
    column->addWidget(m_Errors, 1);
    column->addWidget(clear, 0, Qt::AlignRight);
    return column;
}

bool frmUARTs::Open() {
    if (!isVisible()) {
        for (UARTChannel* channel : m_Channels)
            channel->Reset();
        m_Errors->clear();
        if (!FindBoard())
            return false;
        m_BoardName->ShowValue(
            tr("AIB_%1: %2").arg(m_Board->DevSerialNum()).arg(ToQt(m_Board->BusTypeText())));
        ProcedureRunning(m_Station.Procedures.Running());
        show();
    }
    raise();
    activateWindow();
    return true;
}

bool frmUARTs::FindBoard() {
    // Counting opens the library only while no board is known: the boards that the main window
    // shows stay the ones it shows.
    while (m_Station.g_AIBList.AIBCount() == 0) {
        const Message question{.Text = "No AIBs Detected",
                               .Icon = MessageIcon::Warning,
                               .Buttons = MessageButtons::RetryCancel,
                               .AsksRetry = true};
        if (m_Station.World.Messages.Ask(question) != Answer::Retry)
            return false;
    }
    m_Board = m_Station.g_AIBList.AIB(0);
    return true;
}

template <class Work>
void frmUARTs::Guard(Work work) {
    if (!Guarded(m_Station.World.Messages, work))
        m_Update->stop(); // told once, not ten times a second
}

void frmUARTs::Set(int channel, std::int32_t value) {
    Guard([&] {
        m_Station.Claims.Require(m_Board->DevSerialNum());
        m_Taken.at(static_cast<std::size_t>(channel)) = true;
        const AIBStatus status = m_Board->SetDAC_UART(channel, value);
        ReportUARTResult(status, fmt::format("Set({})", channel));
        m_Channels.at(static_cast<std::size_t>(channel))->ShowSent(value);
    });
}

void frmUARTs::Get(int channel) {
    Guard([&] {
        std::int32_t value = 0;
        const AIBStatus status = m_Board->GetADC_UART(channel, value);
        ReportUARTResult(status, fmt::format("Get({})", channel));
        m_Channels.at(static_cast<std::size_t>(channel))->ShowRead(value);
    });
}

void frmUARTs::ReadTickedChannels() {
    // A report lets events be handled; a tick among them waits for the next one.
    if (std::exchange(m_Reading, true))
        return;
    for (int channel = 0; channel < Channels; ++channel) {
        if (m_Channels.at(static_cast<std::size_t>(channel))->OnTimer())
            Get(channel);
    }
    m_Reading = false;
}

void frmUARTs::ReportUARTResult(AIBStatus status, const std::string& text) {
    if (status == Status::NoError)
        return;
    m_Errors->addItem(
        ToQt(fmt::format("{} - {} failed  [{}]", DateText(m_Station.World.Time.Now(), "hh:nn:ss"),
                         text, clsAIB::AIBErrorStr(status))));
    m_Errors->setCurrentRow(m_Errors->count() - 1);
    m_Station.World.Events.ProcessPendingEvents();
}

void frmUARTs::GiveChannelsBack() {
    // No window would show any more what this one has demanded: the channels go back to what
    // the sliders of the main window stand for.
    for (int channel = 0; channel < Channels; ++channel) {
        if (!std::exchange(m_Taken.at(static_cast<std::size_t>(channel)), false))
            continue;
        // In analog mode the sliders do not reach the link.
        if (!m_Board->IsDigitalSetup())
            m_Board->SetDAC_UART(channel, 0);
        m_Board->SetDAC(channel, m_Board->DAC(channel));
    }
    m_Board.reset();
}

void frmUARTs::ProcedureRunning(bool running) {
    setEnabled(!running);
    if (!running && std::exchange(m_ClosedMeanwhile, false))
        Guarded(m_Station.World.Messages, [this] { GiveChannelsBack(); });
    if (running || m_Board == nullptr)
        m_Update->stop();
    else
        m_Update->start();
}

void frmUARTs::closeEvent(QCloseEvent* event) {
    m_Update->stop();
    for (UARTChannel* channel : m_Channels)
        channel->Reset();
    // A procedure has the boards to itself: the channels are given back when it has ended.
    m_ClosedMeanwhile = m_Board != nullptr && m_Station.Procedures.Running();
    if (m_Board != nullptr && !m_ClosedMeanwhile)
        Guarded(m_Station.World.Messages, [this] { GiveChannelsBack(); });
    event->accept();
}

} // namespace ombrix
