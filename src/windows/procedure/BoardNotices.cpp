#include "windows/procedure/BoardNotices.h"

#include "board/Detection.h"
#include "board/eprom/PartialWrite.h"
#include "platform/ports/Clock.h"
#include "platform/text/OleDate.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"
#include "windows/widgets/ValueLabel.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QTabBar>
#include <QVBoxLayout>

namespace ombrix {

namespace {

/// Before the second is over that an operator may wait for it.
constexpr double BannerAfter_s = 0.8;

constexpr QColor SimulationGround(255, 200, 60);
constexpr QColor AlarmGround(176, 0, 32);
constexpr QColor ReadOnlyGround(64, 78, 100);

void ColourStrip(QLabel& strip, const QColor& ground, const QColor& text) {
    strip.setAutoFillBackground(true);
    QPalette palette = strip.palette();
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    strip.setPalette(palette);
    constexpr int margin = 3;
    strip.setMargin(margin);
    strip.hide();
}

QLabel* MakeNotice(const char* objectName, const QColor& ground, QWidget* parent) {
    auto* notice = new QLabel(parent);
    notice->setObjectName(QLatin1String(objectName));
    notice->setTextFormat(Qt::PlainText);
    notice->setWordWrap(true);
    ColourStrip(*notice, ground, Qt::white);
    return notice;
}

QIcon DrivingIcon() {
    constexpr int size = 12;
    QPixmap dot(size, size);
    dot.fill(Qt::transparent);
    QPainter painter(&dot);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(AlarmGround);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(1, 1, size - 2, size - 2);
    QIcon icon(dot);
    icon.addPixmap(dot, QIcon::Disabled); // while a procedure runs it counts most
    return icon;
}

} // namespace

BoardNotices::BoardNotices(Station& station, QTabBar& tabs, const std::string& simulation,
                           QWidget* parent)
    : QWidget(parent), m_Station(station), m_Tabs(tabs),
      m_Simulation(new ValueLabel(QStringLiteral("lblSimulation"), tr("Simulation"), this)),
      m_Lost(MakeNotice("lblBoardLost", AlarmGround, this)),
      m_ReadOnly(MakeNotice("lblReadOnly", ReadOnlyGround, this)),
      m_PartialWrite(MakeNotice("lblPartialWrite", AlarmGround, this)) {
    ColourStrip(*m_Simulation, SimulationGround, Qt::black);
    m_Simulation->CutToFit();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_Lost);
    layout->addWidget(m_ReadOnly);
    layout->addWidget(m_PartialWrite);
    // Beside the tabs: a line of its own would push the panels off a small screen.
    auto* row = new QHBoxLayout;
    row->addWidget(&m_Tabs);
    row->addWidget(m_Simulation, 1);
    layout->addLayout(row);
    if (simulation.empty())
        return;
    m_Simulation->ShowValue(tr("Simulated bench: %1").arg(ToQt(simulation)));
    m_Simulation->show();
}

void BoardNotices::NoteAnswer(bool answered) {
    const double now_s = MonotonicSeconds(m_Station.World.Time);
    if (answered)
        m_Since_s.reset();
    else if (!m_Since_s)
        m_Since_s = now_s;
    ShowLost(m_Since_s && now_s - *m_Since_s >= BannerAfter_s);
}

void BoardNotices::ShowLost(bool lost) {
    if (lost == IsLost())
        return;
    m_Lost->setVisible(lost);
    if (!lost) {
        m_Banner.reset();
        return;
    }
    const AIB& board = *m_Station.CurrentAIB;
    m_Banner = IsoText(m_Station.World.Time.Now());
    QString text = tr("Board %1 (%2) has not answered since %3.")
                       .arg(board.DevSerialNum())
                       .arg(ToQt(board.BusTypeText()), ToQt(*m_Banner));
    if (board.MayDrive())
        text +=
            tr(" AIR MAY STILL BE FLOWING: close the air supply and switch off the power of the "
               "Aeration Control Unit.");
    text += tr(" Check its cable, then detect the boards again (F5).");
    m_Lost->setText(text);
    m_Lost->setAccessibleName(text);
}

bool BoardNotices::MarkTabs() {
    ShowReadOnly();
    ShowPartialWrite();
    bool anyDrives = false;
    for (int tab = 0; tab < m_Tabs.count() && tab < m_Station.AIBList.AIBCount(); ++tab) {
        const AIB& board = *m_Station.AIBList.AIB(tab);
        anyDrives = anyDrives || board.Drives();
        if (board.Drives() == m_Tabs.tabIcon(tab).isNull())
            m_Tabs.setTabIcon(tab, board.Drives() ? DrivingIcon() : QIcon());
        m_Tabs.setTabToolTip(tab, TipOf(board));
        const QString caption = ToQt(BoardCaption(m_Station, board));
        // A detection has captions of its own.
        if (!m_Station.Procedures.Running() && m_Tabs.tabText(tab) != caption)
            m_Tabs.setTabText(tab, caption);
    }
    return anyDrives;
}

QString BoardNotices::TipOf(const AIB& board) const {
    const std::string refusal = m_Station.Claims.Refusal(board.DevSerialNum());
    if (!refusal.empty())
        return tr("Read only: %1.").arg(ToQt(refusal));
    return board.Drives() ? tr("Outputs of this board stand above zero.") : QString();
}

void BoardNotices::ShowReadOnly() {
    const AIB& board = *m_Station.CurrentAIB;
    const std::string refusal = m_Station.Claims.Refusal(board.DevSerialNum());
    m_IsReadOnly = m_Tabs.count() > 0 && !refusal.empty();
    m_ReadOnly->setVisible(m_IsReadOnly);
    const QString text = tr("Read only: board %1 (%2) is %3. When that is over, detect the "
                            "boards again (F5).")
                             .arg(board.DevSerialNum())
                             .arg(ToQt(board.BusTypeText()), ToQt(refusal));
    if (!m_IsReadOnly || text == m_ReadOnly->text())
        return;
    m_ReadOnly->setText(text);
    m_ReadOnly->setAccessibleName(text);
}

void BoardNotices::Reset() {
    m_Since_s.reset();
    ShowLost(false);
    ShowReadOnly();
    ShowPartialWrite();
}

void BoardNotices::ShowPartialWrite() {
    if (m_Station.Procedures.Running())
        return; // it may be writing now
    const auto write = FindPartialWrite(m_Station.World, m_Station.CurrentAIB->SerialNumber());
    m_PartialWrite->setVisible(write.has_value());
    if (!write)
        return;
    const QString text =
        tr("The EPROM has been %1. Repeat that, or restore the content from before (F5).")
            .arg(ToQt(PartialWriteText(*write)));
    m_PartialWrite->setText(text);
    m_PartialWrite->setAccessibleName(text);
}

} // namespace ombrix
