#pragma once

#include <string>
#include <string_view>

namespace ombrix::xlsx {

/// The id ("{01234567-89AB-…}") that a copy has in place of its original's: another one for each
/// word, always the same for the same. A text of another form is given back as it is.
std::string DerivedGuid(std::string_view guid, std::string_view word);

} // namespace ombrix::xlsx
