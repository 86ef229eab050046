// Network elements out of a workbook of 100000 rows and 20 columns, and a sheet of a million rows that hold nothing.
#include <benchmark/benchmark.h>

#include <filesystem>

#include "components/workbook_reader.h"
#include "host/application.h"
#include "host/netdb/db_mapper.h"
#include "host/netdb/network_worksheet.h"
#include "platform/encoding.h"
#include "tests/support/places.h"
#include "tests/support/xlsx_builder.h"

namespace loom {
namespace {

constexpr int kRows = 100'000;
constexpr const char* kHeadings[] = {"MCC",
                                     "MNC",
                                     "LAC",
                                     "CI",
                                     "CellName",
                                     "SiteName",
                                     "Longitude",
                                     "Latitude",
                                     "UARFCN",
                                     "CellParameterID",
                                     "RNCID",
                                     "NodeBID",
                                     "CellType",
                                     "Azimuth",
                                     "BeamWidth",
                                     "AntennaHeight",
                                     "MechanicalTilt",
                                     "ElectricalTilt",
                                     "AntennaType",
                                     "Vendor"};

// The sheet's cells refer to shared texts, as the programs that people use write them.
std::string CellsXml(std::string& strings) {
  int texts = 0;
  const auto text = [&](const std::string& utf8) {
    strings += "<si><t>" + utf8 + "</t></si>";
    return "<c t=\"s\"><v>" + std::to_string(texts++) + "</v></c>";
  };
  std::string xml = "<row>";
  for (const char* const heading : kHeadings) xml += text(heading);
  xml += "</row>";
  for (int row = 0; row < kRows; ++row) {
    const std::string number = std::to_string(row);
    xml += "<row><c><v>460</v></c><c><v>0</v></c><c><v>" + std::to_string(45000 + row % 500) + "</v></c><c><v>" +
           number + "</v></c>" + text("朝阳小区" + number) + text("站点" + number);
    for (int column = 6; column < 12; ++column)
      xml += "<c><v>" + std::to_string(row % 97) + "." + std::to_string(column) + "</v></c>";
    xml += "<c t=\"s\"><v>12</v></c>";
    for (int column = 13; column < 18; ++column) xml += "<c><v>" + std::to_string(row % 360) + "</v></c>";
    xml += "<c t=\"s\"><v>18</v></c><c t=\"s\"><v>19</v></c></row>";
  }
  return xml;
}

const CString& Cells() {
  static const CString path = [] {
    std::string strings;
    testing::XlsxBuilder workbook;
    workbook.Cells(CellsXml(strings)).Part("xl/sharedStrings.xml", "<sst>" + strings + "</sst>");
    return workbook.Write(NativePathToGbk((std::filesystem::temp_directory_path() / "net_import_bench.xlsx").string()));
  }();
  return path;
}

const CString& EmptyRows() {
  static const CString path = [] {
    std::string rows = "<row r=\"1\"><c r=\"A1\"><v>1</v></c></row>";
    for (int row = 2; row < 1'000'000; ++row) {
      const std::string number = std::to_string(row);
      rows += "<row r=\"" + number + "\" spans=\"1:3\"><c r=\"A" + number + "\" s=\"1\"/><c r=\"B" + number +
              "\" s=\"1\"/></row>";
    }
    return testing::XlsxBuilder().Cells(rows).Write(
        NativePathToGbk((std::filesystem::temp_directory_path() / "net_import_bench_empty.xlsx").string()));
  }();
  return path;
}

std::vector<CString> Headings() { return {std::begin(kHeadings), std::end(kHeadings)}; }

void PreviewHeadings(benchmark::State& state) {
  const CString path = Cells();
  for (auto _ : state) {
    const auto workbook = OpenWorkbookReader(path);
    benchmark::DoNotOptimize(NetworkWorksheet(*workbook, path, "Sheet1").Headings());
  }
}
BENCHMARK(PreviewHeadings)->Unit(benchmark::kMillisecond);

void ReadRows(benchmark::State& state) {
  const CString path = Cells();
  for (auto _ : state) {
    const auto workbook = OpenWorkbookReader(path);
    benchmark::DoNotOptimize(NetworkWorksheet(*workbook, path, "Sheet1").Rows(Headings()));
  }
}
BENCHMARK(ReadRows)->Unit(benchmark::kMillisecond);

void StoreRows(benchmark::State& state) {
  const CString path = Cells();
  const auto workbook = OpenWorkbookReader(path);
  const auto rows = NetworkWorksheet(*workbook, path, "Sheet1").Rows(Headings());
  for (auto _ : state) {
    state.PauseTiming();
    HostApplication host(testing::PlainHost());
    state.ResumeTiming();
    const std::vector<CString> attributes(std::size(kHeadings), "free");
    if (DBMapper::Instance().StoreRows(kNetCell, kProtocolTdScdma, Headings(), attributes, rows) != 1)
      return state.SkipWithError("the rows are not stored");
  }
}
BENCHMARK(StoreRows)->Unit(benchmark::kMillisecond);

void ReadAMillionRowsOfNothing(benchmark::State& state) {
  const CString path = EmptyRows();
  class Counter final : public IWorksheetSink {
   public:
    bool OnRow(std::uint32_t, std::span<const WorksheetCell>) override { return ++rows > 0; }
    int rows = 0;
  };
  for (auto _ : state) {
    Counter counter;
    OpenWorkbookReader(path)->ReadSheet(0, counter);
    if (counter.rows != 1) return state.SkipWithError("there is one row that holds something");
  }
}
BENCHMARK(ReadAMillionRowsOfNothing)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
