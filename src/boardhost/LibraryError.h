#pragma once

#include <stdexcept>
#include <string>

namespace ombrix {

/// The board library cannot be used. The text is for the operator; Number is 53 when the
/// library's file cannot be found, 48 when there is one that cannot be loaded, 453 when it lacks a
/// function that the program calls.
class AIBLibraryError : public std::runtime_error {
  public:
    static constexpr int NotLoadable = 48;
    static constexpr int FileNotFound = 53;
    static constexpr int FunctionNotFound = 453;

    AIBLibraryError(int number, const std::string& text)
        : std::runtime_error(text), m_Number(number) {}
    int Number() const noexcept { return m_Number; }

  private:
    int m_Number;
};

} // namespace ombrix
