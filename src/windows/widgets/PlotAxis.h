#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

#include <cstddef>
#include <string>
#include <vector>

class QImage;

namespace ombrix {

// What the plots of the program have in common.

/// Between the parts of a plot, in pixels.
inline constexpr double PlotGap = 8.0;

/// The colour of a line, from 0, as it can be read on a background; ten of them, apart in hue and
/// lightness, for those too who see few hues.
QColor SeriesColour(std::size_t series, const QColor& background);

/// Colours of paper, whatever the desktop's are: for pictures that go into a file.
QPalette PaperPalette();

/// A picture as a file. @throws std::runtime_error
std::string PngOf(const QImage& picture);

/// A colour for lines that are not to be looked at.
QColor FaintInk(const QPalette& colours);

/// A step of 1, 2 or 5 times a power of ten that divides a range into about so many parts.
double NiceStep(double range, double wanted = 5.0);
/// The multiples of a step within a range.
std::vector<double> TicksIn(double least, double largest, double step);
/// A tick's value with as many decimals as its step needs.
QString TickText(double value, double step);

/// The same for times in seconds: steps that divide minutes and hours.
double NiceTimeStep(double range_s, double wanted);
/// "12.5" below two minutes, else "0:02:30", with as many decimals as the step needs.
QString TimeTickText(double time_s, double step_s, double largest_s);

} // namespace ombrix
