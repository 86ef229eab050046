#include "host/analysis/served_cells.h"

#include "host/analysis/network_cells.h"
#include "tests/analysis/analysis_test.h"

namespace loom::analysis {
namespace {

constexpr int kCellA = 4660 << 16 | 10181;
constexpr int kCellB = 4660 << 16 | 10182;

class ServedCellsTest : public AnalysisTest {
 protected:
  ServedCells Find(const char* protocol) const { return FindServedCells(Collect(CellElements(protocol)), protocol); }
};

TEST_F(ServedCellsTest, HaveTheirSamplesTheirTimeAndTheChangesBetweenThem) {
  Row(0).With(kTdCellKey, kCellA).With(kRscp, -80);
  Row(2).With(kRscp, -70);  // names no cell: still the first one
  Row(3).With(kTdCellKey, kCellB).With(kRscp, -60);
  Row(4).With(kTdCellKey, kCellA).With(kRscp, -255);
  Row(30).With(kTdCellKey, kCellB).With(kRscp, -90);  // nobody knows when it changed
  Row(41).With(kRscp, -50);                           // nor who serves
  const ServedCells served = Find("TD-SCDMA");
  ASSERT_EQ(2u, served.cells.size());
  EXPECT_EQ("4660-10181", LabelOf(served.cells[0].identity));
  EXPECT_EQ(2u, served.cells[0].samples);
  EXPECT_EQ(-75.0, served.cells[0].MeanLevel());
  EXPECT_EQ(3.0, served.cells[0].time_s);
  EXPECT_EQ(2u, served.cells[1].samples);
  EXPECT_EQ(1.0, served.cells[1].time_s);
  ASSERT_EQ(2u, served.handovers.size());
  EXPECT_EQ(2u, served.handovers[0].at);
  EXPECT_EQ(0u, served.handovers[1].to);
  EXPECT_EQ((std::vector<std::int32_t>{0, 0, 1, 0, 1, ServedCells::kNone}), served.of_row);
  EXPECT_EQ(kRscp, served.level_element);
}

TEST_F(ServedCellsTest, AreToldApartByWhatTheStreamRecords) {
  struct Case {
    const char* protocol;
    std::vector<std::pair<std::int32_t, int>> fields;
    const char* label;
  };
  const Case cases[] = {
      {"GSM", {{31700, 4670}, {31706, 20121}, {31701, 54}, {31705, 27}}, "4670-20121"},
      {"GSM", {{31701, 54}, {31705, 27}}, "BCCH 54, BSIC 27"},
      {"LTE", {{33363, 460 << 16 | 2330}, {33362, 460}}, "PCI 460, 2330 MHz"},
      {"LTE", {{36042, 94722 << 8 | 3}, {33362, 7}}, "94722-3"},
      {"LTE", {{33362, 7}, {36040, 1300}}, "PCI 7, EARFCN 1300"},
      {"LTE", {{33362, 7}}, "PCI 7"},
      {"TD-SCDMA", {{147, 10071}, {140, 9}}, "UARFCN 10071, CPI 9"},
      {"", {{147, 10071}, {140, 9}}, "UARFCN 10071, CPI 9"},
      {"LTE", {{147, 10071}, {140, 9}}, nullptr},
      {"LTE", {{33363, -255}, {33362, -255}}, nullptr},
  };
  for (const Case& one : cases) {
    rows_.clear();
    RowBuilder row = Row(0);
    for (const auto& [id, value] : one.fields) row.With(id, value);
    const ServedCells served = Find(one.protocol);
    ASSERT_EQ(one.label == nullptr ? 0u : 1u, served.cells.size()) << one.fields[0].first;
    for (const ServedCell& cell : served.cells) EXPECT_EQ(one.label, LabelOf(cell.identity));
  }
}

TEST_F(ServedCellsTest, AreFoundAmongTheProjectsCellsNextToWhereTheyServed) {
  const auto cell = [](std::string_view protocol, double longitude) {
    return NetworkCell{.protocol = protocol, .longitude = longitude, .latitude = 39.5};
  };
  std::vector<NetworkCell> cells{cell("LTE", 116.9), cell("LTE", 116.51), cell("LTE", 116.50), cell("TD-SCDMA", 116.5)};
  for (NetworkCell& one : cells) one.pci = 7;
  cells[2].frequency_mhz = 2570;
  cells[3].lac = 4660;
  cells[3].ci = 10181;
  const CellFinder finder(cells);
  ServedCell served{.identity = {CellKey::kLteKey, 7 << 16 | 2330}};
  EXPECT_EQ(std::nullopt, finder.Find(served, "LTE"));  // two fit, and it served nowhere known
  served.positions = 1;
  served.longitude_sum = 116.5;
  served.latitude_sum = 39.5;
  EXPECT_EQ(1u, finder.Find(served, "LTE"));
  served.identity = {CellKey::kTdKey, kCellA};
  EXPECT_EQ(3u, finder.Find(served, "TD-SCDMA"));
  served.longitude_sum = 118.0;
  EXPECT_EQ(std::nullopt, finder.Find(served, "TD-SCDMA"));  // 129 km away
}

}  // namespace
}  // namespace loom::analysis
