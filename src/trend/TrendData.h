#pragma once

#include "trend/TrendPyramid.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ombrix {

struct ACU;

/// What a trace can be shown in.
enum class TrendUnit { Bits, Percent, Flow_ml_m, Pressure_mBar };

/// "bits", "% of full scale", "ml/min", "mBar".
const char* NameOf(TrendUnit unit);

/// What a trace tells of, which decides its units.
enum class TrendSubject {
    /// Demand or flow of an air channel.
    Channel1,
    Channel2,
    /// The input of the analog pressure sensor.
    Pressure,
    /// The pressure register, or whatever else is known in bits alone.
    PressureRegister,
    Other,
    /// A pressure that its file gives in mBar.
    Pressure_mBar,
};

/// Shown on the scale of pressures, which is that of the flows while both are in the same unit.
inline bool IsPressure(TrendSubject subject) {
    return subject == TrendSubject::Pressure || subject == TrendSubject::PressureRegister ||
           subject == TrendSubject::Pressure_mBar;
}

/// What a unit's record says of the bits of its channels. What is not known is not guessed.
struct TrendConversion;

struct TrendScales {
    /// Full scale of the air channels.
    std::array<std::optional<float>, 2> Capacity_ml_m{};
    /// Full scale of the analog pressure sensor.
    std::optional<float> MaxPressure_mBar{};
    /// Where this is from, for the operator ("ACU00301, the current board").
    std::string Source{};
    /// The board of that unit.
    std::int32_t Serial = 0;

    /// @param source as above; nothing is known of a unit without a record
    static TrendScales Of(const ACU& unit, std::string source);
    bool Any() const { return Capacity_ml_m[0] || Capacity_ml_m[1] || MaxPressure_mBar; }
    /// From bits to a unit; nothing where the subject is not known in it.
    std::optional<TrendConversion> Of(TrendSubject subject, TrendUnit unit) const;
};

/// Value in a unit = Factor × value as kept + AtZero; the factor is positive.
struct TrendConversion {
    double Factor = 1.0;
    double AtZero = 0.0;

    double operator()(double value) const { return Factor * value + AtZero; }
};

/// One quantity over the time: its values and their pyramid.
struct TrendTrace {
    std::string Name;
    TrendSubject Subject = TrendSubject::Other;
    /// A value stands until the next one: it was told, not read.
    bool Held = false;
    /// The board that it is of, where there are several; 0 in files.
    std::int32_t Serial = 0;
    TrendColumn<float> Values{};
    TrendPyramid Pyramid{};

    void Append(float value) {
        Values.Append(value);
        Pyramid.Append(value);
    }
    /// Nothing where the trace is not known in the unit.
    std::optional<TrendConversion> In(TrendUnit unit, const TrendScales& scales) const;
};

/// Times in seconds that never go back; kept as Singles from the beginning of their chunk on,
/// which keeps a millisecond apart after days.
class TrendTimes {
  public:
    std::size_t Size() const { return m_Offsets.Size(); }
    std::size_t First() const { return m_Offsets.First(); }
    bool Empty() const { return m_Offsets.Empty(); }
    double operator[](std::size_t index) const {
        return m_Bases[index >> TrendColumn<float>::ChunkShift] +
               static_cast<double>(m_Offsets[index]);
    }
    double Last() const { return (*this)[Size() - 1]; }
    void Append(double time_s);
    /// The first index whose time is not before the one given; Size() when there is none.
    std::size_t IndexFrom(double time_s) const;
    void DropBefore(std::size_t index) { m_Offsets.DropBefore(index); }
    std::size_t Bytes() const { return m_Offsets.Bytes(); }

  private:
    TrendColumn<float> m_Offsets;
    std::vector<double> m_Bases;
};

/// Longer than any procedure or panel takes from one reading to the next.
inline constexpr double LongestSilence_s = 1.5;

/// Traces whose values were taken together.
struct TrendGroup {
    TrendTimes Times{};
    std::vector<TrendTrace> Traces{};

    /// What stood in the trace at a time: its last value until then; nothing before the first,
    /// in a gap, and behind the end of what was read once the next reading is overdue.
    std::optional<float> ValueAt(std::size_t trace, double time_s) const;
};

/// Quantities over the time, from a file or as they are being read.
struct TrendData {
    /// What it is of, for the operator.
    std::string Title{};
    /// There are no times in the file: its lines are counted.
    bool CountsSteps = false;
    std::vector<TrendGroup> Groups{};
    TrendScales Scales{};
    /// What the operator must know of the file: damaged lines, a clock that was set back.
    std::vector<std::string> Remarks{};

    double Begin_s() const;
    double End_s() const;
    std::size_t TraceCount() const;
    bool Empty() const;
    /// What it takes of the memory.
    std::size_t Bytes() const;
};

} // namespace ombrix
