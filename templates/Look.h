#pragma once

#include <string>

namespace ombrix::templates {

enum class Align { General, Left, Centre, Right };

/// Lines around a cell; they add up.
enum Lines : unsigned { NoLines = 0, LeftLine = 1, RightLine = 2, TopLine = 4, BottomLine = 8 };
inline constexpr unsigned BoxLines = LeftLine | RightLine | TopLine | BottomLine;

/// How a cell looks. Colours are "RRGGBB"; an empty one is none.
struct Look {
    double Size_pt = 11;
    bool Bold = false;
    bool Italic = false;
    std::string Colour = "262626";
    std::string Fill = {};
    /// A number format of the spreadsheet: "0.0%", "yyyy-mm-dd hh:mm:ss".
    std::string Number = {};
    Align Horizontal = Align::General;
    bool Wrapped = false;
    /// Keeps the text off the cell's edge, in steps of about a letter's width.
    int Indent = 0;
    unsigned Edges = NoLines;
};

} // namespace ombrix::templates
