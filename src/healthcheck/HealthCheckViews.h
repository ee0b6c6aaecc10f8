#pragma once

#include "healthcheck/HealthCheckVerdict.h"
#include "platform/text/Colour.h"

#include <array>
#include <string>
#include <string_view>

namespace ombrix {

/// A surface that a running sequence draws on, in a scale of its own: x to the right, y upwards
/// or downwards as the scale's corners say. What is drawn stays until the next Cls.
class GraphSurface {
  public:
    enum class Style { Solid, Dotted };

    virtual ~GraphSurface() = default;

    /// Coordinates of the upper left and the lower right corner.
    virtual void Scale(double left, double top, double right, double bottom) = 0;
    virtual void Cls() = 0;
    /// Width of lines in pixels.
    virtual void DrawWidth(int pixels) = 0;
    virtual void DrawStyle(Style style) = 0;
    /// Height of a line of text in y units; positive whichever way y runs.
    virtual double TextHeight(std::string_view text) const = 0;
    /// Text with its upper left corner at a point.
    virtual void Print(double x, double y, std::string_view text) = 0;
    virtual void Line(double x1, double y1, double x2, double y2, Colour colour) = 0;
};

/// The surfaces of the health check: channel 1, channel 2, pressure, and the difference of
/// reading and demand of both channels.
using GraphSurfaces = std::array<GraphSurface*, 5>;

/// One label for each surface, with the live values.
class ValueLabels {
  public:
    virtual ~ValueLabels() = default;
    virtual void SetCaption(std::size_t label, std::string_view text) = 0;
};

/// A step as it stands in the list, before it has run.
struct StepLine {
    /// All of it in one text.
    std::string Text;
    /// Of full scale, by channel.
    std::array<float, 2> Demand{};
    float Duration_s = 0.0F;
};

/// The list of a sequence's steps.
class StepList {
  public:
    virtual ~StepList() = default;
    virtual void Clear() = 0;
    virtual void AddItem(const StepLine& step) = 0;
    /// What the step of a line, from 0, has come to.
    virtual void ShowEnd(int line, const StepJudgement& judgement) = 0;
    /// Selects a line, from 0.
    virtual void ListIndex(int line) = 0;
};

} // namespace ombrix
