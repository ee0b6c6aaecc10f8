#pragma once

#include <algorithm>

namespace ombrix {

/// First-order low-pass filter for a displayed reading. A fall of more than 5 % of the output
/// passes at once, so that a channel switched off does not seem to linger; rises are filtered.
class Filter {
  public:
    /// Takes the next input and returns the output.
    float LPF(float input) {
        const float fall = m_Output - input;
        const float threshold = 0.05F * m_Output;
        m_Output = threshold < fall ? input : (1.0F - m_Coeff) * input + m_Coeff * m_Output;
        return m_Output;
    }

    /// Share of the old output that is kept, 0 to 1; held within that range.
    void Coeff(float coeff) { m_Coeff = std::clamp(coeff, 0.0F, 1.0F); }
    float Coeff() const { return m_Coeff; }

  private:
    float m_Output = 0.0F;
    float m_Coeff = 0.0F;
};

} // namespace ombrix
