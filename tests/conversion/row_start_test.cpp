#include <cmath>

#include "components/factory.h"
#include "components/measures.h"
#include "host/netdb/network_database.h"
#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

using RowStartTest = ConversionTest;

TEST_F(RowStartTest, EveryRowHasNumberTimePositionStampAndRecordId) {
  stream_.day_offset_s = 1000.0;
  const Row row = Convert(HandsetRecord().Id(77).At(5.25).Set(&CTestdataBase::time_stamp, 0xFFFFFFFF).Build());
  EXPECT_EQ(1, Int(*row, 1));
  EXPECT_EQ(1, row->GetSynFieldValue());
  EXPECT_EQ(1005.25, row->GetRecordTime());
  EXPECT_EQ(116.3f, Float(*row, 2379));
  EXPECT_EQ(39.9f, Float(*row, 2380));
  EXPECT_EQ(-1, Int(*row, 2386));
  EXPECT_EQ(77, Int(*row, 3));
  EXPECT_FALSE(stream_.ie_ids.Contains(2379)) << "header fields are columns of every stream";
}

struct PositionCase {
  const char* what;
  std::int32_t log_version;
  double longitude, latitude;
  float expected_longitude, expected_latitude;
};
void PrintTo(const PositionCase& c, std::ostream* out) { *out << c.what; }

class PositionTest : public RowStartTest, public ::testing::WithParamInterface<PositionCase> {};

TEST_P(PositionTest, IsWrittenByTheConventionOfTheLogVersion) {
  const PositionCase& c = GetParam();
  stream_.log_version = c.log_version;
  const Row row = Convert(HandsetRecord().Position(c.longitude, c.latitude).Build());
  EXPECT_EQ(c.expected_longitude, Float(*row, 2379)) << c.what;
  EXPECT_EQ(c.expected_latitude, Float(*row, 2380)) << c.what;
  EXPECT_EQ(c.expected_longitude == -255.0f ? kInvalidDouble : c.longitude, stream_.longitude.maximum);
  EXPECT_EQ(c.expected_latitude == -255.0f ? kInvalidDouble : c.latitude, stream_.latitude.minimum);
}

INSTANTIATE_TEST_SUITE_P(Positions, PositionTest,
                         ::testing::Values(PositionCase{"the borders", 300, 180.0, -90.0, 180.0f, -90.0f},
                                           PositionCase{"beyond them", 300, 180.0001, -90.0001, -255.0f, -255.0f},
                                           PositionCase{"NaN", 300, std::nan(""), 1.0, -255.0f, 1.0f},
                                           PositionCase{"-1 is a place", 300, -1.0, -1.0, -1.0f, -1.0f},
                                           PositionCase{"-1 is none", 110, -1.0, 39.0, -255.0f, 39.0f},
                                           PositionCase{"anything else", 110, 200.0, 99.0, 200.0f, 99.0f}));

TEST_F(RowStartTest, RangesGrowWithEveryRow) {
  Convert(HandsetRecord().At(20).Position(10, 50).Build());
  Convert(HandsetRecord().At(10).Position(12, 40).Build());
  Convert(HandsetRecord().At(30).NoPosition().Build());
  EXPECT_EQ(10.0, stream_.time_s.minimum);
  EXPECT_EQ(30.0, stream_.time_s.maximum);
  EXPECT_EQ(10.0, stream_.longitude.minimum);
  EXPECT_EQ(12.0, stream_.longitude.maximum);
  EXPECT_EQ(40.0, stream_.latitude.minimum);
  EXPECT_EQ(50.0, stream_.latitude.maximum);
}

TEST_F(RowStartTest, TravelStepsChainFromOneValidPositionToTheNext) {
  const auto step_m = [this](double longitude) {
    return Float(*Convert(HandsetRecord().Position(longitude, 39.9).Build()), 2381).value();
  };
  const auto expected_m = static_cast<float>(CalDistance(116.31, 39.9, 116.30, 39.9));
  EXPECT_EQ(0.0f, step_m(116.30));
  EXPECT_FLOAT_EQ(expected_m, step_m(116.31));
  EXPECT_NEAR(expected_m, step_m(116.32), 0.01) << "from the last position, not the first";
  EXPECT_EQ(0.0f, step_m(-255.0));
  EXPECT_EQ(0.0f, step_m(116.30)) << "a new chain";
  EXPECT_FLOAT_EQ(expected_m, step_m(116.31));
  stream_.log_version = 110;
  EXPECT_EQ(0.0f, step_m(-1.0)) << "the marker ends the chain";
  EXPECT_EQ(0.0f, step_m(200.0));
  EXPECT_GT(step_m(201.0), 0.0f) << "positions beyond the globe chain in these logs";
  stream_.stream_type = kStreamIndoorHandset;
  EXPECT_EQ(kNoFloat, Float(*Convert(HandsetRecord().Build()), 2381));
}

class CellDistanceTest : public RowStartTest {
 protected:
  CellDistanceTest() {
    PutCell(1, 116.4);
    PutCell(2, 116.5);
    converter_.SetCellSource(CFactory::Instance().CreateDBMapper());
    converter_.SetCellDistanceSwitch(true);
  }
  void PutCell(std::int64_t ci, double longitude) {
    host_.network().PutRows("tbl_Cell",
                            {{{"LAC", std::int64_t{7}}, {"CI", ci}, {"Longitude", longitude}, {"Latitude", 39.9}}});
  }
  std::optional<float> DistanceTo(std::int32_t cell_key) {
    return Float(*Convert(HandsetRecord().With(CIE_SCell_Para{.cell_key = cell_key}).Build()), 2387);
  }
  static float FromRecord(double longitude) { return static_cast<float>(CalDistance(116.3, 39.9, longitude, 39.9)); }
  static constexpr std::int32_t kCell1 = (7 << 16) + 1;
  static constexpr std::int32_t kCell2 = (7 << 16) + 2;
};

TEST_F(CellDistanceTest, IsToTheServingCellAndAskedOncePerCell) {
  EXPECT_EQ(FromRecord(116.4), DistanceTo(kCell1));
  PutCell(1, 110.0);
  EXPECT_EQ(FromRecord(116.4), DistanceTo(kCell1)) << "still the position asked for first";
  EXPECT_EQ(-255.0f, DistanceTo(-1));
  EXPECT_EQ(-255.0f, DistanceTo(-2));
  EXPECT_EQ(FromRecord(116.4), DistanceTo(kCell1)) << "missing keys do not ask";
  EXPECT_EQ(FromRecord(116.5), DistanceTo(kCell2));
  EXPECT_EQ(FromRecord(110.0), DistanceTo(kCell1));
  EXPECT_EQ(-255.0f, DistanceTo(12345)) << "a cell that nobody knows";
}

TEST_F(CellDistanceTest, NeedsAServingCellTheSwitchAndTheSelection) {
  EXPECT_EQ(kNoFloat, Float(*Convert(HandsetRecord().Build()), 2387));
  Select({2387});
  EXPECT_NE(kNoFloat, DistanceTo(kCell1));
  selection_switch_ = 0;
  converter_.SetCellDistanceSwitch(false);
  EXPECT_EQ(kNoFloat, DistanceTo(kCell1));
}

TEST_F(CellDistanceTest, IsLeftOutWhenNotSelected) {
  Select({499});
  EXPECT_EQ(kNoFloat, DistanceTo(kCell1));
}

TEST_F(RowStartTest, HeaderOnlyRowsAreGeographicWhateverTheLogVersion) {
  stream_.log_version = 110;
  stream_.row_number = 4;
  Select({});
  const auto record = HeaderOnlyRecord()
                          .Text("note")
                          .Position(-1.0, 91.0)
                          .Model(0x12345)
                          .Set(&CTestdataBase::ie5, 65535)
                          .Set(&CTestdataBase::ie7, 0)
                          .Build();
  const Row row = converter_.ConvertHeaderOnly(record, stream_.state, stream_, selection_switch_);
  EXPECT_EQ(-1.0f, Float(*row, 2379));
  EXPECT_EQ(-255.0f, Float(*row, 2380));
  EXPECT_EQ("note", Text(*row, 4));
  EXPECT_EQ(65535, Int(*row, 5));
  EXPECT_EQ(kNotThere, Int(*row, 7));
  EXPECT_EQ(0x2345, Int(*row, 8));
  EXPECT_EQ(kRecordHeaderOnly, Int(*row, 9));
  EXPECT_EQ(kNetworkModeGsm, Int(*row, 26771));
}

// The rows of the routes that show positions as they lie on the globe: in a log that marks missing coordinates by -1.0
// they measure from no such place.
TEST_F(CellDistanceTest, AMissingPositionIsNoPlaceInGsmAndHeaderOnlyRows) {
  const auto distances = [this](std::int32_t log_version, RecordBuilder record, double longitude) {
    stream_.log_version = log_version;
    stream_.previous = Position();
    std::vector<std::optional<float>> values;
    for (const double at : {116.3, longitude, 116.3}) {
      const TestRecord built = record.Position(at, 39.9).With(CIE_SCell_Para{.cell_key = kCell1}).Build();
      const Row row = record.Build().kind == kRecordHeaderOnly
                          ? converter_.ConvertHeaderOnly(built, stream_.state, stream_, selection_switch_)
                          : Convert(built);
      if (at == longitude) {
        EXPECT_EQ(static_cast<float>(longitude), Float(*row, 2379));
        values.push_back(Float(*row, 2387));
      }
      values.push_back(Float(*row, 2381));
    }
    return values;
  };
  using Values = std::vector<std::optional<float>>;
  EXPECT_EQ((Values{0.0f, -255.0f, 0.0f, 0.0f}), distances(110, HeaderOnlyRecord(), -1.0));
  EXPECT_EQ((Values{0.0f, kNoFloat, 0.0f, 0.0f}), distances(110, GsmRecord(), -1.0)) << "GSM rows ask for no cell";
  const auto far_m = static_cast<float>(CalDistance(-1.0, 39.9, 116.3, 39.9));
  EXPECT_EQ((Values{0.0f, far_m, far_m, far_m}).at(2), distances(300, GsmRecord(), -1.0).at(2)) << "a place elsewhere";
}

TEST_F(RowStartTest, NanGivesNoBoundAndStopsNone) {
  stream_.log_version = 110;
  Convert(HandsetRecord().At(std::nan("")).Position(std::nan(""), 50.0).Build());
  Convert(HandsetRecord().At(20.0).Position(12.0, std::nan("")).Build());
  Convert(HandsetRecord().At(10.0).Position(10.0, 40.0).Build());
  EXPECT_EQ(10.0, stream_.time_s.minimum);
  EXPECT_EQ(20.0, stream_.time_s.maximum);
  EXPECT_EQ(10.0, stream_.longitude.minimum);
  EXPECT_EQ(12.0, stream_.longitude.maximum);
  EXPECT_EQ(40.0, stream_.latitude.minimum);
  EXPECT_EQ(50.0, stream_.latitude.maximum);
}

TEST_F(RowStartTest, AnIeJoinsTheStreamsColumnsOnce) {
  Convert(HandsetRecord().Build());
  const std::size_t names = stream_.ie_names.size();
  EXPECT_TRUE(stream_.ie_ids.Contains(9));
  EXPECT_TRUE(stream_.ie_names.contains("RecordKind"));
  Convert(HandsetRecord().Build());
  EXPECT_EQ(names, stream_.ie_names.size());
}

TEST_F(RowStartTest, AnEmptySelectionLeavesTheHeaderAndPlainFields) {
  Select({}, {"no such element"});
  const Row row = Convert(HandsetRecord().Text("t").With(CIE_SCell_Para{.lac = 5}).Device(9).Build());
  EXPECT_EQ((std::vector<std::int32_t>{1, 3, 5, 6, 8, 9, 2379, 2380, 2381, 2386}), IdsIn(*row, 0, 40000));
}

class NetworkModeTest : public ConversionTest {};

TEST_F(NetworkModeTest, AChangeInvalidatesWhatTheNewRowLacks) {
  Convert(HandsetRecord()
              .With(CIE_SCell_Meas{.pccpch_rscp = 60, .ie501 = 9})
              .With(CIE_SCell_Para{.lac = 5})
              .Text("text")
              .Build());
  ASSERT_EQ(60, stream_.primary_rscp);
  Convert(HandsetRecord().Position(116.31, 39.9).Build());
  const Row row = Convert(HandsetRecord().Device(2).ModeChanged().With(CIE_SCell_Para{.ie142 = 3}).Build());
  EXPECT_EQ(-255, Int(*row, 145));
  EXPECT_EQ(-255, Int(*row, 499));
  EXPECT_EQ(-255.0f, Float(*row, 501));
  EXPECT_EQ(3, Int(*row, 142));
  EXPECT_EQ(1, std::ranges::count(row->GetParamID(), 2381)) << "what the row holds is not invalid as well";
  EXPECT_EQ(kNotThere, Int(*row, 4)) << "texts have no invalid value";
  EXPECT_EQ(0.0f, Float(*row, 2381)) << "the travel chain starts afresh";
  EXPECT_EQ(kInvalidShort, stream_.primary_rscp);
}

TEST_F(NetworkModeTest, FirstRowsModeOneAndUnchangedModesInvalidateNothing) {
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().ModeChanged().Build()), 145));
  Convert(HandsetRecord().Device(2).With(CIE_SCell_Para{.lac = 5}).Build());
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().Build()), 145));
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().Mode(kNetworkModeKeepToo).ModeChanged().Build()), 145));
  EXPECT_EQ(-255, Int(*Convert(HandsetRecord().Mode(kNetworkModeKeep).ModeChanged().Build()), 145));
}

TEST_F(NetworkModeTest, GsmStaysInForceUntilARecordNamesAnotherMode) {
  const auto is_gsm_row = [this](const RecordBuilder& builder) {
    const auto record = RecordBuilder(builder).With(CIE_GSM_SCell_Sys_Info{.ie31701 = 7}).Build();
    return Int(*Convert(record), 31701).has_value();
  };
  EXPECT_FALSE(is_gsm_row(HandsetRecord()));
  EXPECT_TRUE(is_gsm_row(GsmRecord()));
  EXPECT_TRUE(is_gsm_row(HandsetRecord().Mode(kNetworkModeKeep)));
  EXPECT_TRUE(is_gsm_row(HandsetRecord().Mode(kNetworkModeKeepToo)));
  EXPECT_FALSE(is_gsm_row(RecordBuilder(kRecordTdMessage).Mode(kNetworkModeGsm)));
  EXPECT_FALSE(is_gsm_row(HandsetRecord().Mode(kNetworkModeKeep)));
  EXPECT_TRUE(is_gsm_row(GsmRecord()));
  converter_.ResetForLog();
  EXPECT_FALSE(is_gsm_row(HandsetRecord().Mode(kNetworkModeKeep)));
}

}  // namespace
}  // namespace loom::testing
