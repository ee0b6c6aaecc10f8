#include "windows/widgets/PlotAxis.h"

#include "platform/text/Text.h"
#include "windows/widgets/Controls.h"
#include "windows/widgets/QtText.h"

#include <QBuffer>
#include <QImage>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace ombrix {

namespace {

constexpr std::array<Colour, 10> SeriesColours = {{{0, 90, 180},
                                                   {214, 96, 0},
                                                   {0, 130, 80},
                                                   {170, 20, 60},
                                                   {110, 60, 170},
                                                   {120, 90, 0},
                                                   {0, 140, 160},
                                                   {200, 60, 150},
                                                   {90, 90, 90},
                                                   {60, 150, 20}}};

int DecimalsOf(double step) {
    return std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
}

} // namespace

QColor SeriesColour(std::size_t series, const QColor& background) {
    return ReadableColour(SeriesColours.at(series % SeriesColours.size()), background);
}

QPalette PaperPalette() {
    return {Qt::black, Qt::white, Qt::lightGray, Qt::darkGray, Qt::gray, Qt::black, Qt::white};
}

std::string PngOf(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.save(&buffer, "PNG"))
        throw std::runtime_error("The picture could not be made.");
    return bytes.toStdString();
}

QColor FaintInk(const QPalette& colours) {
    QColor faint = colours.color(QPalette::Text);
    faint.setAlphaF(0.25F);
    return faint;
}

double NiceStep(double range, double wanted) {
    const double raw = range / wanted;
    const double power = std::pow(10.0, std::floor(std::log10(raw)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (raw <= factor * power)
            return factor * power;
    }
    return 10.0 * power;
}

std::vector<double> TicksIn(double least, double largest, double step) {
    std::vector<double> ticks;
    constexpr double hair = 1e-9;
    const double last = std::floor(largest / step + hair);
    for (double number = std::ceil(least / step - hair); number <= last; ++number)
        ticks.push_back(number * step);
    return ticks;
}

QString TickText(double value, double step) {
    // Not "-0".
    return ToQt(FixedText(std::abs(value) < step / 2 ? 0.0 : value, DecimalsOf(step)));
}

double NiceTimeStep(double range_s, double wanted) {
    constexpr double second = 1.0;
    constexpr double minute = 60.0;
    constexpr double hour = 3600.0;
    const double raw_s = range_s / wanted;
    if (raw_s < second)
        return NiceStep(range_s, wanted);
    for (const double unit_s : {second, minute}) {
        for (const double factor : {1.0, 2.0, 5.0, 10.0, 15.0, 30.0}) {
            if (raw_s <= factor * unit_s)
                return factor * unit_s;
        }
    }
    for (const double factor : {1.0, 2.0, 3.0, 6.0, 12.0}) {
        if (raw_s <= factor * hour)
            return factor * hour;
    }
    return NiceStep(range_s / hour, wanted) * hour;
}

QString TimeTickText(double time_s, double step_s, double largest_s) {
    constexpr double longestInSeconds = 120.0;
    constexpr int minute = 60;
    if (largest_s < longestInSeconds)
        return TickText(time_s, step_s);
    const int decimals = step_s < 1.0 ? DecimalsOf(step_s) : 0;
    const double scale = std::pow(10.0, decimals);
    const auto units = static_cast<std::int64_t>(std::llround(std::abs(time_s) * scale));
    const auto perSecond = static_cast<std::int64_t>(scale);
    const std::int64_t seconds = units / perSecond;
    QString text = QStringLiteral("%1%2:%3:%4")
                       .arg(time_s < 0 && units > 0 ? QStringLiteral("-") : QString())
                       .arg(seconds / minute / minute)
                       .arg(seconds / minute % minute, 2, 10, QLatin1Char('0'))
                       .arg(seconds % minute, 2, 10, QLatin1Char('0'));
    if (decimals > 0)
        text += QStringLiteral(".%1").arg(units % perSecond, decimals, 10, QLatin1Char('0'));
    return text;
}

} // namespace ombrix
