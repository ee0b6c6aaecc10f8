#include "windows/main/DACPanel.h"

#include "board/Outputs.h"
#include "platform/text/Rounding.h"
#include "platform/text/Text.h"
#include "windows/main/PressurePanel.h"
#include "windows/main/RecordingBox.h"
#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include <utility>

namespace ombrix {

namespace {

QString ChannelHeading(int channel) {
    // The air channels are 1 and 2 to the operator.
    constexpr int airChannels = 2;
    return channel < airChannels ? DACChannel::tr("DAC %1 (Ch %2)").arg(channel).arg(channel + 1)
                                 : DACChannel::tr("DAC %1").arg(channel);
}

} // namespace

DACChannel::DACChannel(int channel, QWidget* parent)
    : QWidget(parent), m_Channel(channel),
      m_Slider(MakeDemandSlider(ElementName("sldDACValue", channel), tr("DAC %1").arg(channel),
                                SliderScale::Top, this)),
      m_Bar(new ADCBar(channel, tr("Bars of ADC %1 and DAC %1").arg(channel), this)),
      m_Output(new ValueLabel(ElementName("lblDACValue", channel),
                              tr("Value of DAC %1").arg(channel), this)),
      m_Input(new ValueLabel(ElementName("lblADC", channel), tr("Reading of ADC %1").arg(channel),
                             this)),
      m_Text(Named(new QLineEdit(this), ElementName("txtDACVal", channel),
                   tr("New value of DAC %1").arg(channel))) {
    m_Text->setToolTip(
        tr("A value from 0 to %1, taken with Enter").arg(SliderScale::LargestDemand));
    LayOut();
    connect(m_Slider, &QSlider::valueChanged, this,
            [this](int position) { emit SliderChanged(m_Channel, position); });
    connect(m_Text, &QLineEdit::returnPressed, this, &DACChannel::TakeText);
}

void DACChannel::LayOut() {
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    QLabel* heading = MakeCaption(ChannelHeading(m_Channel), this);
    for (QLabel* label : {heading, static_cast<QLabel*>(m_Output), static_cast<QLabel*>(m_Input)})
        label->setAlignment(Qt::AlignCenter);
    m_Text->setAlignment(Qt::AlignCenter);
    constexpr int textWidth = 84;
    m_Text->setMaximumWidth(textWidth);
    int row = 0;
    layout->addWidget(heading, row++, 0, 1, 2);
    layout->addWidget(m_Slider, row, 0, Qt::AlignRight);
    layout->addWidget(m_Bar, row++, 1, Qt::AlignLeft);
    layout->setRowStretch(1, 1);
    layout->addWidget(m_Output, row++, 0, 1, 2);
    layout->addWidget(m_Input, row++, 0, 1, 2);
    layout->addWidget(m_Text, row++, 0, 1, 2, Qt::AlignHCenter);
}

void DACChannel::ShowOutput(std::int32_t taken_bits, const BoardAnswer& answer, NumberBase base) {
    m_Slider->setValue(SliderScale::PositionOf(taken_bits));
    m_Text->setText(QString::number(taken_bits));
    if (answer.Taken())
        m_Output->ShowValue(NumberText(taken_bits, base));
    else
        m_Output->ShowFailure(ToQt(answer.Text()));
}

void DACChannel::ShowInput(std::optional<std::int32_t> reading, const QString& reason,
                           std::int32_t output_bits, NumberBase base) {
    if (reading)
        m_Input->ShowValue(NumberText(*reading, base));
    else
        m_Input->ShowFailure(reason);
    m_Bar->Draw(reading, output_bits);
}

void DACChannel::TakeValues(bool ready) {
    m_Slider->setEnabled(ready);
    m_Text->setEnabled(ready);
}

void DACChannel::TakeText() {
    if (const auto number = ParseNumber(m_Text->text().toStdString()))
        emit ValueTyped(m_Channel, RoundHalfEven(*number));
}

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
    layout->addStretch(1);
    for (const QString& caption : {tr("D Out"), tr("A In"), tr("Set")})
        layout->addWidget(MakeCaption(caption, column), 0, Qt::AlignRight);
    const QLineEdit model;
    layout->itemAt(layout->count() - 1)->widget()->setFixedHeight(model.sizeHint().height());
    return column;
}

QWidget* DACPanel::MakeSideColumn() {
    auto* column = new QWidget(this);
    m_IsDigitalSetup =
        MakeCheckBox(QStringLiteral("chkIsDigitalSetup"), tr("Is Digital Setup"), column);
    connect(m_IsDigitalSetup, &QCheckBox::clicked, this, &DACPanel::SetDigitalSetup);
    m_MFCsReady = new ValueLabel(QStringLiteral("lblMFCsReady"), tr("MFC readiness"), column);
    m_MFCsReady->ShowValue(tr("MFCs Readt Status"));
    m_Pressure = new PressurePanel(m_Station, column);
    m_Record = new RecordingBox(m_Station, column);
    m_Recorded = new ValueLabel(QStringLiteral("lblRecorded"), tr("Recording"), column);
    m_Recorded->CutToFit();
    connect(m_Record, &RecordingBox::Recorded, m_Recorded, &ValueLabel::ShowValue);
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
    layout->addWidget(m_Recorded);
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
    connect(m_Hexadecimal, &QRadioButton::toggled, this, [this] {
        for (int channel = 0; channel < AIB::DACChannels; ++channel)
            SetDAC(channel, Board().DAC(channel));
    });
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
    for (int channel = 0; channel < AIB::DACChannels; ++channel)
        SetDAC(channel, Board().DAC(channel));
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
    for (DACChannel* channel : m_Channels)
        channel->TakeValues(take);
    for (QWidget* control : std::initializer_list<QWidget*>{m_IsDigitalSetup, m_Record, m_Speed})
        control->setEnabled(take);
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
    m_Channels[0]->TakeValues(ready);
    m_Channels[1]->TakeValues(ready);
}

} // namespace ombrix
