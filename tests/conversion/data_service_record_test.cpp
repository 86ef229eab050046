#include <cmath>
#include <limits>

#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

class DataServiceRecordTest : public ConversionTest {
 protected:
  Row ConvertService(const ServiceBlock& block) {
    stream_.row_number = ++rows_;
    return converter_.ConvertDataService(RecordBuilder(kRecordDataService).With(block).Build(), stream_,
                                         selection_switch_);
  }
  Row ConvertTest(const CTestdataBase& record) {
    stream_.row_number = ++rows_;
    return converter_.ConvertDataTest(record, stream_, selection_switch_);
  }
};

TEST_F(DataServiceRecordTest, ShortHeader) {
  stream_.stream_type = kStreamIndoorHandset;
  stream_.row_number = 1;
  const Row row = converter_.ConvertDataService(
      RecordBuilder(kRecordDataService).Id(8).Text("no").Position(180.0, -90.5).Build(), stream_, 0);
  EXPECT_EQ((std::vector{1, 3, 9, 2379, 2380, 2381, 2386, 26771}), IdsIn(*row, 0, 40000));
  EXPECT_EQ(180.0f, Float(*row, 2379));
  EXPECT_EQ(-255.0f, Float(*row, 2380));
  EXPECT_TRUE(stream_.ie_ids.Contains(3));
}

TEST_F(DataServiceRecordTest, ServiceKindsZeroAndOne) {
  Row row = ConvertService(
      {.service_kind = 1,
       .ie2410 = -2,
       .kind01 = ServiceKind01{
           .ie2411 = 0x1'0000'0007, .ie2412 = 5, .ie2413 = -2.0f, .ie2414 = 256, .ie2415 = -1, .ie2417 = -2}});
  EXPECT_EQ(1, Int(*row, 2408));
  EXPECT_EQ(-255, Int(*row, 2409));
  EXPECT_EQ(-255, Int(*row, 2410));
  EXPECT_EQ(7, Int(*row, 2411));
  EXPECT_EQ(5, Int(*row, 2412));
  EXPECT_EQ(-255.0f, Float(*row, 2413));
  EXPECT_EQ(2.0f, Float(*row, 2414));
  EXPECT_EQ(kNoFloat, Float(*row, 2415));
  EXPECT_EQ(-255.0f, Float(*row, 2417));
  for (const std::int64_t counter : {std::int64_t{0}, std::int64_t{-5}}) {
    EXPECT_EQ(kNotThere, Int(*ConvertService({.service_kind = 0, .kind01 = ServiceKind01{.ie2411 = counter}}), 2411));
  }
}

TEST_F(DataServiceRecordTest, ServiceKindTwoEndsTheValuesOfKindsZeroAndOne) {
  ConvertService({.service_kind = 0, .kind01 = ServiceKind01{.ie2411 = 3, .ie2413 = 1.5f}});
  const ServiceBlock kind2{.service_kind = 2,
                           .kind2 = ServiceKind2{.ie2424 = 64.0, .ie2425 = -1.0, .ie2421 = 9, .ie2419 = -5}};
  Row row = ConvertService(kind2);
  EXPECT_EQ(-5, Int(*row, 2419));
  EXPECT_EQ(9.0f, Float(*row, 2421));
  EXPECT_EQ(0.5f, Float(*row, 2424));
  EXPECT_EQ(kNoFloat, Float(*row, 2425));
  EXPECT_EQ((std::vector{2411, 2413}), IdsIn(*row, 2411, 2418));
  EXPECT_EQ(-255, Int(*row, 2411));
  EXPECT_EQ(-255.0f, Float(*row, 2413));
  row = ConvertService({.service_kind = 0});
  EXPECT_EQ((std::vector{2419, 2421, 2424}), IdsIn(*row, 2411, 2426));
  EXPECT_EQ(-255.0f, Float(*row, 2424));
}

TEST_F(DataServiceRecordTest, ServiceKindThree) {
  ConvertService({.service_kind = 0, .kind01 = ServiceKind01{.ie2412 = 3}});
  ConvertService({.service_kind = 2, .kind2 = ServiceKind2{.ie2426 = 3}});
  Row row = ConvertService({.service_kind = 3, .kind3 = ServiceKind3{.ie2427 = "www.example.com", .ie2435 = 0.25f}});
  EXPECT_EQ("www.example.com", Text(*row, 2427));
  EXPECT_EQ(kNotThere, Int(*row, 2428));
  EXPECT_EQ(0.25f, Float(*row, 2435));
  EXPECT_EQ((std::vector{2412, 2426}), IdsIn(*row, 2411, 2426));
}

TEST_F(DataServiceRecordTest, OtherServiceKindsHaveThreeIEs) {
  const Row row = ConvertService({.service_kind = 7, .ie2410 = 4, .kind01 = ServiceKind01{.ie2412 = 5}});
  EXPECT_EQ((std::vector{2408, 2409, 2410}), IdsIn(*row, 2408, 2435));
  Select({2410});
  EXPECT_EQ((std::vector{2410}), IdsIn(*ConvertService({.service_kind = 7, .ie2410 = 4}), 2408, 2435));
}

TEST_F(DataServiceRecordTest, DataTestStatistics) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const DataTestFirst first{
      .ie21265 = -2, .ie21266 = 6, .ie21271 = 1536.0, .ie21272 = -1.0000001, .ie21273 = -2.0, .ie21274 = kInfinity};
  for (const std::int32_t kind : {kRecordDataTest1, kRecordDataTest2}) {
    const Row row = ConvertTest(RecordBuilder(kind).With(first).With(DataTestSecond{.ie21324 = 9}).Build());
    EXPECT_EQ(kind, Int(*row, 9));
    EXPECT_EQ(-255, Int(*row, 21265));
    EXPECT_EQ(6, Int(*row, 21266));
    EXPECT_EQ(1.5f, Float(*row, 21271));
    EXPECT_EQ(kNoFloat, Float(*row, 21272));
    EXPECT_EQ(-255.0f, Float(*row, 21273));
    EXPECT_TRUE(std::isinf(Float(*row, 21274).value_or(0.0f)));
    EXPECT_EQ(9, Int(*row, 21324));
  }
  EXPECT_TRUE(IdsIn(*ConvertTest(RecordBuilder(kRecordDataTest1).Build()), 21265, 21324).empty());
}

}  // namespace
}  // namespace loom::testing
