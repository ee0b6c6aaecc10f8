#include "windows/widgets/ReadableColour.h"

#include <algorithm>
#include <cmath>

namespace ombrix {

namespace {

constexpr double LeastContrast = 4.5;

double Linear(double component) {
    return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
    return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
           0.0722 * Linear(colour.blueF());
}

} // namespace

double Contrast(const QColor& first, const QColor& second) {
    constexpr double ambientLight = 0.05;
    const double one = Luminance(first) + ambientLight;
    const double other = Luminance(second) + ambientLight;
    return std::max(one, other) / std::min(one, other);
}

QColor ReadableColour(Colour colour, const QColor& background) {
    constexpr int middle = 128;
    constexpr int brightest = 255;
    constexpr int step = 8;
    QColor readable = ToQt(colour);
    if (background.lightness() >= middle)
        return readable;
    for (int lightness = readable.lightness();
         Contrast(readable, background) < LeastContrast && lightness < brightest;) {
        lightness = std::min(lightness + step, brightest);
        readable.setHsl(readable.hslHue(), readable.hslSaturation(), lightness);
    }
    return readable;
}

} // namespace ombrix
