#pragma once

#include "trend/TrendColumn.h"

#include <cstddef>
#include <limits>
#include <vector>

namespace ombrix {

/// The least and the largest of some values. What is missing (no number) does not count.
struct TrendRange {
    float Least = std::numeric_limits<float>::infinity();
    float Largest = -std::numeric_limits<float>::infinity();

    bool Any() const { return Least <= Largest; }
    void Add(float value) { Add({value, value}); }
    void Add(const TrendRange& other) {
        // Comparisons with what is no number are false.
        if (other.Least < Least)
            Least = other.Least;
        if (other.Largest > Largest)
            Largest = other.Largest;
    }
};

/// Least and largest values of a column by sixteens, by sixteens of those, and so on: the range of
/// any stretch of it takes a few dozen steps, however long it is. It grows with the column.
class TrendPyramid {
  public:
    static constexpr std::size_t Fold = 16;

    /// The value that its column has just taken.
    void Append(float value);
    /// The range of values [from, to) of the column that it goes with.
    TrendRange Of(const TrendColumn<float>& values, std::size_t from, std::size_t to) const;
    /// Goes with TrendColumn::DropBefore.
    void DropBefore(std::size_t index);

    std::size_t Bytes() const;

  private:
    /// Cells of Fold cells of the level below; those of the first level, of values.
    struct Level {
        TrendColumn<TrendRange> Cells;
        TrendRange Pending{};
        std::size_t PendingCount = 0;
    };

    std::vector<Level> m_Levels;
};

} // namespace ombrix
