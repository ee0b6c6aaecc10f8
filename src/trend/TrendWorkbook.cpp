#include "platform/os/FolderDrive.h"
#include "reports/layout/HealthCheckLayout.h"
#include "reports/layout/VelocityReportLayout.h"
#include "spreadsheet/Cells.h"
#include "spreadsheet/XlsxApplication.h"
#include "spreadsheet/XlsxWorkbook.h"
#include "trend/TrendReaders.h"

#include <fmt/format.h>

#include <cmath>

namespace ombrix {

namespace {

/// The number of a cell; nothing for another kind of content.
std::optional<float> NumberIn(const Worksheet& sheet, const std::string& address) {
    const CellValue value = sheet.Value(address);
    if (const auto* number = std::get_if<double>(&value))
        return static_cast<float>(*number);
    if (const auto* single = std::get_if<float>(&value))
        return *single;
    if (const auto* whole = std::get_if<std::int32_t>(&value))
        return static_cast<float>(*whole);
    return std::nullopt;
}

bool HasText(const Worksheet& sheet, const std::string& address, std::string_view beginning) {
    const CellValue value = sheet.Value(address);
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr && text->starts_with(beginning);
}

/// Parts whose times begin anew stand one behind another, with a gap between them.
void BeginPart(TrendGroup& group) {
    if (group.Times.Empty())
        return;
    group.Times.Append(group.Times.Last());
    for (TrendTrace& trace : group.Traces)
        trace.Append(Missing);
}

/// The data sheets of a health check.
void ReadSequence(const Worksheet& sheet, TrendGroup& group) {
    namespace Data = HealthCheckLayout::Data;
    if (group.Traces.empty()) {
        const bool isAnalog =
            HasText(sheet, Cell(Data::Pressure, Data::HeadRow), "Pressure (Analog)");
        group.Traces.push_back({"Demand CH1", TrendSubject::Channel1});
        group.Traces.push_back({"Flow CH1", TrendSubject::Channel1});
        group.Traces.push_back({"Demand CH2", TrendSubject::Channel2});
        group.Traces.push_back({"Flow CH2", TrendSubject::Channel2});
        group.Traces.push_back(
            {"Pressure", isAnalog ? TrendSubject::Pressure : TrendSubject::PressureRegister});
    }
    BeginPart(group);
    const double begin_s = group.Times.Empty() ? 0.0 : group.Times.Last();
    for (int row = Data::FirstRow;; ++row) {
        const auto time_s = NumberIn(sheet, Cell(Data::Time, row));
        if (!time_s)
            return;
        const double at_s = begin_s + static_cast<double>(*time_s);
        group.Times.Append(group.Times.Empty() ? at_s : std::max(at_s, group.Times.Last()));
        char column = Data::FirstBits;
        for (TrendTrace& trace : group.Traces) {
            const char from = &trace == &group.Traces.back() ? Data::Pressure : column++;
            trace.Append(NumberIn(sheet, Cell(from, row)).value_or(Missing));
        }
    }
}

/// A channel's sheet of traces in the report of a velocity run.
void ReadTraces(const Worksheet& sheet, std::size_t channel, TrendData& data) {
    namespace Traces = VelocityReportLayout::Traces;
    constexpr int traces = Traces::FirstStep + VelocityReportLayout::Steps;
    TrendGroup group;
    group.Traces.push_back({fmt::format("Flow CH{}", channel + 1),
                            channel == 0 ? TrendSubject::Channel1 : TrendSubject::Channel2});
    for (int trace = 0; trace < traces; ++trace) {
        BeginPart(group);
        const double begin_s = group.Times.Empty() ? 0.0 : group.Times.Last();
        const int column = Traces::TimeColumn(trace);
        for (int row = Traces::FirstRow;; ++row) {
            const auto time_s = NumberIn(sheet, CellAddress(column, row));
            if (!time_s)
                break;
            const double at_s = begin_s + static_cast<double>(*time_s);
            group.Times.Append(group.Times.Empty() ? at_s : std::max(at_s, group.Times.Last()));
            group.Traces[0].Append(NumberIn(sheet, CellAddress(column + 1, row)).value_or(Missing));
        }
    }
    if (!group.Times.Empty())
        data.Groups.push_back(std::move(group));
}

void ReadFullScales(const Worksheet& report, TrendScales& scales) {
    namespace Head = VelocityReportLayout::Head;
    for (std::size_t channel = 0; channel < Head::FullScales.size(); ++channel) {
        const auto capacity = NumberIn(report, Head::FullScales.at(channel));
        if (capacity && *capacity > 0.0F)
            scales.Capacity_ml_m.at(channel) = capacity;
    }
    scales.Source = "the report itself";
}

TrendData ReadSheets(Workbook& book, TrendProgress& progress) {
    TrendData data;
    TrendGroup healthCheck;
    for (int position = 1; position <= book.WorksheetCount() && !progress.Cancelled; ++position) {
        const Worksheet& sheet = book.Sheet(position);
        const std::string name = sheet.Name();
        for (const std::size_t channel : {std::size_t{0}, std::size_t{1}}) {
            if (name == VelocityReportLayout::TraceSheets.at(channel))
                ReadTraces(sheet, channel, data);
        }
        if (name == VelocityReportLayout::ReportSheet)
            ReadFullScales(sheet, data.Scales);
        namespace Data = HealthCheckLayout::Data;
        if (name != HealthCheckLayout::DataSheet &&
            HasText(sheet, Cell(Data::Time, Data::HeadRow), HealthCheckLayout::Data::TimeHead))
            ReadSequence(sheet, healthCheck);
        progress.Share = static_cast<float>(position) / static_cast<float>(book.WorksheetCount());
    }
    if (!healthCheck.Times.Empty())
        data.Groups.push_back(std::move(healthCheck));
    return data;
}

} // namespace

TrendData ReadTrendWorkbook(const std::filesystem::path& path, DocumentConverter& converter,
                            TrendProgress& progress) {
    TrendData data;
    try {
        std::string content = ReadWholeFile(path);
        if (!content.starts_with("PK"))
            content = converter.Convert(content, "xls", "xlsx");
        FolderDrive files(path.parent_path());
        XlsxApplication application(files, converter);
        xlsx::XlsxWorkbook book(application, content, path.stem().string());
        data = ReadSheets(book, progress);
    } catch (const std::runtime_error& error) {
        throw TrendFileError(fmt::format(
            "{} cannot be read: {}. Please choose a sound copy of it, or the journal of the run.",
            path.string(), error.what()));
    }
    if (data.Empty() && !progress.Cancelled)
        throw TrendFileError(fmt::format(
            "{} holds neither the data sheets of a health check nor the traces of a velocity "
            "calibration. Please choose such a report, or the journal of the run.",
            path.string()));
    return data;
}

} // namespace ombrix
