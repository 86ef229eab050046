#include <array>

#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

using GsmRecordTest = ConversionTest;

TEST_F(GsmRecordTest, GsmModeLastsUntilAnotherModeIsAnnounced) {
  const CIE_GSM_SCell_Sys_Info cell{.ie31706 = 7};
  Convert(HandsetRecord().Build());
  EXPECT_EQ(7, Int(*Convert(GsmRecord().With(cell).Build()), 31706));
  EXPECT_EQ(7, Int(*Convert(GsmRecord().Mode(0).With(cell).Build()), 31706));
  EXPECT_EQ(kNotThere, Int(*Convert(HandsetRecord().With(cell).Build()), 31706));
}

TEST_F(GsmRecordTest, AChangeOfModeEndsTheValuesOfTheOldMode) {
  Convert(HandsetRecord().With(CIE_SCell_Para{.cell_parameter_id = 5}).With(CIE_SCell_Meas{.pccpch_rscp = 30}).Build());
  EXPECT_EQ(30, stream_.primary_rscp);
  const Row row = Convert(GsmRecord().ModeChanged().Position(116.31, 39.9).Build());
  EXPECT_EQ(-255, Int(*row, 140));
  EXPECT_EQ(kInvalidShort, stream_.primary_rscp);
  EXPECT_EQ(0.0f, Float(*row, 2381)) << "the travel chain starts afresh";
  EXPECT_EQ(kNotThere, Int(*Convert(GsmRecord().Build()), 140));
}

TEST_F(GsmRecordTest, RowsStartWithTheRecordHeader) {
  const Row row = Convert(GsmRecord().Id(77).Text("note").Set(&CTestdataBase::ie7, 0).Build());
  EXPECT_EQ(1, Int(*row, 1));
  EXPECT_EQ(77, Int(*row, 3));
  EXPECT_EQ("note", Text(*row, 4));
  EXPECT_EQ(kNotThere, Int(*row, 7));
  EXPECT_EQ(kModelRv2230, Int(*row, 8));
  EXPECT_EQ(3, Int(*row, 26771));
}

struct Conversion {
  TestRecord record;
  std::int32_t id;
  std::optional<std::int32_t> value;
};

TEST_F(GsmRecordTest, MarkersAndConversions) {
  using Serving = CIE_GSM_SCell_Sys_Info;
  using Dedicated = CIE_GSM_Ded_Meas_Info;
  using Llc = CIE_GSM_LLC_GPRS_Qos_Info;
  using Rlc = CIE_GSM_RLC_GPRS_Qos_Info;
  const std::vector<Conversion> cases{
      {GsmRecord().With(Serving{.rx_lev = 0xFF}), 31703, kNotThere},
      {GsmRecord().With(Serving{.rx_lev = 0xFE}), 31703, -2},
      {GsmRecord().With(Serving{.rx_lev = 60}), 31703, -50},
      {GsmRecord().With(Serving{.ie31701 = 0xFFFE}), 31701, -2},
      {GsmRecord().With(CIE_GSM_SCell_Resel_Sys_Info{.ie31717 = 0xFF}), 31717, 255},
      {GsmRecord().With(CIE_GSM_SCell_Radio_Info{}), 32078, -255},
      {GsmRecord().With(CIE_GSM_SCell_Radio_Info{.ie32078 = -1}), 32078, -1},
      {GsmRecord().With(CIE_GSM_RAT_Indicate{.rat = -2}), 31718, -255},
      {GsmRecord().With(CIE_GSM_Ded_CH_Info{.channel_bits = 0xFC}), 31723, 3},
      {GsmRecord().With(CIE_GSM_Ded_CH_Info{.channel_bits = 0xF0}), 31723, kNotThere},
      {GsmRecord().With(Dedicated{.ie31966 = 7}), 31966, 7},
      {GsmRecord().With(Dedicated{.ie31966 = 8}), 31966, kNotThere},
      {GsmRecord().With(Dedicated{.ie31715 = 0xFE}), 31715, 254},
      {GsmRecord().With(Dedicated{.ie32076 = 0}), 32076, kNotThere},
      {GsmRecord().With(Dedicated{.ie32076 = 31}), 32076, 31},
      {GsmRecord().With(Llc{.ie32195 = 2048999}), 32195, 2048},
      {GsmRecord().With(Llc{.ie32195 = 2049000}), 32195, -255},
      {GsmRecord().With(Rlc{.ie32193 = 4294967294}), 32193, 4294967},
      {GsmRecord().With(Rlc{.ie32193 = 0xFFFFFFFF}), 32193, kNotThere},
      {GsmRecord().With(CIE_SCell_Para{.ie142 = -2}), 31697, -255},
  };
  for (const Conversion& each : cases) {
    EXPECT_EQ(each.value, Int(*Convert(each.record), each.id)) << "IE " << each.id;
  }
}

TEST_F(GsmRecordTest, AtMostSixNeighboursOfThoseThatTheListHolds) {
  std::array<GsmNeighbour, 9> entries;
  for (std::size_t at = 0; at < entries.size(); ++at) {
    entries[at] = {.bcch = static_cast<std::uint16_t>(500 + at), .rx_lev = kAbsentGsm16};
  }
  Row row = Convert(GsmRecord().With(CIE_GSM_NCell_Info{.count = 9, .neighbours = entries}).Build());
  EXPECT_EQ((std::vector{32091, 32092, 32093, 32094, 32095, 32096}), IdsIn(*row, 32079, 32102));
  EXPECT_EQ(505, Int(*row, 32096));
  EXPECT_EQ(-255, Int(*row, 32108));
  row = Convert(GsmRecord().With(CIE_GSM_NCell_Info{.count = 200, .neighbours = std::span(entries).first(2)}).Build());
  EXPECT_EQ((std::vector{32091, 32092}), IdsIn(*row, 32079, 32102));
  row = Convert(
      GsmRecord().With(CIE_GSM_NCell_Info{.list_kind = 1, .count = 9, .neighbours = entries, .ie31720 = 4}).Build());
  EXPECT_TRUE(IdsIn(*row, 32079, 32162).empty());
  EXPECT_EQ((std::vector{31720}), IdsIn(*row, 31720, 31722));
}

TEST_F(GsmRecordTest, OptionalValuesNeedASelection) {
  const std::array entries{GsmNeighbour{.bcch = 3, .rx_lev_access_min = -100, .form = 1, .c1 = 10, .c2 = 11, .c31 = 12},
                           GsmNeighbour{.bcch = 4, .form = 3, .c2 = 11, .c31 = 12},
                           GsmNeighbour{.bcch = 5, .form = 7, .c31 = 12, .c32 = 13},
                           GsmNeighbour{.bcch = 6, .form = 8, .c2 = 11, .c31 = 12, .c32 = 13}};
  const TestRecord record = GsmRecord()
                                .With(CIE_GSM_NCell_Info{.count = 4, .neighbours = entries})
                                .With(CIE_GSM_SCell_Radio_Info{.form = 4, .ie32075 = 1, .ie32244 = 2, .ie32245 = 3})
                                .With(CIE_GSM_2230E_Simple_Info{.ie32170_first = 1, .ie32170_second = 2, .ie32270 = 6});
  Row row = Convert(record);
  EXPECT_EQ(3, Int(*row, 32091));
  EXPECT_TRUE(IdsIn(*row, 32109, 32162).empty());
  EXPECT_TRUE(IdsIn(*row, 32244, 32273).empty());
  EXPECT_EQ(kNotThere, Int(*row, 32170));

  Select({32245, 32170, 32270}, {"NborC1", "NborC2", "NborC31", "NborC32"});
  row = Convert(record);
  EXPECT_EQ(kNotThere, Int(*row, 32091)) << "not selected";
  EXPECT_EQ(10, Int(*row, 32109));
  EXPECT_EQ((std::vector{32115}), IdsIn(*row, 32115, 32120));
  EXPECT_EQ((std::vector{32152}), IdsIn(*row, 32151, 32156));
  EXPECT_EQ((std::vector{32159}), IdsIn(*row, 32157, 32162));
  EXPECT_EQ((std::vector{32245, 32270}), IdsIn(*row, 32244, 32273));
  EXPECT_EQ(CIE_GSM_2230E_Simple_Info::ChangeValue2CSText(1, 2), Text(*row, 32170));
}

TEST_F(GsmRecordTest, DedicatedChannelListsItsFrequencies) {
  const std::array<std::uint8_t, 3> numbers{3, 17, 255};
  CIE_GSM_Ded_CH_Info info{.frequencies = GsmDedicatedFrequencies{.kind = 1, .ie31727 = 9, .ie31732 = numbers}};
  Row row = Convert(GsmRecord().With(info).Build());
  EXPECT_EQ(3, Int(*row, 32264));
  EXPECT_EQ("3, 17, 255", Text(*row, 31732));
  Select({32264, 31727});
  info.frequencies->kind = 0;
  row = Convert(GsmRecord().With(info).Build());
  EXPECT_EQ(1, Int(*row, 32264));
  EXPECT_EQ(9, Int(*row, 31727));
  EXPECT_EQ(kNotThere, Int(*row, 31732));
  info.frequencies->kind = 2;
  EXPECT_EQ(kNotThere, Int(*Convert(GsmRecord().With(info).Build()), 32264));
}

TEST_F(GsmRecordTest, TdScdmaNeighboursOfGsmRows) {
  const std::array<TdNeighbour, 7> entries{TdNeighbour{.ie32246 = 100, .ie32252 = -999}};
  const Row row = Convert(GsmRecord().With(CIE_NCell_Meas{.count = 100, .neighbours = entries}).Build());
  EXPECT_EQ(100, Int(*row, 32246));
  EXPECT_EQ(-255, Int(*row, 32252));
  EXPECT_EQ(12u, IdsIn(*row, 32246, 32258).size());
}

TEST_F(GsmRecordTest, Layer3HeaderAndEvents) {
  const auto record = [](std::int32_t message_id, std::int32_t word156) {
    return GsmRecord()
        .Message(message_id, "Paging Request")
        .Set(&CTestdataBase::word156, word156)
        .Direction(1)
        .Channel(4)
        .RawMessage("ab")
        .Event(1101)
        .Build();
  };
  Row row = Convert(record(3005, 1));
  EXPECT_EQ(1, Int(*row, 33));
  EXPECT_EQ("Paging Request", Text(*row, 35));
  EXPECT_EQ(2, Int(*row, 36));
  EXPECT_EQ("ab", Text(*row, 37));
  EXPECT_EQ(4, Int(*row, 39));
  EXPECT_EQ(1101, Int(*row, 10));
  EXPECT_EQ("CallAttempt", Text(*row, 20));
  EXPECT_TRUE(stream_.event_names.contains("CallAttempt"));
  EXPECT_TRUE(stream_.l3_names.contains("Paging Request"));
  EXPECT_EQ(kNotThere, Int(*Convert(record(3005, 40000)), 33));
  EXPECT_EQ(kNotThere, Int(*Convert(record(3004, 1)), 33));
  EXPECT_EQ(kNotThere, Int(*Convert(GsmRecord().Event(2052).Build()), 10));

  Select({10, 35}, {"L3"});
  row = Convert(record(3005, 1));
  EXPECT_EQ(1, Int(*row, 33));
  EXPECT_EQ(kNotThere, Int(*row, 10)) << "selected by the name Event only";
}

}  // namespace
}  // namespace loom::testing
