#include <array>
#include <cmath>

#include "components/lte_frequency.h"
#include "components/measures.h"
#include "host/netdb/network_database.h"
#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

class LteRecordTest : public ConversionTest {
 protected:
  Row ConvertLte(const CTestdataBase& record) {
    stream_.row_number = ++rows_;
    return converter_.ConvertLTE(record, stream_.state, stream_, selection_switch_);
  }
  // A measurement record of one serving cell.
  static RecordBuilder OnCell(std::uint16_t physical_cell_id, std::uint16_t earfcn) {
    return LteRecord(kModelTn300Lte)
        .With(LteMeasBlock{
            .serving = LteServingCell{.earfcn = earfcn, .physical_cell_id = physical_cell_id, .ie33364 = 0xFFA0}});
  }
  void PutCell(std::int64_t physical_cell_id, std::int64_t earfcn, double longitude, double latitude) {
    host_.network().PutRows("tbl_Cell_LTE", {{{"CI", physical_cell_id},
                                              {"PCI", physical_cell_id},
                                              {"EARFCN", earfcn},
                                              {"Frequency", double(EarfcnToMHz(std::uint16_t(earfcn)))},
                                              {"Longitude", longitude},
                                              {"Latitude", latitude}}});
  }
};

TEST(LteFrequencyTest, FrequenciesAreWholeMegahertzWithinTheBands) {
  const std::pair<std::uint16_t, std::int32_t> cases[] = {{37749, 0}, {37750, 2570}, {37759, 2570}, {38249, 2619},
                                                          {38250, 0}, {38650, 2300}, {39649, 2399}, {39650, 0}};
  for (const auto& [earfcn, mhz] : cases) EXPECT_EQ(mhz, EarfcnToMHz(earfcn)) << earfcn;
}

TEST_F(LteRecordTest, RowsWithoutTheirBlockHaveTheHeaders) {
  const auto header = [this](std::int32_t model_code) {
    return ConvertLte(LteRecord(model_code)
                          .Event(2052)
                          .Message(1, "rrcConnectionSetup")
                          .RawMessage("xy")
                          .Channel(3)
                          .Set(&CTestdataBase::raw_length, 2));
  };
  for (const std::int32_t model_code : {kModelTn300Lte, kModelH500Lte}) {
    const Row row = header(model_code);
    EXPECT_EQ(model_code, Int(*row, 8));
    EXPECT_EQ("rrcConnectionSetup", Text(*row, 35)) << "whatever the message id";
    EXPECT_EQ(2, Int(*row, 36));
    EXPECT_EQ("xy", Text(*row, 37));
    EXPECT_EQ(3, Int(*row, 39));
    EXPECT_TRUE(IdsIn(*row, 33000, 40000).empty());
  }
  EXPECT_TRUE(stream_.l3_names.contains("rrcConnectionSetup"));
  EXPECT_EQ(0.0f, Float(*header(kModelTn300Lte), 2381));
  stream_.stream_type = kStreamIndoorHandset;
  EXPECT_EQ(kNoFloat, Float(*header(kModelTn300Lte), 2381));
  EXPECT_EQ(nullptr, ConvertLte(LteRecord(kModelOstrelLteScanner).Build()));
  Select({6});
  EXPECT_EQ(kNotThere, Int(*header(kModelH500Lte), 36)) << "selected by IE 35";
}

TEST_F(LteRecordTest, EventsAreShownWhateverTheirId) {
  const Row row = ConvertLte(LteRecord(kModelH500Lte).Event(1101).Build());
  EXPECT_EQ(1101, Int(*row, 10));
  EXPECT_EQ("CallAttempt", Text(*row, 20));
  EXPECT_TRUE(stream_.event_names.contains("CallAttempt"));
  EXPECT_EQ(kNotThere, Int(*ConvertLte(LteRecord(kModelH500Lte).Event(999999).Build()), 10)) << "has no name";
}

TEST_F(LteRecordTest, ServingCell) {
  Row row =
      ConvertLte(LteRecord(kModelTn300Lte)
                     .With(LteMeasBlock{.serving = LteServingCell{.identity = {0x46, 0, 0x0A, 1, 2, 3, 4, 5, 0xFF},
                                                                  .ie33355 = 0xFE,
                                                                  .earfcn = 38950,
                                                                  .physical_cell_id = 301,
                                                                  .ie33364 = 0xFFA0,
                                                                  .ie33415 = -2}}));
  EXPECT_EQ("46000A0102030405FF", Text(*row, 33353));
  EXPECT_EQ(-255, Int(*row, 33355));
  EXPECT_EQ(2330, Int(*row, 33361));
  EXPECT_EQ(301, Int(*row, 33362));
  EXPECT_EQ(301 * 65536 + 2330, Int(*row, 33363));
  EXPECT_EQ(-96, Int(*row, 33364));
  EXPECT_EQ(-255, Int(*row, 33415));
  row = ConvertLte(OnCell(0, 100).Build());
  EXPECT_EQ(0, Int(*row, 33361));
  EXPECT_EQ(0, Int(*row, 33363));
  EXPECT_EQ(kNotThere, Int(*row, 33364)) << "no key, no further fields";
  row = ConvertLte(OnCell(40000, 38650).Build());
  EXPECT_LT(Int(*row, 33363).value_or(0), 0);
  EXPECT_EQ(kNotThere, Int(*row, 33364));
  EXPECT_EQ(kNotThere, Int(*ConvertLte(OnCell(kAbsent16, 38650).Build()), 33363));
}

TEST_F(LteRecordTest, DistanceToTheLastKnownServingCell) {
  PutCell(301, 38950, 116.3, 39.91);
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(LteRecord(kModelTn300Lte).Build()), 2382)) << "no cell known yet";
  const float distance_m = static_cast<float>(CalDistance(116.3, 39.9, 116.3, 39.91));
  EXPECT_EQ(distance_m, Float(*ConvertLte(OnCell(301, 38950).Build()), 2382));
  EXPECT_EQ(distance_m, Float(*ConvertLte(LteRecord(kModelTn300Lte).Build()), 2382));
  EXPECT_EQ(distance_m, Float(*ConvertLte(OnCell(0, 0).Build()), 2382));
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(LteRecord(kModelH500Lte).Build()), 2382)) << "a converter of its own";
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(LteRecord(kModelTn300Lte).Position(180.5, 39.9).Build()), 2382));
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(LteRecord(kModelTn300Lte).Position(std::nan(""), 39.9).Build()), 2382));
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(OnCell(302, 38950).Build()), 2382)) << "not in the network elements";
  ConvertLte(OnCell(301, 38950).Build());
  Select({33361});
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(LteRecord(kModelTn300Lte).Build()), 2382)) << "not selected";
  selection_switch_ = 0;
  converter_.ResetForLog();
  EXPECT_EQ(kNoFloat, Float(*ConvertLte(LteRecord(kModelTn300Lte).Build()), 2382)) << "another log";
}

TEST_F(LteRecordTest, WithoutAChannelNumberTheFrequencyIsZeroAndTheKeyAKey) {
  PutCell(301, 38950, 116.3, 39.91);
  ConvertLte(OnCell(301, 38950).Build());
  for (const std::uint16_t earfcn : {kAbsent16, std::uint16_t{0xFFFE}, std::uint16_t{100}}) {
    const Row row = ConvertLte(OnCell(302, earfcn).Build());
    EXPECT_EQ(0, Int(*row, 33361)) << earfcn;
    EXPECT_EQ(302 * 65536, Int(*row, 33363)) << earfcn;
    EXPECT_EQ(-96, Int(*row, 33364)) << earfcn;
    EXPECT_EQ(kNoFloat, Float(*row, 2382)) << "not to the cell before: " << earfcn;
  }
  const std::array entries{LteNeighbour{.physical_cell_id = 9, .ie33899 = 41}};
  const Row row =
      ConvertLte(LteRecord(kModelTn300Lte)
                     .With(LteMeasBlock{.neighbours = LteNeighbourList{.count_plus_one = 2, .neighbours = entries}}));
  EXPECT_EQ(0, Int(*row, 33707));
  EXPECT_EQ(9 * 65536, Int(*row, 33835));
}

TEST_F(LteRecordTest, NeighboursOfAList) {
  const std::array entries{
      LteNeighbour{.earfcn = 38650, .physical_cell_id = 9, .ie33899 = 41, .ie33963 = 31, .ie34027 = 141, .ie34091 = 1},
      LteNeighbour{.earfcn = 100, .physical_cell_id = kAbsent16}};
  const auto convert = [&](std::uint8_t count_plus_one, std::span<const LteNeighbour> list) {
    return ConvertLte(
        LteRecord(kModelTn300Lte)
            .With(LteMeasBlock{.neighbours = LteNeighbourList{.count_plus_one = count_plus_one, .neighbours = list}}));
  };
  Row row = convert(3, entries);
  EXPECT_EQ(2300, Int(*row, 33707));
  EXPECT_EQ(9, Int(*row, 33771));
  EXPECT_EQ(9 * 65536 + 2300, Int(*row, 33835));
  EXPECT_EQ(-100, Int(*row, 33899));
  EXPECT_EQ(-5, Int(*row, 33963));
  EXPECT_EQ(0, Int(*row, 34027));
  EXPECT_EQ(1, Int(*row, 34091));
  EXPECT_EQ(0, Int(*row, 33708));
  EXPECT_EQ(-20, Int(*row, 33964));
  for (const std::int32_t id : {33772, 33836, 33900, 34092}) EXPECT_EQ(kNotThere, Int(*row, id)) << id;
  EXPECT_TRUE(IdsIn(*convert(0, entries), 33700, 34159).empty());
  EXPECT_TRUE(IdsIn(*convert(1, entries), 33700, 34159).empty());
  const std::vector<LteNeighbour> many(254, entries[0]);
  EXPECT_EQ(63u, IdsIn(*convert(255, many), 33706, 33770).size());
  Select({33834});
  EXPECT_EQ((std::vector{33835}), IdsIn(*convert(3, entries), 33700, 34159));
}

TEST_F(LteRecordTest, MeasurementBlock) {
  const std::array entries{LteEntry{.ie34170 = 1}, LteEntry{.ie34470 = 2}};
  const LteMeasBlock block{.meas24 = LteMeas24{.ie33650 = 0xFFFE, .ie33652 = 0x8000},
                           .cells = LteCellMeasurements{.earfcn_33374 = 37760},
                           .physical = LtePhysicalConfig{.ie33439 = kAbsent16, .ie33671 = kAbsent16, .ie33697 = 5},
                           .statistics = LteChannelStatistics{.ie33423 = -2, .ie34690 = 70000},
                           .header_first = LteHeaderFirst{.ie34160 = 0xFE, .ie34169 = 200},
                           .entry_count = 50,
                           .entries = entries};
  const TestRecord record = LteRecord(kModelTn300Lte).With(block);
  Row row = ConvertLte(record);
  EXPECT_EQ(-255, Int(*row, 33650));
  EXPECT_EQ(-32768, Int(*row, 33652));
  EXPECT_EQ(kNotThere, Int(*row, 33658));
  EXPECT_EQ(2571, Int(*row, 33374));
  EXPECT_EQ(-255, Int(*row, 33414));
  EXPECT_EQ(kNotThere, Int(*row, 33439));
  EXPECT_EQ(-255, Int(*row, 33671));
  EXPECT_EQ(5, Int(*row, 33697));
  EXPECT_EQ(-255, Int(*row, 33423));
  EXPECT_EQ(70000, Int(*row, 34690));
  EXPECT_EQ(-255, Int(*row, 34160));
  EXPECT_EQ(200, Int(*row, 34169));
  EXPECT_EQ((std::vector{34170, 34471}), IdsIn(*row, 34170, 34519));
  Select({34169});
  row = ConvertLte(record);
  EXPECT_EQ((std::vector{34169}), IdsIn(*row, 34160, 34169)) << "header bytes follow the selection";
  EXPECT_EQ(5, Int(*row, 33697)) << "the other fields do not";
}

TEST_F(LteRecordTest, SignallingBlock) {
  const LteSignalBlock block{.serving = LteServingCell{.earfcn = 38650, .physical_cell_id = 1},
                             .fields = LteSignalFields{.ie33365 = 0xFFF6, .ie33422 = 12, .ie34581 = -2}};
  const Row row = ConvertLte(LteRecord(kModelH500Lte).With(block).Build());
  EXPECT_EQ(65536 + 2300, Int(*row, 33363));
  EXPECT_EQ(-10, Int(*row, 33365));
  EXPECT_EQ(12, Int(*row, 33422));
  EXPECT_EQ(-255, Int(*row, 34581));
}

}  // namespace
}  // namespace loom::testing
