#pragma once

#include "board/Outputs.h"
#include "healthcheck/HealthCheckViews.h"

#include <array>
#include <string>
#include <vector>

namespace ombrix {

/// Views that remember what a sequence showed on them.
class RecordedSurface final : public GraphSurface {
  public:
    struct Segment {
        double X1, Y1, X2, Y2;
        Colour LineColour;
        Style LineStyle;
        int Width;
    };
    std::array<double, 4> Corners{};
    std::vector<std::string> Texts;
    std::vector<Segment> Segments;

    void Scale(double left, double top, double right, double bottom) override {
        Corners = {left, top, right, bottom};
    }
    void Cls() override { Segments.clear(); }
    void DrawWidth(int pixels) override { m_Width = pixels; }
    void DrawStyle(Style style) override { m_Style = style; }
    double TextHeight(std::string_view) const override { return 2000.0; }
    void Print(double, double, std::string_view text) override { Texts.emplace_back(text); }
    void Line(double x1, double y1, double x2, double y2, Colour colour) override {
        Segments.push_back({x1, y1, x2, y2, colour, m_Style, m_Width});
    }

  private:
    Style m_Style = Style::Solid;
    int m_Width = 1;
};

class RecordedLabels final : public ValueLabels {
  public:
    std::array<std::string, 5> Captions;
    void SetCaption(std::size_t label, std::string_view text) override {
        Captions.at(label) = text;
    }
};

class RecordedStepList final : public StepList {
  public:
    std::vector<std::string> Items;
    std::vector<int> Selections;

    void Clear() override { Items.clear(); }
    void AddItem(const StepLine& step) override { Items.push_back(step.Text); }
    void ShowEnd(int /*line*/, const StepJudgement& /*judgement*/) override {}
    void ListIndex(int line) override { Selections.push_back(line); }
};

struct RecordedGraphs {
    std::array<RecordedSurface, 5> Surfaces;
    GraphSurfaces Set{&Surfaces[0], &Surfaces[1], &Surfaces[2], &Surfaces[3], &Surfaces[4]};
};

} // namespace ombrix
