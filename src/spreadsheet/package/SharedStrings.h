#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::xlsx {

/// The texts that cells of a template share. They are read only: new texts stand in their
/// cells, so that the part stays as it is.
class SharedStrings {
  public:
    SharedStrings() = default;
    /// @throws SpreadsheetError
    explicit SharedStrings(std::string_view xml);

    /// The text without its formatting; empty for a number that no text has.
    std::string Text(std::uint32_t index) const;

  private:
    std::vector<std::string> m_Texts;
};

} // namespace ombrix::xlsx
