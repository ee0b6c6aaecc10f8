#pragma once

#include "SheetBuilder.h"

namespace ombrix::templates {

/// What the reports have in common: colours and the looks of their cells.

inline constexpr const char* Dark = "1F3A5F";
inline constexpr const char* Grey = "6B7785";
inline constexpr const char* HeadFill = "DDE5EF";
inline constexpr const char* SubHeadFill = "EEF2F7";
inline const Highlight Good{"1E6B34", "D5EDDB"};
inline const Highlight Bad{"9C1C1C", "F6D5D5"};

inline const Look Label{.Colour = Grey};
inline const Look Heading{.Size_pt = 20, .Bold = true, .Colour = Dark};
inline const Look Section{.Size_pt = 13, .Bold = true, .Colour = Dark};
inline const Look Note{.Size_pt = 9, .Italic = true, .Colour = Grey};
inline const Look HeadCell{
    .Bold = true, .Colour = Dark, .Fill = HeadFill, .Horizontal = Align::Centre, .Wrapped = true};
inline const Look UnitCell{
    .Size_pt = 9, .Colour = Grey, .Fill = SubHeadFill, .Horizontal = Align::Centre};
inline const Look VerdictCell{.Size_pt = 20,
                              .Bold = true,
                              .Colour = Grey,
                              .Fill = SubHeadFill,
                              .Horizontal = Align::Centre,
                              .Edges = BoxLines};

inline constexpr const char* DateAndTime = "yyyy-mm-dd hh:mm:ss";

inline Look With(Look look, unsigned edges) {
    look.Edges = edges;
    return look;
}

inline Look WithNumber(Look look, const std::string& number) {
    look.Number = number;
    return look;
}

inline Look Values(const std::string& number) {
    return {.Number = number, .Horizontal = Align::Centre};
}

/// A value of a table, in a box.
inline Look Boxed(const std::string& number = {}) {
    return With(Values(number), BoxLines);
}

/// A value beside its label.
inline Look FieldValue(const std::string& number = {}) {
    return {.Bold = true, .Number = number, .Horizontal = Align::Left};
}

} // namespace ombrix::templates
