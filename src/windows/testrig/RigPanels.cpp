#include "windows/testrig/RigPanels.h"

#include "platform/text/Text.h"
#include "windows/widgets/ADCBar.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QGridLayout>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace ombrix {

namespace {

constexpr QColor BarColour(0, 128, 222);
constexpr int BarHeight = 18;
constexpr int TickLength = 4;
constexpr int ComfortableWidth = 480;

} // namespace

RampProgress::RampProgress(QWidget* parent) : QWidget(parent) {
    Named(this, QStringLiteral("picCurrentJob"), tr("Progress of the present step"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize RampProgress::sizeHint() const {
    return {ComfortableWidth, BarHeight + TickLength + fontMetrics().height()};
}

void RampProgress::Begin(const RampStep& ramp) {
    m_Ramp = ramp;
    m_Elapsed_s = 0.0;
    setAccessibleDescription(ToQt(ramp.Name));
    update();
}

void RampProgress::Show(double elapsed_s) {
    const int before = PlaceOf(m_Elapsed_s);
    m_Elapsed_s = elapsed_s;
    if (PlaceOf(elapsed_s) != before)
        update();
}

void RampProgress::Clear() {
    Begin({});
}

QRect RampProgress::BarOnScreen() const {
    // The figures at both ends of the scale stand half beside it.
    const int margin = fontMetrics().horizontalAdvance(QStringLiteral("000 s")) / 2;
    return {margin, 0, width() - 2 * margin, BarHeight};
}

int RampProgress::PlaceOf(double time_s) const {
    const QRect bar = BarOnScreen();
    const double span_s = m_Ramp.Duration_s();
    const double share = span_s > 0.0 ? std::clamp(time_s / span_s, 0.0, 1.0) : 0.0;
    return bar.left() + static_cast<int>(share * bar.width());
}

void RampProgress::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect bar = BarOnScreen();
    painter.fillRect(bar, palette().color(QPalette::Base));
    QRect done = bar;
    done.setRight(PlaceOf(m_Elapsed_s) - 1);
    painter.fillRect(done, BarColour);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(bar.adjusted(0, 0, -1, -1));
    painter.setPen(palette().color(QPalette::WindowText));
    const bool hasScale = m_Ramp.Levels > 0;
    for (std::int32_t level = 0; hasScale && level <= m_Ramp.Levels; ++level) {
        const double time_s = level * m_Ramp.LevelDuration_s;
        const int x = std::min(PlaceOf(time_s), bar.right());
        painter.drawLine(x, bar.bottom() + 1, x, bar.bottom() + TickLength);
        const QString figure = ToQt(GeneralText(time_s)) + QStringLiteral(" s");
        QRect place(QPoint(), fontMetrics().size(Qt::TextSingleLine, figure));
        place.moveCenter({x, 0});
        place.moveTop(bar.bottom() + TickLength + 1);
        painter.drawText(place, Qt::AlignCenter, figure);
    }
}

namespace {

enum Row { SerialRow, HeadingRow, BarsRow, InputsRow, OutputsRow };

} // namespace

RigBoardPanel::RigBoardPanel(int index, std::shared_ptr<AIB> board, QWidget* parent)
    : QWidget(parent), m_Board(std::move(board)) {
    auto* serial =
        new ValueLabel(ElementName("lblAIBSerial", index), tr("Board %1").arg(index + 1), this);
    serial->ShowValue(tr("Board %1: AIB_%2: %3")
                          .arg(index + 1)
                          .arg(m_Board->DevSerialNum())
                          .arg(ToQt(m_Board->BusTypeText())));
    QFont strong = serial->font();
    strong.setBold(true);
    serial->setFont(strong);
    auto* grid = new QGridLayout(this);
    grid->addWidget(serial, SerialRow, 0, 1, AIB::DACChannels + 1);
    grid->addWidget(MakeCaption(tr("A In"), this), InputsRow, 0, Qt::AlignRight);
    grid->addWidget(MakeCaption(tr("D Out"), this), OutputsRow, 0, Qt::AlignRight);
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        AddChannel(*grid, index, channel);
    grid->setRowStretch(BarsRow, 1);
    grid->setColumnStretch(AIB::DACChannels + 1, 1);
}

void RigBoardPanel::AddChannel(QGridLayout& grid, int index, std::int32_t channel) {
    const int element = index * AIB::DACChannels + channel;
    const QString place = tr("%1 of board %2").arg(channel).arg(index + 1);
    Channel& controls = m_Channels.at(static_cast<std::size_t>(channel));
    controls.Bar = new ADCBar(element, tr("Bars of input and output %1").arg(place), this);
    controls.Input = new ValueLabel(ElementName("lblIP", element), tr("Input %1").arg(place), this);
    controls.Output =
        new ValueLabel(ElementName("lblOP", element), tr("Output %1").arg(place), this);
    for (ValueLabel* value : {controls.Input, controls.Output}) {
        value->setAlignment(Qt::AlignCenter);
        value->ReserveFor(QStringLiteral("000000"));
    }
    const int column = channel + 1;
    grid.addWidget(MakeCaption(QString::number(channel), this), HeadingRow, column,
                   Qt::AlignHCenter);
    grid.addWidget(controls.Bar, BarsRow, column, Qt::AlignHCenter);
    grid.addWidget(controls.Input, InputsRow, column, Qt::AlignHCenter);
    grid.addWidget(controls.Output, OutputsRow, column, Qt::AlignHCenter);
}

void RigBoardPanel::Refresh() {
    for (std::int32_t channel = 0; channel < AIB::DACChannels; ++channel)
        RefreshChannel(channel);
}

void RigBoardPanel::RefreshChannel(std::int32_t channel) {
    const Channel& controls = m_Channels.at(static_cast<std::size_t>(channel));
    const std::int32_t output = m_Board->DAC(channel);
    controls.Output->ShowValue(QString::number(output));
    std::int32_t input = 0;
    const AIBStatus status = m_Board->GetADC(channel, input);
    if (status != Status::NoError) {
        controls.Input->ShowFailure(ToQt(AIB::AIBErrorStr(status)));
        controls.Bar->Draw(std::nullopt, output);
        return;
    }
    controls.Input->ShowValue(QString::number(input));
    controls.Bar->Draw(input, output);
}

} // namespace ombrix
