#pragma once

namespace ombrix {

/// A progress bar on standard error; shows nothing where that is no terminal.
class ProgressBar {
  public:
    ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    /// Ends the line, so that what follows does not overwrite the bar.
    ~ProgressBar();

    /// @param share what is done, 0 to 1
    void Show(double share);

  private:
    bool m_IsTerminal;
    int m_ShownPercent = -1;
};

} // namespace ombrix
