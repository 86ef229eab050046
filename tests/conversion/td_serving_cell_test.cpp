#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

using TdServingCellTest = ConversionTest;

TEST_F(TdServingCellTest, MarkersAreLeftOutOrInvalid) {
  const Row row = Convert(HandsetRecord()
                              .Device(9)
                              .With(CIE_SCell_Para{.ie142 = -2, .lac = -1, .cell_parameter_id = 100, .ie149 = 4})
                              .With(CIE_GSM_RAT_Indicate{.rat = -2})
                              .With(TdCellIdentities{.ie26766 = -255, .ie26767 = 8})
                              .Build());
  EXPECT_EQ(100, Int(*row, 140));
  EXPECT_EQ(-255, Int(*row, 142));
  EXPECT_EQ(kNotThere, Int(*row, 145));
  EXPECT_EQ(kNotThere, Int(*row, 149)) << "only with import settings";
  EXPECT_EQ(-255, Int(*row, 26770));
  EXPECT_EQ(-255, Int(*row, 26766));
  EXPECT_EQ(8, Int(*row, 26767));
  EXPECT_EQ(kNotThere, Int(*row, 26768));
}

TEST_F(TdServingCellTest, CarryRowsShowTheLastCellOfTheSameDevice) {
  Select({3});
  Convert(HandsetRecord().Device(2).With(CIE_SCell_Para{.lac = 5, .cell_parameter_id = 1, .uarfcn = -2}).Build());
  Convert(HandsetRecord().Device(2).With(CIE_SCell_Para{.cell_parameter_id = 2}).Build());
  Convert(HandsetRecord().Device(6).With(CIE_SCell_Para{.cell_parameter_id = 3}).Build());
  const Row row = Convert(HandsetRecord().Device(2).Build());
  EXPECT_EQ(5, Int(*row, 145)) << "whatever the selection";
  EXPECT_EQ(2, Int(*row, 140));
  EXPECT_EQ(-255, Int(*row, 147));
  EXPECT_FALSE(stream_.ie_ids.Contains(145)) << "carried values make no column";
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().Device(1).Build()), 145));
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().Device(6).Build()), 140)) << "device 6 is not carried";
  converter_.ClearCarryRows();
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().Device(2).Build()), 145));
}

TEST_F(TdServingCellTest, UraIdentitiesFollowTheirCount) {
  const auto convert = [this](std::int8_t count) {
    CIE_SCell_Para block{.ura_identity_count = count};
    for (std::size_t at = 0; at < 8; ++at) block.ura_identities[at] = static_cast<std::int32_t>(at) + 70;
    return Convert(HandsetRecord().Device(0).With(block).Build());
  };
  EXPECT_TRUE(IdsIn(*convert(2), 160, 168).empty()) << "only with import settings";
  HaveSettings();
  EXPECT_TRUE(IdsIn(*convert(-1), 160, 168).empty());
  EXPECT_EQ((std::vector{160, 161, 168}), IdsIn(*convert(2), 160, 168));
  Row row = convert(0);
  EXPECT_EQ((std::vector{160, 161, 168}), IdsIn(*row, 160, 168));
  EXPECT_EQ(-255, Int(*row, 161));
  EXPECT_EQ(0, Int(*row, 168));
  row = convert(7);
  EXPECT_EQ(8u, IdsIn(*row, 160, 168).size());
  EXPECT_EQ(76, Int(*row, 166));
  EXPECT_EQ((std::vector{168}), IdsIn(*convert(8), 160, 168)) << "more than the list can hold";
}

TEST_F(TdServingCellTest, TimeslotsBecomeLevelsAndDifferences) {
  const std::array iscp{TimeslotValue{0, 20}, TimeslotValue{3, 25}, TimeslotValue{7, 99}, TimeslotValue{-1, 5}};
  const std::array rscp{TimeslotValue{3, 55}, TimeslotValue{4, -2}, TimeslotValue{1, 40}};
  const CIE_SCell_Meas block{.pccpch_rscp = 60,
                             .timeslot_iscp_count = 2,
                             .timeslot_iscp = iscp,
                             .timeslot_rscp_count = 2,
                             .timeslot_rscp = rscp,
                             .timeslot = 6,
                             .ie502 = 81,
                             .ie503 = 43};
  const Row row = Convert(HandsetRecord().With(block).Build());
  EXPECT_EQ(-56, Int(*row, 499));
  EXPECT_EQ(40, Int(*row, 507));
  EXPECT_EQ((std::vector{511, 514, 518}), IdsIn(*row, 511, 518));
  EXPECT_EQ(-96, Int(*row, 511));
  EXPECT_EQ(-91, Int(*row, 514));
  EXPECT_EQ(2, Int(*row, 518));
  EXPECT_EQ((std::vector{5408, 5409}), IdsIn(*row, 5407, 5411));
  EXPECT_EQ(-61, Int(*row, 5408));
  EXPECT_EQ(-255, Int(*row, 5409));
  EXPECT_EQ(30, Int(*row, 5429));
  EXPECT_EQ(-255, Int(*row, 5430)) << "one of the two is missing";
  EXPECT_EQ(10.0f, Float(*row, 5422)) << "of the first DPCH timeslot";
  EXPECT_EQ(10.0f, Float(*row, 503));
  EXPECT_EQ(10, Int(*row, 5439));
  EXPECT_EQ(10, Int(*row, 502));

  const Row next = Convert(HandsetRecord().With(CIE_SCell_Meas{.timeslot_iscp_count = 0}).Build());
  EXPECT_EQ(-255, Int(*next, 511));
  EXPECT_EQ(-255, Int(*next, 514));
  EXPECT_EQ(kNotThere, Int(*next, 512));
  EXPECT_EQ(kNotThere, Int(*next, 519)) << "the other list is absent";
}

TEST_F(TdServingCellTest, TheDifferenceRemembersBothSides) {
  const auto difference = [this](std::int8_t level, std::int8_t timeslot0) {
    const std::array iscp{TimeslotValue{0, timeslot0}};
    return Int(*Convert(HandsetRecord().With(CIE_SCell_Meas{.pccpch_rscp = level, .timeslot_iscp = iscp}).Build()),
               507);
  };
  EXPECT_EQ(kNotThere, difference(-1, -1));
  EXPECT_EQ(-255, difference(60, -1)) << "no timeslot 0 yet";
  EXPECT_EQ(35, difference(-1, 25));
  EXPECT_EQ(15, difference(40, -1));
  EXPECT_EQ(-255, difference(-2, -1));
  EXPECT_EQ(-255, difference(-1, 25)) << "an invalid level is remembered";
}

struct ScaledCase {
  const char* what;
  CIE_SCell_Meas block;
  std::int32_t id;
  std::optional<float> expected;
};
void PrintTo(const ScaledCase& c, std::ostream* out) { *out << c.what; }
class TimeslotFieldTest : public TdServingCellTest, public ::testing::WithParamInterface<ScaledCase> {};

TEST_P(TimeslotFieldTest, HasItsRule) {
  HaveSettings();
  const Row row = Convert(HandsetRecord().With(GetParam().block).Build());
  const auto value = row->GetIEValueByID(GetParam().id);
  std::optional<float> number;
  if (value) {
    const bool is_float = g_memDataType->GetType(GetParam().id) == kFieldFloat;
    number = is_float ? value->float_value : static_cast<float>(value->int_value);
  }
  EXPECT_EQ(GetParam().expected, number) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Rules, TimeslotFieldTest,
                         ::testing::Values(ScaledCase{"level -2", {.pccpch_rscp = -2}, 499, -255.0f},
                                           ScaledCase{"unsigned invalid", {.ie498 = 0xFE}, 498, -255.0f},
                                           ScaledCase{"unsigned absent", {.ie498 = 0xFF}, 498, kNoFloat},
                                           ScaledCase{"255 is absent", {.ie508 = 255}, 508, kNoFloat},
                                           ScaledCase{"254 is invalid", {.ie508 = 254}, 508, -255.0f},
                                           ScaledCase{"253 is a value", {.ie508 = 253}, 508, 253.0f},
                                           ScaledCase{"eighths", {.ie501 = 10}, 501, -14.875f},
                                           ScaledCase{"float invalid", {.ie501 = -2}, 501, -255.0f},
                                           ScaledCase{"halves", {.ie504 = 3}, 504, -9.5f},
                                           ScaledCase{"shifted by 256", {.ie509 = 300}, 509, 44.0f}));

}  // namespace
}  // namespace loom::testing
