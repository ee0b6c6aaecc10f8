// Exporting recorded samples into a workbook, against a common writer library that puts the
// same cells into a file of the same format with the same compression.
#include "platform/os/FolderDrive.h"
#include "spreadsheet/XlsxApplication.h"
#include "support/SampleReport.h"
#include "support/TemporaryFolder.h"
#include "templates/ReportTemplates.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <cmath>
#include <fstream>
#include <malloc.h>
#include <memory>
#include <random>
#include <string>
#include <vector>
#include <xlsxwriter.h>

namespace ombrix {
namespace {

constexpr int Sheets = 10;
constexpr int Rows = 19000;
constexpr double BytesPerMebibyte = 1048576.0;

/// The template is binary only by name: nothing is converted here.
class NoConverter final : public DocumentConverter {
  public:
    std::string Convert(std::string_view, std::string_view, std::string_view) override {
        throw SpreadsheetError("nothing to convert with");
    }
};

/// What one sequence has recorded, as the program hands it to the report.
struct Samples {
    std::vector<float> Times;
    std::vector<std::int32_t> Bits;
    std::vector<float> Fractions;
    std::vector<std::int32_t> Pressures;
};

Samples Record(unsigned seed) {
    Samples samples;
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0.0F, 40.0F);
    for (int row = 0; row < Rows; ++row) {
        const float demand = 13107.0F * static_cast<float>(row / 1900 % 5);
        samples.Times.push_back(static_cast<float>(row) * 0.02F);
        for (const float bits : {demand, demand + noise(random), 0.0F, 60.0F + noise(random)}) {
            samples.Bits.push_back(static_cast<std::int32_t>(bits));
            samples.Fractions.push_back(static_cast<float>(samples.Bits.back()) / 65535.0F);
        }
        samples.Pressures.push_back(4000 + static_cast<std::int32_t>(noise(random)));
    }
    return samples;
}

const std::vector<Samples>& AllSamples() {
    static const std::vector<Samples> all = [] {
        std::vector<Samples> made;
        for (unsigned sheet = 0; sheet < Sheets; ++sheet)
            made.push_back(Record(sheet));
        return made;
    }();
    return all;
}

double StatusValue_MiB(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (double kibibytes = 0.0; word == key && status >> kibibytes)
            return kibibytes / 1024.0;
    return 0.0;
}

/// The most memory that was resident since it was made, beyond what was resident then.
class PeakMemory {
  public:
    PeakMemory() {
        ::malloc_trim(0); // what earlier runs have left behind would hide growth
        m_Before_MiB = StatusValue_MiB("VmRSS:");
        std::ofstream("/proc/self/clear_refs") << "5"; // the peak starts anew
    }
    double Growth_MiB() const { return StatusValue_MiB("VmHWM:") - m_Before_MiB; }

  private:
    double m_Before_MiB = 0.0;
};

class Station {
  public:
    Station() { Files.ReplaceFile(R"(C:\ACUHealthCheck.xltx)", templates::MakeACUHealthCheck()); }

    TemporaryFolder Folder;
    FolderDrive Files{Folder.Path()};
    NoConverter Converter;

    double Size_MiB() const {
        return static_cast<double>(std::filesystem::file_size(Folder.Path() / "out.xlsx")) /
               BytesPerMebibyte;
    }
};

void Draw(const Worksheet& data, Worksheet& target, std::string_view area) {
    Chart& chart = target.AddChart(ChartType::XYScatterSmoothNoMarkers, target.Box(area));
    chart.SetSourceData(data, "A:A,F:J");
    chart.SetTitle(data.Name());
    chart.SetSeriesAxisGroup(5, AxisGroup::Secondary);
}

void ExportSheet(Workbook& book, const Samples& samples, const std::string& name, int row) {
    book.Sheet("DataTemplate").CopyAfter(book.Sheet(book.WorksheetCount() - 1));
    Worksheet& data = book.Sheet(book.WorksheetCount() - 1);
    data.SetName(name);
    const auto area = [](const char* columns) {
        return fmt::format("{}2:{}{}", columns[0], columns[1], Rows + 1);
    };
    data.SetValues(area("AA"), CellBlock<float>{samples.Times, 1});
    data.SetValues(area("BE"), CellBlock<std::int32_t>{samples.Bits, 4});
    data.SetValues(area("FI"), CellBlock<float>{samples.Fractions, 4});
    data.SetValues(area("JJ"), CellBlock<std::int32_t>{samples.Pressures, 1});
    Draw(data, data, "M2:AD36");
    Draw(data, book.Sheet("Overview"), fmt::format("B{}:L{}", row, row + 25));
}

void WorkbookEngine(benchmark::State& state) {
    Station station;
    const std::vector<Samples>& all = AllSamples();
    double peak_MiB = 0.0;
    while (state.KeepRunning()) {
        const PeakMemory memory;
        XlsxApplication application(station.Files, station.Converter);
        Workbook& book = application.Add(R"(C:\ACUHealthCheck.xltx)");
        for (int sheet = 0; sheet < Sheets; ++sheet)
            ExportSheet(book, all[static_cast<std::size_t>(sheet)],
                        fmt::format("Sequence {}", sheet + 1), 14 + sheet * 36);
        book.SaveAs(R"(C:\out.xlsx)", FileFormat::ByExtension);
        peak_MiB = std::max(peak_MiB, memory.Growth_MiB());
    }
    state.counters["peak_MiB"] = peak_MiB;
    state.counters["file_MiB"] = station.Size_MiB();
}
BENCHMARK(WorkbookEngine)->Unit(benchmark::kMillisecond)->UseRealTime();

/// The number that the engine writes for a Single: the one with the fewest digits. Cells that
/// are to be the same have to be given as such to a writer of Doubles.
double AsWritten(float value) {
    return std::stod(fmt::format("{}", value));
}

/// A sheet's cells, row by row.
std::vector<double> CellsOf(const Samples& samples) {
    std::vector<double> cells;
    for (std::size_t row = 0; row < Rows; ++row) {
        cells.push_back(AsWritten(samples.Times[row]));
        for (std::size_t i = row * 4; i < row * 4 + 4; ++i)
            cells.push_back(samples.Bits[i]);
        for (std::size_t i = row * 4; i < row * 4 + 4; ++i)
            cells.push_back(AsWritten(samples.Fractions[i]));
        cells.push_back(samples.Pressures[row]);
    }
    return cells;
}

struct CloseWriter {
    void operator()(lxw_workbook* book) const { workbook_close(book); }
};

void WriteSheet(lxw_workbook* book, const std::vector<double>& cells, const std::string& name,
                const std::vector<lxw_format*>& formats) {
    lxw_worksheet* sheet = workbook_add_worksheet(book, name.c_str());
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::size_t column = i % formats.size();
        worksheet_write_number(sheet, static_cast<lxw_row_t>(i / formats.size() + 1),
                               static_cast<lxw_col_t>(column), cells[i], formats[column]);
    }
}

void WriterLibrary(benchmark::State& state) {
    Station station;
    std::vector<std::vector<double>> all;
    for (const Samples& samples : AllSamples())
        all.push_back(CellsOf(samples));
    const std::string path = (station.Folder.Path() / "out.xlsx").string();
    double peak_MiB = 0.0;
    while (state.KeepRunning()) {
        const PeakMemory memory;
        lxw_workbook_options options = {};
        options.constant_memory = LXW_TRUE;
        {
            const std::unique_ptr<lxw_workbook, CloseWriter> book(
                workbook_new_opt(path.c_str(), &options));
            std::vector<lxw_format*> formats;
            for (const char* number :
                 {"0.00", "0", "0", "0", "0", "0.00%", "0.00%", "0.00%", "0.00%", "0"}) {
                formats.push_back(workbook_add_format(book.get()));
                format_set_num_format(formats.back(), number);
            }
            for (int sheet = 0; sheet < Sheets; ++sheet)
                WriteSheet(book.get(), all[static_cast<std::size_t>(sheet)],
                           fmt::format("Sequence {}", sheet + 1), formats);
        }
        peak_MiB = std::max(peak_MiB, memory.Growth_MiB());
    }
    state.counters["peak_MiB"] = peak_MiB;
    state.counters["file_MiB"] = station.Size_MiB();
}
BENCHMARK(WriterLibrary)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Four sequences of about 600 rows, with their overview and eight charts.
void ShortReportExport(benchmark::State& state) {
    Station station;
    const std::vector<SampleSequence> sequences = ShortReport();
    while (state.KeepRunning()) {
        XlsxApplication application(station.Files, station.Converter);
        Workbook& book = application.Add(R"(C:\ACUHealthCheck.xltx)");
        FillSampleReport(book, sequences);
        book.SaveAs(R"(C:\out.xlsx)", FileFormat::ByExtension);
    }
    state.counters["file_MiB"] = station.Size_MiB();
}
BENCHMARK(ShortReportExport)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
} // namespace ombrix

BENCHMARK_MAIN();
