#pragma once

#include "board/AIB.h"

#include <optional>

namespace ombrix {

/// Tells a passing disturbance from a board that is gone. A failed reading is simply not
/// taken; a board that has not answered for a second ends the procedure.
class AnswerWatch {
  public:
    static constexpr double Patience_s = 1.0;

    /// Notes how a reading went. @param now_s time of the procedure's timer @throws BoardError
    void Note(const BoardAnswer& answer, double now_s) {
        if (answer.Taken()) {
            m_FailingSince_s.reset();
            return;
        }
        if (!m_FailingSince_s)
            m_FailingSince_s = now_s;
        if (now_s - *m_FailingSince_s >= Patience_s)
            throw BoardError("The board does not answer: " + answer.Sentence() +
                             "\r\n\r\nPlease check its cable and its power, then detect the "
                             "boards again.");
    }

  private:
    std::optional<double> m_FailingSince_s;
};

} // namespace ombrix
