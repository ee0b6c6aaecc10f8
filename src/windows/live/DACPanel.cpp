#include "windows/live/DACPanel.h"

#include "windows/live/PressurePanel.h"
#include "windows/live/RecordingPanel.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <utility>

namespace ombrix {

DACPanel::DACPanel(Station& station, QWidget* parent)
    : QGroupBox(tr("DAC Sliders"), parent), m_Station(station), m_IsDigitalSetup(nullptr),
      m_MFCsReady(nullptr), m_Pressure(nullptr) {
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(MakeCaptionColumn());
    for (int channel = 0; channel < AIB::DACChannels; ++channel) {
        auto* controls = new DACChannel(channel, this);
        m_Channels.at(static_cast<std::size_t>(channel)) = controls;
        connect(controls, &DACChannel::SliderChanged, this, [this](int moved, int position) {
            if (!m_SettingDAC)
                SetDAC(moved, position * 2);
        });
        connect(controls, &DACChannel::ValueTyped, this, &DACPanel::SetDAC);
        layout->addWidget(controls, 1);
    }
    layout->addWidget(MakeSideColumn());
    m_Changes = station.Outputs.Listen([this](const OutputChange& change) { ShowChange(change); });
    m_Notes = station.Feed.Listen([this](const BoardNote& note) { Note(note); });
}

QWidget* DACPanel::MakeCaptionColumn() {
    auto* column = new QWidget(this);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(DACChannel::RowSpacing);
    layout->addStretch(1);
    QLabel* set = MakeCaption(tr("Set"), column);
    const QLineEdit model;
    set->setFixedHeight(model.sizeHint().height());
    const int line = fontMetrics().height() + DACChannel::RowSpacing;
    layout->addWidget(MakeCaption(tr("D Out"), column), 0, Qt::AlignRight);
    layout->addSpacing(line);
    layout->addWidget(MakeCaption(tr("A In"), column), 0, Qt::AlignRight);
    layout->addSpacing(line);
    layout->addWidget(set, 0, Qt::AlignRight);
    layout->addSpacing(line);
    return column;
}

QWidget* DACPanel::MakeSideColumn() {
    auto* column = new QWidget(this);
    m_IsDigitalSetup =
        MakeCheckBox(QStringLiteral("chkIsDigitalSetup"), tr("Is Digital Setup"), column);
    m_IsDigitalSetup->setToolTip(tr("The air channels are driven by the digital MFCs. A change "
                                    "brings them to zero first."));
    connect(m_IsDigitalSetup, &QCheckBox::clicked, this, &DACPanel::SetDigitalSetup);
    m_MFCsReady = new ValueLabel(QStringLiteral("lblMFCsReady"), tr("MFC readiness"), column);
    m_MFCsReady->ShowValue(tr("MFCs Readt Status"));
    m_Pressure = new PressurePanel(m_Station, column);
    m_Record = new RecordingPanel(m_Station, column);
    m_Speed = MakeButton(QStringLiteral("cmdTestSpeed"), tr("Speed"), column);
    m_Speed->setToolTip(tr("Drives both air channels 2000 times in analog, then in digital mode."));
    connect(m_Speed, &QPushButton::clicked, this, &DACPanel::SpeedTestWanted);
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_MFCsReady);
    layout->addWidget(m_IsDigitalSetup);
    layout->addWidget(MakeBaseChoice());
    layout->addStretch(1);
    layout->addWidget(m_Pressure);
    layout->addStretch(1);
    layout->addWidget(m_Record);
    layout->addWidget(m_Speed);
    return column;
}

QWidget* DACPanel::MakeBaseChoice() {
    auto* choice = new QWidget(this);
    m_Hexadecimal = Named(new QRadioButton(tr("Hex"), choice), ElementName("optHexBin", 0),
                          tr("Numbers in hexadecimal"));
    auto* decimal = Named(new QRadioButton(tr("Dec"), choice), ElementName("optHexBin", 1),
                          tr("Numbers in decimal"));
    m_Hexadecimal->setChecked(true);
    for (QRadioButton* base : {m_Hexadecimal, decimal})
        base->setToolTip(tr("How the panel shows outputs and inputs."));
    connect(m_Hexadecimal, &QRadioButton::toggled, this, &DACPanel::ShowOutputs);
    auto* layout = new QHBoxLayout(choice);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_Hexadecimal);
    layout->addWidget(decimal);
    layout->addStretch();
    return choice;
}

NumberBase DACPanel::Base() const {
    return m_Hexadecimal->isChecked() ? NumberBase::Hexadecimal : NumberBase::Decimal;
}

void DACPanel::SetDAC(std::int32_t channel, std::int32_t value) {
    const bool outer = std::exchange(m_SettingDAC, true);
    Guarded(m_Station.World.Messages, [&] {
        // ShowChange shows the answer.
        m_Station.Outputs.Set(Board(), channel, SliderScale::HeldToRange(value));
    });
    m_SettingDAC = outer;
}

void DACPanel::ShowChange(const OutputChange& change) {
    if (&change.Board != &Board())
        return;
    const bool outer = std::exchange(m_SettingDAC, true);
    m_Channels.at(static_cast<std::size_t>(change.Channel))
        ->ShowOutput(Board().DAC(change.Channel), change.Answer, Base());
    m_SettingDAC = outer;
}

void DACPanel::SetDigitalSetup(bool digital) {
    Guarded(m_Station.World.Messages, [&] {
        const BoardAnswer answer = m_Station.Outputs.SetDigitalSetup(Board(), digital);
        if (!answer.Taken())
            m_Station.World.Messages.Ask({"The air channels could not be brought to zero: " +
                                              answer.Text() + "\r\n\r\nThe setup stays as it was.",
                                          MessageIcon::Warning, MessageButtons::Ok});
    });
    ShowDigitalSetup();
}

void DACPanel::HoldRecording(bool hold) {
    m_Record->Hold(hold);
}

void DACPanel::StopRecording() {
    m_Record->StopRecording();
}

void DACPanel::Zero() {
    for (int channel = 0; channel < AIB::DACChannels; ++channel)
        SetDAC(channel, 0);
}

void DACPanel::ShowBoard() {
    ShowDigitalSetup();
    ShowOutputs();
    m_Pressure->ShowReading(std::nullopt, tr("It has not been read yet."));
    for (DACChannel* channel : m_Channels)
        channel->ForgetTyped();
}

void DACPanel::TakeScales(const TrendScales& scales) {
    for (DACChannel* channel : m_Channels)
        channel->TakeScales(scales);
}

void DACPanel::ShowOutputs() {
    const bool isReadOnly = !m_Station.Claims.Refusal(Board().DevSerialNum()).empty();
    for (int channel = 0; channel < AIB::DACChannels; ++channel) {
        if (isReadOnly) // what its outputs stand at, another program knows
            ShowChange({Board(), channel, {Status::AccessDenied}});
        else
            SetDAC(channel, Board().DAC(channel));
    }
}

void DACPanel::ShowDigitalSetup() {
    m_IsDigitalSetup->setChecked(Board().IsDigitalSetup());
}

bool DACPanel::Refresh() {
    // What another program has set up is not ready for this one.
    ShowReadiness(Board().CheckMFCReady() && Board().Programmed());
    bool answered = false;
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel) {
        BoardAnswer answer;
        const auto reading = Board().Reading(channel, &answer);
        answered = answered || reading.has_value();
        m_Channels.at(static_cast<std::size_t>(channel))
            ->ShowInput(reading, ToQt(answer.Text()), Board().DAC(channel), Base());
    }
    m_Pressure->Refresh(Board());
    return answered;
}

void DACPanel::Note(const BoardNote& note) {
    // The panel's own readings are shown as they are made.
    if (&note.Board != &Board() || !m_Station.Procedures.Running())
        return;
    if (note.What == BoardNote::Subject::Input)
        m_FedInputs.at(static_cast<std::size_t>(note.Channel)) = {note.Value_bits, note.Time_s};
    else if (note.What == BoardNote::Subject::Pressure)
        m_FedPressure = {note.Value_bits, note.Time_s};
}

std::optional<std::int32_t> DACPanel::Recent(const Fed& fed) const {
    constexpr double fresh_s = 1.0;
    const bool isFresh = MonotonicSeconds(m_Station.World.Time) - fed.Time_s <= fresh_s;
    return fed.Time_s >= 0.0 && isFresh ? fed.Value_bits : std::nullopt;
}

void DACPanel::ShowFed() {
    const QString reason = tr("The procedure that runs does not read it.");
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel) {
        const auto index = static_cast<std::size_t>(channel);
        m_Channels.at(index)->ShowInput(Recent(m_FedInputs.at(index)), reason, Board().DAC(channel),
                                        Base());
    }
    m_Pressure->ShowReading(Recent(m_FedPressure), reason);
}

void DACPanel::TakeCommands(bool take) {
    m_TakesCommands = take;
    for (DACChannel* channel : m_Channels)
        channel->TakeValues(take);
    for (QWidget* control : std::initializer_list<QWidget*>{m_IsDigitalSetup, m_Speed})
        control->setEnabled(take);
    m_Record->TakeCommands(take);
}

void DACPanel::ShowReadiness(bool ready) {
    constexpr Colour red{255, 0, 0};
    QFont weight = m_MFCsReady->font();
    weight.setBold(!ready);
    m_MFCsReady->setFont(weight);
    m_MFCsReady->ShowValue(ready ? tr("MFCs Ready") : tr("MFCs Not Ready"));
    if (ready)
        m_MFCsReady->ShowInPaletteColour();
    else
        m_MFCsReady->ShowInColour(red);
    m_Channels[0]->TakeValues(ready && m_TakesCommands);
    m_Channels[1]->TakeValues(ready && m_TakesCommands);
}

} // namespace ombrix
