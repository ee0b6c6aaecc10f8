#include "windows/live/GIOPanel.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/Guarded.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QPushButton>
#include <QSignalBlocker>

namespace ombrix {

namespace {

/// The extended output that switches the power of the first MFC; the second follows.
constexpr int FirstPowerPin = 8;

} // namespace

GIOPanel::GIOPanel(Station& station, QWidget* parent)
    : QGroupBox(tr("General IO (GIO)"), parent), m_Station(station), m_Mask(nullptr) {
    auto* grid = new QGridLayout;
    constexpr int columnSpacing = 2;
    grid->setHorizontalSpacing(columnSpacing);
    int row = 0;
    for (const QString& caption : {tr("Pin"), tr("Output"), tr("Level")})
        grid->addWidget(MakeCaption(caption, this), row++, 0);
    for (int pin = 0; pin < AIB::GPIOPins; ++pin)
        AddPin(*grid, pin);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(MakeFooter());
    ShowTold();
}

void GIOPanel::AddPin(QGridLayout& grid, int pin) {
    const auto index = static_cast<std::size_t>(pin);
    auto* isOutput =
        Named(new QCheckBox(this), ElementName("chkGIO", pin), tr("Pin %1 is an output").arg(pin));
    auto* output = Named(new QCheckBox(this), ElementName("chkGIOOn", pin),
                         tr("Output level of pin %1").arg(pin));
    auto* input = new ValueLabel(ElementName("lblGIOInputVal", pin),
                                 tr("Input level of pin %1").arg(pin), this);
    input->setAlignment(Qt::AlignCenter);
    input->CutToFit();
    m_IsOutput.at(index) = isOutput;
    m_Output.at(index) = output;
    m_Input.at(index) = input;
    isOutput->setToolTip(tr("Makes pin %1 an output.").arg(pin));
    output->setToolTip(tr("What pin %1 is told").arg(pin));
    connect(isOutput, &QCheckBox::toggled, this, &GIOPanel::ChangeDirections);
    connect(output, &QCheckBox::toggled, this, [this, pin](bool high) { SetOutput(pin, high); });

    const int column = pin + 1;
    int row = 0;
    grid.addWidget(MakeCaption(QString::number(pin), this), row++, column, Qt::AlignCenter);
    grid.addWidget(isOutput, row++, column, Qt::AlignCenter);
    // Both share a cell that is as high as the higher one, so that nothing moves.
    grid.addWidget(output, row, column, Qt::AlignCenter);
    grid.addWidget(input, row, column, Qt::AlignCenter);
    grid.setRowMinimumHeight(row, output->sizeHint().height());
    grid.setColumnStretch(column, 1);
}

QWidget* GIOPanel::MakeFooter() {
    auto* footer = new QWidget(this);
    m_Mask = new ValueLabel(QStringLiteral("lblGIOValHex"), tr("Direction mask"), footer);
    m_Mask->ReserveFor(QStringLiteral("FFFFF"));
    auto* update = MakeButton(QStringLiteral("cmdUpdate"), tr("Update"), footer);
    update->setToolTip(tr("Reads the whole live panel at once."));
    connect(update, &QPushButton::clicked, this, &GIOPanel::UpdateWanted);
    auto* explanation = new QHBoxLayout;
    explanation->addWidget(MakeCaption(tr("A tick represents an Output"), footer));
    m_Answer = new ValueLabel(QStringLiteral("lblGIOAnswer"), tr("What was refused"), footer);
    m_Answer->setAlignment(Qt::AlignCenter);
    m_Answer->CutToFit();
    explanation->addWidget(m_Answer, 1);
    explanation->addWidget(MakeCaption(tr("Mask:"), footer));
    explanation->addWidget(m_Mask);
    auto* power = new QHBoxLayout;
    power->addWidget(MakeCaption(tr("MFC Power Detect: 8 = pin 22, 9 = pin 21:"), footer));
    power->addWidget(MakePowerBox(0, tr("Power 1"), footer));
    power->addWidget(MakePowerBox(1, tr("Power 2"), footer));
    power->addStretch();
    power->addWidget(update);
    SetTabOrder({m_Power[0], m_Power[1], update});
    auto* layout = new QVBoxLayout(footer);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(explanation);
    layout->addLayout(power);
    return footer;
}

QCheckBox* GIOPanel::MakePowerBox(int index, const QString& caption, QWidget* parent) {
    auto* box = MakeCheckBox(ElementName("chkExtGPIO", index), caption, parent);
    m_Power.at(static_cast<std::size_t>(index)) = box;
    box->setToolTip(tr("Switches the extended output %1 of the board.").arg(FirstPowerPin + index));
    connect(box, &QCheckBox::toggled, this, [this, index, box](bool on) {
        Tell(box->text(),
             [&] { return m_Station.Outputs.SetExtendedPin(Board(), FirstPowerPin + index, on); });
    });
    return box;
}

void GIOPanel::Reset() {
    constexpr std::int32_t firstPin = 1;
    // The pins of a board that another program has stay as they are.
    if (m_Station.Claims.Refusal(Board().DevSerialNum()).empty())
        Guarded(m_Station.World.Messages, [this] {
            ShowAnswer(tr("Directions"), m_Station.Outputs.SetDirections(Board(), firstPin));
        });
}

void GIOPanel::ShowBoard() {
    for (QCheckBox* power : m_Power)
        power->setEnabled(Board().IsUsb());
    if (m_Answered != &Board())
        m_Answer->ShowValue({});
    ShowTold();
}

void GIOPanel::ShowTold() {
    const auto show = [](QCheckBox& box, bool ticked) {
        const QSignalBlocker quiet(box);
        box.setChecked(ticked);
    };
    for (std::size_t pin = 0; pin < Pins; ++pin) {
        const auto number = static_cast<std::int32_t>(pin);
        show(*m_IsOutput.at(pin), (Board().Directions() >> number & 1) != 0);
        show(*m_Output.at(pin), Board().PinIsSet(number).value_or(false));
    }
    for (std::size_t index = 0; index < m_Power.size(); ++index)
        show(*m_Power.at(index),
             Board()
                 .ExtendedIsSet(FirstPowerPin + static_cast<std::int32_t>(index))
                 .value_or(false));
    m_Mask->ShowValue(ToQt(HexText(Board().Directions())));
    ShowGIOColumns();
}

void GIOPanel::Tell(const QString& output, const std::function<BoardAnswer()>& tell) {
    BoardAnswer answer{Status::AccessDenied};
    Guarded(m_Station.World.Messages, [&] {
        m_Station.Claims.Require(Board().DevSerialNum());
        answer = tell();
    });
    ShowAnswer(output, answer);
    ShowTold(); // what was refused is not shown as done
}

void GIOPanel::ShowAnswer(const QString& output, const BoardAnswer& answer) {
    m_Answered = &Board();
    m_Answer->ShowValue(answer.Taken() ? QString() : tr("%1: %2").arg(output, ToQt(answer.Text())));
}

std::int32_t GIOPanel::TickedPins() const {
    std::int32_t mask = 0;
    for (std::size_t pin = 0; pin < Pins; ++pin)
        mask |= m_IsOutput.at(pin)->isChecked() ? 1 << pin : 0;
    return mask;
}

void GIOPanel::ChangeDirections() {
    Tell(tr("Directions"),
         [this] { return m_Station.Outputs.SetDirections(Board(), TickedPins()); });
}

void GIOPanel::ShowGIOColumns() {
    for (std::size_t pin = 0; pin < Pins; ++pin) {
        const bool isOutput = m_IsOutput.at(pin)->isChecked();
        m_Output.at(pin)->setVisible(isOutput);
        m_Input.at(pin)->setVisible(!isOutput);
    }
}

void GIOPanel::SetOutput(int pin, bool high) {
    Tell(tr("Pin %1").arg(pin), [&] { return m_Station.Outputs.SetPin(Board(), pin, high); });
    emit UpdateWanted();
}

void GIOPanel::Refresh() {
    ShowTold(); // procedures tell pins and power too
    for (std::size_t pin = 0; pin < Pins; ++pin) {
        if (m_IsOutput.at(pin)->isChecked())
            continue;
        std::int32_t level = 0;
        const AIBStatus status = Board().GetGPI(static_cast<std::int32_t>(pin), level);
        if (status == Status::NoError)
            m_Input.at(pin)->ShowValue(QString::number(level));
        else
            m_Input.at(pin)->ShowFailure(ToQt(AIB::AIBErrorStr(status)));
    }
}

} // namespace ombrix
