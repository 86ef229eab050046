#include <array>
#include <cmath>
#include <limits>

#include "components/measures.h"
#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

constexpr std::uint32_t k2010_8MHz = 2010800000;

struct Level {
  std::uint8_t cell_parameter_id;
  float rscp;
};

class ScanRecordTest : public ConversionTest {
 protected:
  ScanRecordTest() { stream_.stream_type = kStreamScanner; }

  Row ConvertScan(const CTestdataBase& record) {
    stream_.row_number = ++rows_;
    return converter_.ConvertScanner(record, stream_, selection_switch_);
  }
  static TestRecord WithBlock(const ScanBlock& block, std::int32_t kind = kRecordScanner) {
    return RecordBuilder(kind).With(block);
  }
  // A record of PCCPCH and DwPCH levels on 2010.8 MHz.
  Row ConvertLevels(const std::vector<Level>& pccpch, const std::vector<Level>& dwpch = {}) {
    std::vector<ScanPccpch> pccpch_entries;
    for (const Level& level : pccpch) {
      pccpch_entries.push_back(
          {.carrier_hz = k2010_8MHz, .cell_parameter_id = level.cell_parameter_id, .rscp = level.rscp});
    }
    std::vector<ScanDwPch> dwpch_entries;
    for (const Level& level : dwpch) {
      dwpch_entries.push_back(
          {.carrier_hz = k2010_8MHz, .cell_parameter_id = level.cell_parameter_id, .rscp = level.rscp});
    }
    return ConvertScan(WithBlock({.scan_type = 0,
                                  .carriers = ScanCarriers{.pccpch_count = static_cast<std::uint8_t>(pccpch.size()),
                                                           .pccpch = pccpch_entries,
                                                           .dwpch_count = static_cast<std::uint8_t>(dwpch.size()),
                                                           .dwpch = dwpch_entries}}));
  }
};

TEST_F(ScanRecordTest, EntriesAreNumberedByTheirPosition) {
  Row row = ConvertLevels({{1, -80.7f}, {2, -81.0f}, {3, -82.0f}, {4, -83.0f}, {5, -84.0f}}, {{9, -70.2f}});
  EXPECT_EQ((std::vector{2710, 2711, 2712, 2713, 2714}), IdsIn(*row, 2710, 2747));
  EXPECT_EQ((std::vector{2500, 2501, 2502, 2503, 2504}), IdsIn(*row, 2500, 2531));
  EXPECT_EQ(-80, Int(*row, 2710)) << "truncated";
  EXPECT_EQ(5, Int(*row, 2504));
  EXPECT_EQ(10054, Int(*row, 2436));
  EXPECT_EQ(-70, Int(*row, 2532));
  EXPECT_TRUE(stream_.ie_names.contains("PCCPCH_RSCP_Scan_5"));
}

TEST_F(ScanRecordTest, RowsStartWithTimePositionAndTravelStep) {
  ConvertScan(ScannerRecord(0).At(10.0).Position(116.0, 40.0).Build());
  const Row row = ConvertScan(ScannerRecord(0).At(20.0).Position(116.0, 40.001).Build());
  EXPECT_NEAR(111.0, Float(*row, 2381).value_or(0.0f), 1.0);
  EXPECT_TRUE(stream_.ie_names.contains("Distance"));
  EXPECT_EQ(20.0, row->GetRecordTime());
  EXPECT_EQ(10.0, stream_.time_s.minimum);
  EXPECT_EQ(40.001, stream_.latitude.maximum);
  const Row lost = ConvertScan(ScannerRecord(0).Position(std::nan(""), 1e300).Build());
  EXPECT_EQ(-255.0f, Float(*lost, 2379));
  EXPECT_EQ(-255.0f, Float(*lost, 2380));
  EXPECT_EQ(0.0f, Float(*lost, 2381));
}

TEST_F(ScanRecordTest, LevelsThatNoIntegerCanHold) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  const Row row = ConvertLevels({{1, NAN}, {2, kInfinity}, {3, -3e9f}, {4, -1.0f}});
  EXPECT_EQ(kNotThere, Int(*row, 2710));
  EXPECT_EQ(-255, Int(*row, 2711));
  EXPECT_EQ(-255, Int(*row, 2712));
  EXPECT_EQ(-1, Int(*row, 2713)) << "a level like any other";
  EXPECT_EQ(ComposeFreqCPI(10054, 4), stream_.pccpch_run.cell_key);
}

TEST_F(ScanRecordTest, ArraysAreSelectedByName) {
  Select({2500}, {"PCCPCH_RSCP_Scan"});
  Row row = ConvertLevels({{1, -80.0f}}, {{1, -70.0f}});
  EXPECT_EQ(-80, Int(*row, 2710));
  EXPECT_TRUE(IdsIn(*row, 2436, 2709).empty());
  EXPECT_EQ(1, stream_.pccpch_run.row_count);
  EXPECT_EQ(ComposeFreqCPI(-255, -255), stream_.dwpch_run.cell_key) << "the DwPCH levels are not selected";
}

TEST_F(ScanRecordTest, NoRunWithoutTheLevelsSelected) {
  Select({}, {"CellParameterID_Scan"});
  ConvertLevels({{1, -80.0f}}, {{1, -70.0f}});
  EXPECT_TRUE(stream_.pccpch_run.cell_key.IsEmpty());
  EXPECT_TRUE(stream_.dwpch_run.cell_key.IsEmpty());
}

TEST_F(ScanRecordTest, RunsOfTheStrongestCell) {
  ConvertLevels({{1, -80.0f}, {2, -70.0f}}, {{1, -60.0f}});
  ConvertLevels({{2, -70.2f}, {1, -70.9f}}, {{1, -60.0f}});  // equal once truncated: the first
  ConvertLevels({{2, -75.0f}}, {});
  ConvertLevels({}, {{1, -60.0f}});  // without a PCCPCH the row belongs to no run
  ConvertLevels({{1, -80.0f}}, {});
  ASSERT_EQ(1u, stream_.pccpch_runs.size());
  EXPECT_EQ(1, stream_.pccpch_runs[0].first_row);
  EXPECT_EQ(3, stream_.pccpch_runs[0].last_row);
  EXPECT_EQ(3, stream_.pccpch_runs[0].row_count);
  EXPECT_EQ(ComposeFreqCPI(10054, 2), stream_.pccpch_runs[0].cell_key);
  EXPECT_EQ(5, stream_.pccpch_run.first_row);
  EXPECT_EQ(ComposeFreqCPI(10054, 1), stream_.pccpch_run.cell_key);
  ASSERT_EQ(1u, stream_.dwpch_runs.size());
  EXPECT_EQ(2, stream_.dwpch_runs[0].last_row);
  EXPECT_EQ(ComposeFreqCPI(-255, -255), stream_.dwpch_run.cell_key);
  EXPECT_EQ(2, stream_.dwpch_run.row_count);
}

TEST_F(ScanRecordTest, CountsBeyondListsAndArrays) {
  const std::array cells{ScanPccpch{.rscp = -80.0f}};
  const std::vector<ScanRssi> rssi(80, ScanRssi{.carrier_hz = 2320200000, .ts0 = -90, .frame = -2});
  const Row row = ConvertScan(WithBlock({.scan_type = 2,
                                         .carriers = ScanCarriers{.pccpch_count = 255, .pccpch = cells},
                                         .rssi = ScanRssiList{.count = 1 << 30, .carriers = rssi}}));
  EXPECT_EQ((std::vector{2710}), IdsIn(*row, 2710, 2747));
  EXPECT_EQ(76u, IdsIn(*row, 3610, 3685).size());
  EXPECT_EQ(11601, Int(*row, 3610));
  EXPECT_EQ(-90, Int(*row, 3001));
  EXPECT_EQ(-255, Int(*row, 3534));
  EXPECT_TRUE(IdsIn(*row, 3002, 3077).empty());
}

// Arrays of one list differ in the room between their ids: 32 for cell parameter ids, 38 for levels.
TEST_F(ScanRecordTest, AnArrayHoldsAsManyEntriesAsItsIdsLeaveRoomFor) {
  std::vector<Level> many(40, {1, -80.0f});
  many[36] = {7, -60.0f};
  many[39] = {8, -50.0f};
  const Row row = ConvertLevels(many, many);
  EXPECT_EQ(32u, IdsIn(*row, 2500, 2531).size());
  EXPECT_EQ(38u, IdsIn(*row, 2532, 2569).size());
  EXPECT_EQ(38u, IdsIn(*row, 2710, 2747).size());
  EXPECT_EQ(-60, Int(*row, 2746));
  EXPECT_EQ(32u, IdsIn(*row, 2436, 2467).size());
  EXPECT_TRUE(IdsIn(*row, 2570, 2709).empty()) << "nothing in the arrays behind";
  EXPECT_TRUE(IdsIn(*row, 2748, 2925).empty()) << "nothing in the arrays behind";
  EXPECT_EQ(ComposeFreqCPI(10054, 7), stream_.pccpch_run.cell_key) << "of those that the row holds";
  EXPECT_EQ(ComposeFreqCPI(10054, 7), stream_.dwpch_run.cell_key);
  const auto left_out = converter_.TakeLeftOutValues();
  ASSERT_EQ(2u, left_out.size());
  EXPECT_EQ(40u, left_out[0].entries);
  EXPECT_EQ(10u, left_out[0].values) << "2 levels, 8 cell parameter ids";
  EXPECT_TRUE(converter_.TakeLeftOutValues().empty()) << "told once";
  Select({}, {"PCCPCH_CIR_Scan"});
  ConvertLevels(many);
  EXPECT_TRUE(converter_.TakeLeftOutValues().empty()) << "nothing of it was selected";
}

TEST_F(ScanRecordTest, SpectrumSamplesAreTruncatedToSixteenBits) {
  const std::array samples{-80.9f, 12.5f, 40000.0f, static_cast<float>(NAN), 99.0f};
  const std::array<std::uint32_t, 2> carriers{k2010_8MHz, 1};
  const Row row =
      ConvertScan(WithBlock({.scan_type = 3,
                             .spectrum = ScanSpectrum{.count = 4, .samples = samples},
                             .spectrum_header = ScanSpectrumHeader{.ie3686 = 8.9f, .carriers_hz = carriers}}));
  const std::vector<float> kept(row->GetFFTReport().begin(), row->GetFFTReport().end());
  EXPECT_EQ((std::vector{-80.0f, 12.0f, -255.0f, -255.0f}), kept);
  EXPECT_EQ(8, Int(*row, 3686));
  EXPECT_EQ(10054, Int(*row, 3687));
}

TEST_F(ScanRecordTest, CellListRecords) {
  const std::array cells{ScanCell{.uarfcn = 10080, .cell_parameter_id = 7, .pccpch_rscp = -2},
                         ScanCell{.uarfcn = 10088, .cell_parameter_id = 8, .pccpch_rscp = -90}};
  const std::array rssi{ScanCellRssi{.uarfcn = 10080, .frame = -70}};
  const ScanBlock block{.scan_type = 1, .cell_rssi_count = 5, .cell_rssi = rssi, .cell_count = 2, .cells = cells};
  const Row row = ConvertScan(WithBlock(block, kRecordScannerCells));
  EXPECT_EQ(10080, Int(*row, 2436));
  EXPECT_EQ(8, Int(*row, 2501));
  EXPECT_EQ(-255, Int(*row, 2710));
  EXPECT_EQ(-90, Int(*row, 2711));
  EXPECT_EQ((std::vector{3610}), IdsIn(*row, 3610, 3685));
  EXPECT_EQ(-70, Int(*row, 3534));
  EXPECT_EQ(ComposeFreqCPI(10088, 8), stream_.pccpch_run.cell_key);
  EXPECT_TRUE(stream_.dwpch_run.cell_key.IsEmpty());

  const ScanBlock without_levels{.cell_count = 1, .cells = std::span(cells).first(1)};
  ConvertScan(WithBlock(without_levels, kRecordScannerCells));
  EXPECT_EQ(1, stream_.pccpch_run.row_count);
}

TEST_F(ScanRecordTest, ScanTypesAndBlocksWithoutARouteGiveTheHeader) {
  const std::array cells{ScanPccpch{.rscp = -80.0f}};
  for (const int type : {-1, 1, 4, 7, 127}) {
    const Row row = ConvertScan(WithBlock(
        {.scan_type = static_cast<std::int8_t>(type), .carriers = ScanCarriers{.pccpch_count = 1, .pccpch = cells}}));
    EXPECT_EQ((std::vector{2379, 2380, 2381, 2386}), IdsIn(*row, 4, 40000)) << type;
  }
  for (const std::int32_t kind : {kRecordScanner, kRecordScannerCells, kRecordHandset}) {
    EXPECT_EQ(6u, ConvertScan(RecordBuilder(kind).Model(kModelOstrelLteScanner).Build())->GetParamID().size()) << kind;
  }
}

TEST_F(ScanRecordTest, LteScannerListsAreSelectedByEachId) {
  const std::array entries{LteScanEntry{.ie34691 = 4, .ie34755 = -90.9f}, LteScanEntry{.ie34691 = 5, .ie34723 = 100}};
  const LteScanList list{.count = 9, .entries = entries};
  const TestRecord record = LteRecord(kModelOstrelLteScanner).With(LteScanResult{.first = list, .second = list});
  Row row = ConvertScan(record);
  EXPECT_EQ((std::vector{34691, 34692, 34724, 34755, 34915, 34916, 34948, 34979}), IdsIn(*row, 34691, 35138));
  EXPECT_EQ(-90, Int(*row, 34755));
  EXPECT_EQ(100, Int(*row, 34948));
  Select({34692, 34979});
  EXPECT_EQ((std::vector{34692, 34979}), IdsIn(*ConvertScan(record), 34691, 35138));
}

}  // namespace
}  // namespace loom::testing
