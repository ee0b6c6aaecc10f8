#include "trend/TrendPyramid.h"

namespace ombrix {

void TrendPyramid::Append(float value) {
    TrendRange range;
    range.Add(value);
    for (std::size_t level = 0;; ++level) {
        if (level == m_Levels.size())
            m_Levels.emplace_back();
        Level& here = m_Levels[level];
        here.Pending.Add(range);
        if (++here.PendingCount < Fold)
            return;
        range = here.Pending;
        here.Cells.Append(range);
        here.Pending = {};
        here.PendingCount = 0;
    }
}

namespace {

/// Takes what stands before the first and behind the last whole cell of the level above, and
/// leaves the range in cells of that level.
template <class Values>
void TakeEnds(const Values& values, std::size_t& from, std::size_t& to, TrendRange& range) {
    for (; from < to && from % TrendPyramid::Fold != 0; ++from)
        range.Add(values[from]);
    for (; from < to && to % TrendPyramid::Fold != 0; --to)
        range.Add(values[to - 1]);
    from /= TrendPyramid::Fold;
    to /= TrendPyramid::Fold;
}

} // namespace

TrendRange TrendPyramid::Of(const TrendColumn<float>& values, std::size_t from,
                            std::size_t to) const {
    TrendRange range;
    TakeEnds(values, from, to, range);
    // A whole cell of a level is one that its level holds, so the levels suffice.
    for (std::size_t level = 0; from < to; ++level)
        TakeEnds(m_Levels[level].Cells, from, to, range);
    return range;
}

void TrendPyramid::DropBefore(std::size_t index) {
    for (Level& level : m_Levels) {
        index /= Fold;
        level.Cells.DropBefore(index);
    }
}

std::size_t TrendPyramid::Bytes() const {
    std::size_t bytes = 0;
    for (const Level& level : m_Levels)
        bytes += level.Cells.Bytes();
    return bytes;
}

} // namespace ombrix
