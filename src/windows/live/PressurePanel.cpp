#include "windows/live/PressurePanel.h"

#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QGridLayout>

namespace ombrix {

namespace {

constexpr Colour White{255, 255, 255};
constexpr Colour Red{255, 0, 0};
constexpr double Patience_s = 10.0;

} // namespace

PressurePanel::PressurePanel(Station& station, QWidget* parent)
    : QWidget(parent),
      m_Decimal(new ValueLabel(QStringLiteral("Label2"), tr("Pressure register"), this)),
      m_Hexadecimal(
          new ValueLabel(QStringLiteral("Label3"), tr("Pressure register, hexadecimal"), this)),
      m_SinceChange(station.World.Time) {
    constexpr int margin = 4;
    m_Decimal->setMargin(margin);
    m_Decimal->setAlignment(Qt::AlignCenter);
    m_Decimal->setAutoFillBackground(true);
    m_Decimal->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("-0000000000")));
    ShowBackground(White);
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(MakeCaption(tr("Pressure register:"), this), 0, 0, 1, 2);
    layout->addWidget(m_Decimal, 1, 0);
    layout->addWidget(m_Hexadecimal, 1, 1);
    layout->setColumnStretch(1, 1);
}

void PressurePanel::ShowBackground(Colour colour) {
    QPalette own;
    own.setColor(QPalette::Window, ToQt(colour));
    own.setColor(QPalette::WindowText, Qt::black);
    if (own.color(QPalette::Window) != m_Decimal->palette().color(QPalette::Window))
        m_Decimal->setPalette(own);
}

void PressurePanel::Refresh(AIB& board) {
    std::int32_t pressure = 0;
    const AIBStatus status = board.ReadReg(AIB::PressureRegister, pressure);
    ShowReading(status == Status::NoError ? std::optional(pressure) : std::nullopt,
                ToQt(AIB::AIBErrorStr(status)));
}

void PressurePanel::ShowReading(std::optional<std::int32_t> pressure, const QString& reason) {
    if (!pressure) {
        m_Decimal->ShowFailure(reason);
        m_Hexadecimal->ShowFailure(reason);
        ShowBackground(White);
        return;
    }
    const QString text = NumberText(*pressure, NumberBase::Decimal);
    if (text != m_Decimal->text()) {
        m_SinceChange.StartTimer(true);
        m_Decimal->ShowValue(text);
        m_Hexadecimal->ShowValue(NumberText(*pressure, NumberBase::Hexadecimal));
        return;
    }
    ShowBackground(m_SinceChange.ElapsedTime() < Patience_s ? White : Red);
}

} // namespace ombrix
