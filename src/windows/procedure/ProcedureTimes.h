#pragma once

#include "board/Station.h"

#include <QString>

#include <optional>

namespace ombrix {

/// "12:05", minutes and seconds, rounded up.
QString DurationText(double seconds);

/// How long the procedure that runs has taken and will take, by the clock of the bench.
class ProcedureTimes {
  public:
    explicit ProcedureTimes(Station& station);

    /// Takes down what the procedure has told since.
    void Look();
    const ProcedureProgress& Told() const { return m_Told; }
    double Elapsed_s() const;
    /// Nothing while nobody can tell.
    std::optional<double> Left_s() const;
    /// "Elapsed 12:05 of 47:10"
    QString Text() const;

  private:
    Station& m_Station;
    /// What was told last, and when, in seconds of the bench.
    ProcedureProgress m_Told;
    double m_ToldAt_s = 0.0;
    double m_Begun_s = 0.0;
    Subscription m_Procedures;
};

} // namespace ombrix
