#include "windows/procedure/ProcedureTimes.h"

#include "platform/ports/Clock.h"

#include <QObject>

#include <algorithm>
#include <cmath>

namespace ombrix {

QString DurationText(double seconds) {
    const auto whole = static_cast<int>(std::ceil(seconds));
    constexpr int minute = 60;
    return QStringLiteral("%1:%2").arg(whole / minute).arg(whole % minute, 2, 10, QLatin1Char('0'));
}

ProcedureTimes::ProcedureTimes(Station& station)
    : m_Station(station), m_Procedures(station.Procedures.Listen([this](bool running) {
          if (running)
              m_Begun_s = MonotonicSeconds(m_Station.World.Time);
      })) {}

void ProcedureTimes::Look() {
    const ProcedureGate& gate = m_Station.Procedures;
    if (gate.Progress() == m_Told)
        return;
    m_Told = gate.Progress();
    m_ToldAt_s = MonotonicSeconds(m_Station.World.Time);
}

double ProcedureTimes::Elapsed_s() const {
    return MonotonicSeconds(m_Station.World.Time) - m_Begun_s;
}

std::optional<double> ProcedureTimes::Left_s() const {
    const double now_s = MonotonicSeconds(m_Station.World.Time);
    if (m_Told.Left_s)
        return std::max(0.0, *m_Told.Left_s - (now_s - m_ToldAt_s));
    // Too early a guess would jump.
    constexpr double leastShare = 0.02;
    if (m_Told.Share < leastShare)
        return std::nullopt;
    const double whole_s = (m_ToldAt_s - m_Begun_s) / m_Told.Share;
    return std::max(0.0, whole_s - (now_s - m_Begun_s));
}

QString ProcedureTimes::Text() const {
    const auto left_s = Left_s();
    const QString elapsed = DurationText(std::floor(Elapsed_s()));
    return left_s
               ? QObject::tr("Elapsed %1 of %2").arg(elapsed, DurationText(Elapsed_s() + *left_s))
               : QObject::tr("Elapsed %1").arg(elapsed);
}

} // namespace ombrix
