#include "windows/testrig/UARTsWindow.h"

#include "board/AIB.h"
#include "platform/text/OleDate.h"
#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <fmt/format.h>

#include <utility>

namespace ombrix {

namespace {

QSlider* MakeSlider(int channel, QWidget* parent) {
    auto* slider = MakeDemandSlider(ElementName("sldDACValue", channel),
                                    UARTChannel::tr("Demand of channel %1").arg(channel),
                                    AIB::DACFullScale, parent);
    constexpr int leastLines = 8; // a handle needs a way to go
    slider->setToolTip(UARTChannel::tr("What \"Set\" sends to channel %1").arg(channel));
    slider->setMinimumHeight(leastLines * parent->fontMetrics().height());
    return slider;
}

ValueLabel* MakeValue(const char* array, int channel, const QString& meaning, QWidget* parent) {
    auto* value = new ValueLabel(ElementName(array, channel), meaning, parent);
    value->setAlignment(Qt::AlignCenter);
    value->ReserveFor(QStringLiteral("000000"));
    return value;
}

} // namespace

UARTChannel::UARTChannel(int channel, QWidget* parent)
    // The air channels are 1 and 2 to the operator.
    : QGroupBox(tr("MFC %1 (Ch %2)").arg(channel).arg(channel + 1), parent), m_Channel(channel),
      m_Demand(MakeSlider(channel, this)),
      m_Bar(new ADCBar(channel, tr("Bars of reading and demand of channel %1").arg(channel), this)),
      m_Sent(MakeValue("lblDACValue", channel, tr("Sent to channel %1").arg(channel), this)),
      m_Read(MakeValue("lblADC", channel, tr("Read from channel %1").arg(channel), this)),
      m_OnTimer(MakeCheckBox(ElementName("chkGet", channel), tr("On Timer"), this)) {
    m_OnTimer->setToolTip(tr("Reads the channel ten times a second."));
    auto* layout = new QHBoxLayout(this);
    layout->addLayout(MakeDemandColumn());
    layout->addLayout(MakeReadingColumn());
    Reset();
}

QLayout* UARTChannel::MakeDemandColumn() {
    auto* set = MakeButton(ElementName("cmdSet", m_Channel), tr("Set"), this);
    auto* wanted =
        MakeValue("lblDemand", m_Channel, tr("Demand to send to channel %1").arg(m_Channel), this);
    wanted->ShowValue(QString::number(0));
    connect(m_Demand, &QSlider::valueChanged, wanted,
            [wanted](int value) { wanted->ShowValue(QString::number(value)); });
    set->setToolTip(tr("Sends the demand to the channel."));
    connect(set, &QPushButton::clicked, this,
            [this] { emit SetWanted(m_Channel, m_Demand->value()); });
    auto* column = new QVBoxLayout;
    column->addWidget(MakeCaption(tr("Demand"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Demand, 1, Qt::AlignHCenter);
    column->addWidget(wanted, 0, Qt::AlignHCenter);
    column->addWidget(set);
    column->addWidget(MakeCaption(tr("Last sent"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Sent, 0, Qt::AlignHCenter);
    return column;
}

QLayout* UARTChannel::MakeReadingColumn() {
    auto* get = MakeButton(ElementName("cmdGet", m_Channel), tr("Get"), this);
    get->setToolTip(tr("Reads the channel once."));
    connect(get, &QPushButton::clicked, this, [this] { emit GetWanted(m_Channel); });
    auto* column = new QVBoxLayout;
    column->addWidget(MakeCaption(tr("Reading"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Bar, 1, Qt::AlignHCenter);
    column->addWidget(m_OnTimer);
    column->addWidget(get);
    column->addWidget(MakeCaption(tr("Last read"), this), 0, Qt::AlignHCenter);
    column->addWidget(m_Read, 0, Qt::AlignHCenter);
    return column;
}

void UARTChannel::ShowSent(std::int32_t value) {
    m_Sent_bits = value;
    m_Sent->ShowValue(QString::number(value));
    m_Bar->Draw(m_Read_bits, m_Sent_bits);
}

void UARTChannel::ShowRead(std::optional<std::int32_t> value, const QString& reason) {
    m_Read_bits = value;
    if (value)
        m_Read->ShowValue(QString::number(*value));
    else
        m_Read->ShowFailure(reason);
    m_Bar->Draw(m_Read_bits, m_Sent_bits);
}

bool UARTChannel::OnTimer() const {
    return m_OnTimer->isChecked();
}

void UARTChannel::Reset() {
    m_OnTimer->setChecked(false);
    m_Demand->setValue(0);
    m_Sent_bits = 0;
    m_Read_bits.reset();
    m_Sent->ShowValue(QStringLiteral("-"));
    m_Read->ShowValue(QStringLiteral("-"));
    m_Bar->Draw(m_Read_bits, m_Sent_bits);
}

namespace {

constexpr int ReadInterval_ms = 100;

} // namespace

UARTsWindow::UARTsWindow(Station& station)
    : m_Station(station),
      m_BoardName(new ValueLabel(QStringLiteral("lblAIBSerial"), tr("Board"), this)),
      m_Errors(Named(new QListWidget(this), QStringLiteral("lstErrors"), tr("Failed exchanges"))),
      m_Update(new QTimer(this)) {
    Named(this, QStringLiteral("frmUARTs"), tr("UART Testing"));
    setWindowTitle(tr("UART Testing"));
    m_Update->setObjectName(QStringLiteral("timUpdate"));
    m_Update->setInterval(ReadInterval_ms);
    connect(m_Update, &QTimer::timeout, this, &UARTsWindow::ReadTickedChannels);
    auto* layout = new QHBoxLayout(this);
    for (int channel = 0; channel < Channels; ++channel) {
        auto* controls = new UARTChannel(channel, this);
        m_Channels.at(static_cast<std::size_t>(channel)) = controls;
        connect(controls, &UARTChannel::SetWanted, this, &UARTsWindow::Set);
        connect(controls, &UARTChannel::GetWanted, this, &UARTsWindow::Get);
        layout->addWidget(controls);
    }
    layout->addLayout(MakeErrorColumn(), 1);
    constexpr QSize comfortable(760, 420);
    resize(ScaledToFonts(*this, comfortable));
    m_Procedures = station.Procedures.Listen([this](bool running) { ProcedureRunning(running); });
}

QLayout* UARTsWindow::MakeErrorColumn() {
    auto* clear = MakeButton(QStringLiteral("cmdClear"), tr("Clear"), this);
    clear->setToolTip(tr("Empties the list of failed exchanges."));
    connect(clear, &QPushButton::clicked, m_Errors, &QListWidget::clear);
    auto* column = new QVBoxLayout;
    column->addWidget(m_BoardName);
    column->addWidget(m_Errors, 1);
    column->addWidget(clear, 0, Qt::AlignRight);
    return column;
}

bool UARTsWindow::Open() {
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

bool UARTsWindow::FindBoard() {
    // Counting opens the library only while no board is known: the boards that the main window
    // shows stay the ones it shows.
    while (m_Station.AIBList.AIBCount() == 0) {
        const Message question{.Text = "No AIBs Detected",
                               .Icon = MessageIcon::Warning,
                               .Buttons = MessageButtons::RetryCancel,
                               .DeclinedUnattended = true};
        if (m_Station.World.Messages.Ask(question) != Answer::Retry)
            return false;
    }
    m_Board = m_Station.AIBList.AIB(0);
    return true;
}

void UARTsWindow::Set(int channel, std::int32_t value) {
    Guarded(m_Station.World.Messages, [&] {
        m_Station.Claims.Require(m_Board->DevSerialNum());
        m_Taken.at(static_cast<std::size_t>(channel)) = true;
        const BoardAnswer answer = m_Station.Outputs.SetDigital(*m_Board, channel, value);
        ReportUARTResult(answer, fmt::format("Set({})", channel));
        if (answer.Taken())
            m_Channels.at(static_cast<std::size_t>(channel))->ShowSent(value);
    });
}

void UARTsWindow::Get(int channel) {
    const bool done = Guarded(m_Station.World.Messages, [&] {
        std::int32_t value = 0;
        const BoardAnswer answer{m_Board->GetADC_UART(channel, value), !m_Board->MFCReady()};
        ReportUARTResult(answer, fmt::format("Get({})", channel));
        m_Channels.at(static_cast<std::size_t>(channel))
            ->ShowRead(answer.Taken() ? std::optional(value) : std::nullopt, ToQt(answer.Text()));
    });
    if (!done)
        m_Update->stop(); // told once, not ten times a second
}

void UARTsWindow::ReadTickedChannels() {
    // A report lets events be handled; a tick among them waits for the next one.
    if (std::exchange(m_Reading, true))
        return;
    for (int channel = 0; channel < Channels; ++channel) {
        if (m_Channels.at(static_cast<std::size_t>(channel))->OnTimer())
            Get(channel);
    }
    m_Reading = false;
}

void UARTsWindow::ReportUARTResult(const BoardAnswer& answer, const std::string& text) {
    if (answer.Taken())
        return;
    m_Errors->addItem(
        ToQt(fmt::format("{} - {} failed  [{}]", DateText(m_Station.World.Time.Now(), "hh:nn:ss"),
                         text, answer.Text())));
    m_Errors->setCurrentRow(m_Errors->count() - 1);
    m_Station.World.Events.ProcessPendingEvents();
}

void UARTsWindow::GiveChannelsBack() {
    // No window would show any more what this one has demanded: the channels go back to what
    // the sliders of the main window stand for.
    for (int channel = 0; channel < Channels; ++channel) {
        if (!std::exchange(m_Taken.at(static_cast<std::size_t>(channel)), false))
            continue;
        // What is refused here stays to be switched off when the program is closed. In analog
        // mode the sliders do not reach the link.
        if (!m_Board->IsDigitalSetup())
            m_Station.Outputs.SetDigital(*m_Board, channel, 0);
        m_Station.Outputs.Set(*m_Board, channel, m_Board->DAC(channel));
    }
    m_Board.reset();
}

void UARTsWindow::ProcedureRunning(bool running) {
    setEnabled(!running);
    if (!running && std::exchange(m_ClosedMeanwhile, false))
        Guarded(m_Station.World.Messages, [this] { GiveChannelsBack(); });
    if (running || m_Board == nullptr)
        m_Update->stop();
    else
        m_Update->start();
}

void UARTsWindow::closeEvent(QCloseEvent* event) {
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
