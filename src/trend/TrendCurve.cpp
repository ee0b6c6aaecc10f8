#include "trend/TrendCurve.h"

#include <cmath>
#include <optional>
#include <utility>

namespace ombrix {

namespace {

/// From as many samples in a column on, their extremes say it all.
constexpr std::size_t FewSamples = 4;

/// Puts the points of a line together; a value that is held goes on to the time of the next one.
class CurveMaker {
  public:
    CurveMaker(const TrendGroup& group, const TrendTrace& trace) : m_Group(group), m_Trace(trace) {}

    void AddSample(std::size_t index) {
        Add(m_Group.Times[index], m_Trace.Values[index]);
        m_ReachesEnd = index + 1 == m_Group.Times.Size();
    }

    /// Many samples in one column: from the extreme that is nearer to what came before to the
    /// other one. @param from, to the samples of the column
    void AddColumn(std::size_t from, std::size_t to) {
        const double time_s = m_Group.Times[from];
        if (std::isnan(m_Trace.Values[from]))
            Add(time_s, m_Trace.Values[from]);
        const TrendRange range = m_Trace.Pyramid.Of(m_Trace.Values, from, to);
        if (range.Any()) {
            const float before = m_Points.empty() ? range.Least : m_Points.back().Value;
            const bool up = std::abs(before - range.Least) <= std::abs(before - range.Largest);
            Add(time_s, up ? range.Least : range.Largest);
            Add(time_s, up ? range.Largest : range.Least);
        }
        m_ColumnEnd = to - 1;
        if (std::isnan(m_Trace.Values[to - 1]))
            EndColumns();
    }

    /// From the last of many samples the line goes on to a place of its own; between two columns of
    /// many that cannot be seen.
    void EndColumns() {
        if (const auto last = std::exchange(m_ColumnEnd, std::nullopt))
            AddSample(*last);
    }

    std::vector<CurvePoint> Finish(double end_s) {
        EndColumns();
        if (m_Trace.Held && m_ReachesEnd)
            m_Points.push_back({end_s, m_Points.back().Value});
        return std::move(m_Points);
    }

  private:
    void Add(double time_s, float value) {
        if (m_Trace.Held && !m_Points.empty() && time_s > m_Points.back().Time_s)
            m_Points.push_back({time_s, m_Points.back().Value});
        m_Points.push_back({time_s, value});
    }

    const TrendGroup& m_Group;
    const TrendTrace& m_Trace;
    std::vector<CurvePoint> m_Points;
    /// The last sample of a column whose extremes were drawn, until it is.
    std::optional<std::size_t> m_ColumnEnd;
    bool m_ReachesEnd = false;
};

} // namespace

std::vector<std::size_t> ColumnBounds(const TrendTimes& times, const CurveWindow& window) {
    std::vector<std::size_t> bounds;
    bounds.reserve(static_cast<std::size_t>(window.Columns) + 1);
    const double width_s = (window.To_s - window.From_s) / window.Columns;
    for (int column = 0; column <= window.Columns; ++column)
        bounds.push_back(times.IndexFrom(window.From_s + column * width_s));
    return bounds;
}

std::vector<CurvePoint> CurveOf(const TrendGroup& group, const TrendTrace& trace,
                                const std::vector<std::size_t>& bounds, double end_s) {
    CurveMaker curve(group, trace);
    if (bounds.front() > group.Times.First())
        curve.AddSample(bounds.front() - 1);
    for (std::size_t column = 0; column + 1 < bounds.size(); ++column) {
        const std::size_t from = bounds[column];
        const std::size_t to = bounds[column + 1];
        if (to - from >= FewSamples) {
            curve.AddColumn(from, to);
            continue;
        }
        curve.EndColumns();
        for (std::size_t index = from; index < to; ++index)
            curve.AddSample(index);
    }
    curve.EndColumns();
    if (bounds.back() < group.Times.Size())
        curve.AddSample(bounds.back());
    return curve.Finish(end_s);
}

TrendRange RangeOf(const TrendTrace& trace, const std::vector<std::size_t>& bounds) {
    const std::size_t from = bounds.front() - (bounds.front() > trace.Values.First() ? 1 : 0);
    const std::size_t to = bounds.back() + (bounds.back() < trace.Values.Size() ? 1 : 0);
    return trace.Pyramid.Of(trace.Values, from, to);
}

} // namespace ombrix
