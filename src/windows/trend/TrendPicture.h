#pragma once

#include "trend/TrendCurve.h"
#include "trend/TrendExport.h"

#include <QPalette>
#include <QRectF>

#include <array>
#include <optional>
#include <vector>

class QPainter;

namespace ombrix {

/// A trace that is drawn.
struct TrendLine {
    ShownTrace What{};
    /// Number of its colour.
    std::size_t Colour = 0;
};

/// From the lower to the upper end of an axis, in its unit.
struct ValueSpan {
    double Least = 0.0;
    double Largest = 1.0;
};

/// What a picture shows: lines over a stretch of time, on one axis of values or on two.
struct TrendScene {
    /// May be none.
    const TrendData* Data = nullptr;
    std::vector<TrendLine> Lines{};
    /// Of the axis on the left and of that on the right; there is one while both are the same.
    std::array<TrendUnit, 2> Units{TrendUnit::Bits, TrendUnit::Bits};
    double From_s = 0.0;
    double To_s = 1.0;
    /// How far values of what is held reach.
    double End_s = 0.0;
    /// What the axes were told to show; else they show what there is.
    std::array<std::optional<ValueSpan>, 2> Spans{};

    /// 0: on the left, 1: on the right.
    std::size_t AxisOf(const TrendLine& line) const;
};

/// Where things stand in a picture.
struct TrendFrame {
    QRectF Area;
    QRectF Plot;
    std::array<ValueSpan, 2> Spans{};
    std::array<bool, 2> HasAxis{true, false};
    double From_s = 0.0;
    double To_s = 1.0;

    double X(double time_s) const {
        return Plot.left() + (time_s - From_s) / (To_s - From_s) * Plot.width();
    }
    double TimeAt(double x) const {
        return From_s + (x - Plot.left()) / Plot.width() * (To_s - From_s);
    }
    double Y(std::size_t axis, double value) const {
        const ValueSpan& span = Spans.at(axis);
        return Plot.bottom() - (value - span.Least) / (span.Largest - span.Least) * Plot.height();
    }
    double ValueAt(std::size_t axis, double y) const {
        const ValueSpan& span = Spans.at(axis);
        return span.Least + (Plot.bottom() - y) / Plot.height() * (span.Largest - span.Least);
    }
};

/// @param painter has the font
TrendFrame FrameOf(const TrendScene& scene, const QPainter& painter, const QRectF& area);

void DrawTrend(QPainter& painter, const TrendScene& scene, const TrendFrame& frame,
               const QPalette& colours);

/// The names of the lines with their colours, for a picture that stands alone; in rows from the
/// top of the area down. @return the height that they take
double DrawTrendLegend(QPainter& painter, const TrendScene& scene, const QRectF& area,
                       const QPalette& colours);

} // namespace ombrix
