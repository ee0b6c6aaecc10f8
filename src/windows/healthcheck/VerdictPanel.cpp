#include "windows/healthcheck/VerdictPanel.h"

#include "platform/text/Text.h"
#include "windows/widgets/QtText.h"

#include <QVBoxLayout>

namespace ombrix {

VerdictPanel::VerdictPanel(QWidget* parent)
    : QWidget(parent), m_Verdict(new ValueLabel(QStringLiteral("lblVerdict"), tr("Verdict"), this)),
      m_Counts(new ValueLabel(QStringLiteral("lblCounts"), tr("Steps"), this)),
      m_Reason(new ValueLabel(QStringLiteral("lblReason"), tr("Reason"), this)) {
    constexpr double large = 1.4;
    QFont face = font();
    face.setBold(true);
    face.setPointSizeF(face.pointSizeF() * large);
    m_Verdict->setFont(face);
    auto* lines = new QVBoxLayout(this);
    lines->setContentsMargins(0, 0, 0, 0);
    for (ValueLabel* line : {m_Verdict, m_Counts, m_Reason}) {
        line->CutToFit();
        lines->addWidget(line);
    }
    Clear();
}

void VerdictPanel::Clear() {
    m_Verdict->ShowInPaletteColour();
    m_Verdict->ShowValue(tr("No verdict yet"));
    m_Counts->ShowValue(QStringLiteral("-"));
    m_Reason->ShowValue(QStringLiteral("-"));
}

void VerdictPanel::Show(const QString& verdict, bool isBad, const HealthCheckFigures& check) {
    constexpr Colour red{192, 0, 0};
    if (isBad)
        m_Verdict->ShowInColour(red);
    else
        m_Verdict->ShowInPaletteColour();
    m_Verdict->ShowValue(verdict);
    m_Counts->ShowValue(ToQt(CountsText(check)));
    m_Reason->ShowValue(ToQt(WorstText(check)));
}

void VerdictPanel::ShowRunning(const HealthCheckFigures& check) {
    const bool isBad = check.Failed > 0;
    Show(isBad ? tr("✗ Out of limits so far") : tr("Running"), isBad, check);
    m_Counts->ShowValue(tr("%1 steps passed, %2 failed").arg(check.Passed).arg(check.Failed));
}

void VerdictPanel::ShowEnd(const HealthCheckFigures& check, const HealthCheckLimits& limits,
                           const std::string& reason) {
    constexpr double percent = 100.0;
    const bool isPass = check.Failed == 0 && IsComplete(check);
    const QString sign = !isPass            ? QStringLiteral("✗ ")
                         : check.Passed > 0 ? QStringLiteral("✓ ")
                                            : QString();
    Show(sign + QLatin1String(VerdictOf(check)), !isPass, check);
    m_Counts->ShowValue(
        ToQt(CountsText(check)) +
        tr("; limit %1 % of full scale").arg(ToQt(GeneralText(limits.Limit_share * percent))));
    if (!reason.empty())
        m_Reason->ShowValue(ToQt(reason).simplified());
}

} // namespace ombrix
