#pragma once

#include "platform/text/Colour.h"

#include <QColor>

namespace ombrix {

inline QColor ToQt(Colour colour) {
    return {colour.Red, colour.Green, colour.Blue};
}

/// The colour as given on a light background; on a dark one the same hue, lightened as far as
/// it takes to read it.
QColor ReadableColour(Colour colour, const QColor& background);

/// Contrast of two colours from 1 to 21, as accessibility guidelines reckon it.
double Contrast(const QColor& first, const QColor& second);

} // namespace ombrix
