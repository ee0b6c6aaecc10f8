#include "spreadsheet/sheet/CellContent.h"

#include <limits>

namespace ombrix::xlsx {

namespace {

constexpr std::size_t LongestText = 32767;
constexpr double DaysFrom1900To1904 = 1462.0;

/// Workbooks know no date before 1900; one that they cannot show becomes an error value.
double DayCount(OleDate date, bool countsFrom1904) {
    const double days = date.Days() - (countsFrom1904 ? DaysFrom1900To1904 : 0.0);
    return date.ToCivil() && days >= 0.0 ? days : std::numeric_limits<double>::quiet_NaN();
}

struct ToContentVisitor {
    bool CountsFrom1904;

    Content operator()(std::monostate) const { return EmptyContent(); }
    Content operator()(const std::string& text) const {
        if (text.size() > LongestText)
            throw SpreadsheetError("the text is longer than a cell holds");
        return text;
    }
    Content operator()(OleDate date) const { return DayCount(date, CountsFrom1904); }
    template <class T>
    Content operator()(T value) const {
        return value;
    }
};

struct ToValueVisitor {
    const SharedStrings& Texts;

    CellValue operator()(std::monostate) const { return {}; }
    CellValue operator()(EmptyContent) const { return {}; }
    CellValue operator()(const Formula&) const { return {}; }
    CellValue operator()(const RawContent&) const { return {}; }
    CellValue operator()(SharedText text) const { return Texts.Text(text.Index); }
    template <class T>
    CellValue operator()(const T& value) const {
        return value;
    }
};

} // namespace

Content ToContent(const CellValue& value, bool countsFrom1904) {
    return std::visit(ToContentVisitor{countsFrom1904}, value);
}

CellValue ToValue(const Content& content, const SharedStrings& texts) {
    return std::visit(ToValueVisitor{texts}, content);
}

} // namespace ombrix::xlsx
