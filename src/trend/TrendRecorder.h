#pragma once

#include "board/Station.h"
#include "trend/TrendData.h"

#include <map>
#include <string>
#include <tuple>

namespace ombrix {

/// Keeps what the boards are asked and told, by whomever, from its making on: the last 24 hours.
/// Readings of an input are kept a fiftieth of a second apart at least, demands all. Where nobody
/// has read an input for a while, its trace has a gap.
class TrendRecorder {
  public:
    explicit TrendRecorder(Station& station);
    TrendRecorder(const TrendRecorder&) = delete;
    TrendRecorder& operator=(const TrendRecorder&) = delete;

    /// Grows with every reading; a copy does not. Its scales are those of the current board.
    const TrendData& Recorded();
    /// Seconds since the recorder was made.
    double Now_s() const;

  private:
    using Key = std::tuple<std::int32_t, BoardNote::Subject, std::int32_t>;

    void Take(const BoardNote& note);
    std::size_t GroupOf(const BoardNote& note);
    void Append(TrendGroup& group, double time_s, float value);

    Station& m_Station;
    double m_Start_s;
    TrendData m_Data;
    /// The group of each quantity, by board, subject and channel.
    std::map<Key, std::size_t> m_Groups;
    Subscription m_Notes;
};

} // namespace ombrix
