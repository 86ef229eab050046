#include <array>
#include <numeric>

#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

class TdListsTest : public ConversionTest {
 protected:
  template <class Block>
  Row ConvertBlock(const Block& block) {
    return Convert(HandsetRecord().With(block).Build());
  }
};

std::vector<std::int32_t> Range(std::int32_t first, std::int32_t last) {
  std::vector<std::int32_t> ids(static_cast<std::size_t>(last - first + 1));
  std::iota(ids.begin(), ids.end(), first);
  return ids;
}

CIE_NCell_Meas Neighbours(int count, std::span<const TdNeighbour> list) {
  return {.count = static_cast<std::int8_t>(count), .neighbours = list};
}

TEST_F(TdListsTest, FewerNeighboursResetFromTheOneBehindTheLast) {
  std::array<TdNeighbour, 8> list;
  list.fill({.cell_parameter_id = 7});
  ConvertBlock(Neighbours(8, list));
  ConvertBlock(Neighbours(5, std::span(list).first(5)));
  const Row row = ConvertBlock(Neighbours(3, std::span(list).first(3)));
  EXPECT_EQ(3, Int(*row, 1108));
  EXPECT_EQ((std::vector{1141, 1142, 1143, 1145, 1146, 1147, 1148}), IdsIn(*row, 1141, 1172));
  EXPECT_EQ(7, Int(*row, 1143));
  EXPECT_EQ(-255, Int(*row, 1145));
  EXPECT_TRUE(IdsIn(*row, 1108 + 1, 1140).empty());
  EXPECT_EQ(Range(1141, 1148), IdsIn(*ConvertBlock(Neighbours(0, {})), 1141, 1172)) << "0 resets them all";
  EXPECT_TRUE(IdsIn(*ConvertBlock(Neighbours(-1, list)), 1108, 1172).empty()) << "no list";
}

TEST_F(TdListsTest, LongNeighbourListsStayInTheirRange) {
  std::array<TdNeighbour, 40> list;
  list.fill({.cell_parameter_id = 7});
  const Row row = ConvertBlock(Neighbours(40, list));
  EXPECT_EQ(Range(1141, 1172), IdsIn(*row, 1141, 1172));
  EXPECT_EQ(Range(1141, 1141), IdsIn(*ConvertBlock(Neighbours(31, std::span(list).first(1))), 1141, 1172))
      << "a count of 31 resets nothing";
}

struct NeighbourCase {
  const char* what;
  TdNeighbour neighbour;
  std::int32_t id;
  std::optional<std::int32_t> expected;
};
void PrintTo(const NeighbourCase& c, std::ostream* out) { *out << c.what; }
class NeighbourFieldTest : public TdListsTest, public ::testing::WithParamInterface<NeighbourCase> {};

TEST_P(NeighbourFieldTest, HasItsMarkers) {
  HaveSettings();
  const std::array list{GetParam().neighbour};
  EXPECT_EQ(GetParam().expected, Int(*ConvertBlock(Neighbours(1, list)), GetParam().id)) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Markers, NeighbourFieldTest,
                         ::testing::Values(NeighbourCase{"0xFF is invalid", {}, 1141, -255},
                                           NeighbourCase{"-1 is invalid", {}, 1173, -255},
                                           NeighbourCase{"a level", {.pccpch_rscp = 36}, 1205, -80},
                                           NeighbourCase{"an invalid level", {}, 1205, -255},
                                           NeighbourCase{"a result of -1", {.pccpch_rscp = 115}, 1205, kNotThere},
                                           NeighbourCase{"a result of -2", {.pccpch_rscp = 114}, 1205, -255},
                                           NeighbourCase{"unsigned", {.ie1237 = 200}, 1237, 200},
                                           NeighbourCase{"255", {.ie1301 = 255}, 1301, -255},
                                           NeighbourCase{"-1 as a result", {.ie1301 = -1}, 1301, kNotThere},
                                           NeighbourCase{"shifted", {.ie1109 = 51}, 1109, -50}));

TEST_F(TdListsTest, NeighbourTimeslotsNeedSettings) {
  TdNeighbour neighbour{.timeslot_count = 2};
  neighbour.timeslot_iscp.entries[0] = {3, 16};
  neighbour.timeslot_iscp.entries[1] = {9, 16};  // no such timeslot
  neighbour.timeslot_iscp.size = 2;
  const std::array list{TdNeighbour{}, neighbour};
  EXPECT_TRUE(IdsIn(*ConvertBlock(Neighbours(2, list)), 1269, 1588).empty());
  HaveSettings();
  Row row = ConvertBlock(Neighbours(2, list));
  EXPECT_EQ((std::vector{1375}), IdsIn(*row, 1365, 1588));
  EXPECT_EQ(-100, Int(*row, 1375));
  EXPECT_EQ(2, Int(*row, 1334));
  row = ConvertBlock(Neighbours(2, std::array{TdNeighbour{}, TdNeighbour{}}));
  EXPECT_EQ(-255, Int(*row, 1334));
  EXPECT_EQ(-255, Int(*row, 1375));
}

TEST_F(TdListsTest, EntriesWriteByNumberAndTheOthersAreReset) {
  const std::array first{TdTransportChannel{.number = 1, .ie935 = 4, .ie1000 = 9, .ie1033 = 2.5f},
                         TdTransportChannel{.number = 32, .ie935 = -1, .ie1000 = -2, .ie1033 = -1.0f},
                         TdTransportChannel{.number = 33, .ie935 = 5}, TdTransportChannel{.number = 0, .ie935 = 5},
                         TdTransportChannel{.number = -7, .ie935 = 5}};
  Row row = ConvertBlock(CIE_Channel_Para{.transport_channel_count = 5, .transport_channels = first});
  EXPECT_EQ(5, Int(*row, 200));
  EXPECT_EQ((std::vector{936, 967}), IdsIn(*row, 935, 967));
  EXPECT_EQ(-255, Int(*row, 967)) << "absent is invalid in an entry";
  EXPECT_EQ(-255, Int(*row, 1032));
  EXPECT_EQ(2.5f, Float(*row, 1034));
  EXPECT_EQ(-255.0f, Float(*row, 1065));

  const std::array second{TdTransportChannel{.number = 1, .ie935 = 6, .ie1000 = 7, .ie1033 = 1.0f}};
  row = ConvertBlock(CIE_Channel_Para{.transport_channel_count = 1, .transport_channels = second});
  EXPECT_EQ(6, Int(*row, 936));
  EXPECT_EQ(-255, Int(*row, 967));
  EXPECT_EQ(-255.0f, Float(*row, 1065));
  row = ConvertBlock(CIE_Channel_Para{.transport_channel_count = 0});
  EXPECT_EQ(-255, Int(*row, 936));
  EXPECT_EQ(-255.0f, Float(*row, 1034));
  EXPECT_TRUE(IdsIn(*ConvertBlock(CIE_Channel_Para{}), 198, 1065).empty()) << "no lists, no counts";
}

TEST_F(TdListsTest, CountsBeyondTheListWriteWhatThereIs) {
  const std::array entries{TdNumberedByte{.number = 2, .ie264 = 1}};
  const Row row = ConvertBlock(CIE_Channel_Para{.numbered_byte_count = 127, .numbered_bytes = entries});
  EXPECT_EQ(127, Int(*row, 199));
  EXPECT_EQ((std::vector{266}), IdsIn(*row, 265, 296));
  EXPECT_EQ(-255, Int(*ConvertBlock(CIE_Channel_Para{.numbered_byte_count = 0}), 266));
}

TEST_F(TdListsTest, AGroupIsSelectedByTheIdsOfItsFirstNumber) {
  Select({1034, 936});
  const std::array entries{TdTransportChannel{.number = 9, .ie935 = 4, .ie1000 = 9, .ie1033 = 2.5f}};
  const std::array bytes{TdNumberedByte{.number = 2, .ie264 = 1}};
  const Row row = ConvertBlock(CIE_Channel_Para{
      .numbered_byte_count = 1, .numbered_bytes = bytes, .transport_channel_count = 1, .transport_channels = entries});
  EXPECT_EQ((std::vector{200, 944, 1042}), IdsIn(*row, 170, 1065));
}

TEST_F(TdListsTest, CodeChannelsAndTimeslotsAreConfiguredOnce) {
  const std::array entries{
      TdCodeChannel{.number = 0, .timeslot = 2, .ie297 = 2, .ie393 = 10, .direction = 1, .midamble_shift = 4},
      TdCodeChannel{.number = 95, .timeslot = 2, .ie297 = 2, .ie393 = 11, .direction = 0},
      TdCodeChannel{.number = 96, .timeslot = 7, .ie297 = 3, .ie393 = 12, .direction = 1}};
  const CIE_Channel_Para block{.code_channel_count = 3, .code_channels = entries};
  EXPECT_TRUE(IdsIn(*ConvertBlock(block), 176, 197).empty()) << "timeslots need settings";
  HaveSettings();
  Row row = ConvertBlock(block);
  EXPECT_EQ((std::vector{393, 488}), IdsIn(*row, 393, 488));
  EXPECT_EQ((std::vector{297, 392}), IdsIn(*row, 297, 392));
  EXPECT_EQ((std::vector{178, 185, 193}), IdsIn(*row, 176, 197));
  EXPECT_EQ(1, Int(*row, 193)) << "the first entry of the timeslot";
  EXPECT_EQ(-255, Int(*row, 178));
  row = ConvertBlock(CIE_Channel_Para{.code_channel_count = 0});
  EXPECT_EQ(0, Int(*row, 198));
  EXPECT_EQ(-255, Int(*row, 488));
  EXPECT_EQ(-255, Int(*row, 193));
}

TEST_F(TdListsTest, CodeValuesAreTenthsWhenTheScaleWordSaysSo) {
  const auto values = [this](std::int32_t scale_word) {
    const std::array entries{TdCodeEntryD{.number = 3, .ie1588 = 25, .ie1622 = -1, .ie1656 = 7}};
    return ConvertBlock(CIE_Meas_Res{.count_d = 1, .entries_d = entries, .scale_word = scale_word});
  };
  EXPECT_EQ(2.5f, Float(*values(-1), 1591));
  EXPECT_EQ(25.0f, Float(*values(139), 1591));
  EXPECT_EQ(2.5f, Float(*values(140), 1591));
  EXPECT_EQ(-255.0f, Float(*values(0), 1625));
  EXPECT_EQ(kNotThere, Int(*values(0), 1659)) << "only with import settings";
  HaveSettings();
  EXPECT_EQ(7.0f, Float(*values(-1), 1659)) << "not scaled";
}

TEST_F(TdListsTest, GroupEHasNumbers5To15) {
  const std::array entries{TdCodeEntryE{.number = 4, .ie1942 = 1}, TdCodeEntryE{.number = 5, .ie1953 = 12},
                           TdCodeEntryE{.number = 15, .ie1942 = 3}, TdCodeEntryE{.number = 16, .ie1942 = 1}};
  Row row = ConvertBlock(CIE_Meas_Res{.count_e = 4, .entries_e = entries});
  EXPECT_EQ((std::vector{1947, 1957, 1958, 1968}), IdsIn(*row, 1942, 1968));
  EXPECT_EQ(1.2f, Float(*row, 1958));
  EXPECT_EQ(-255.0f, Float(*row, 1968));
  row = ConvertBlock(CIE_Meas_Res{.count_e = 0});
  EXPECT_EQ((std::vector{1947, 1957, 1958, 1968}), IdsIn(*row, 1942, 1968));
}

TEST_F(TdListsTest, GroupFHasTwelveValuesPerNumber) {
  TdCodeEntryF entry{.number = 32};
  for (std::size_t at = 0; at < 12; ++at) entry.ie1994[at] = static_cast<std::int32_t>(at);
  const std::array entries{entry};
  const CIE_Meas_Res block{.ie490 = 4, .ie489 = 100, .count_f = 1, .entries_f = entries};
  EXPECT_EQ((std::vector{493}), IdsIn(*ConvertBlock(block), 489, 2378)) << "the rest needs settings";
  HaveSettings();
  const Row row = ConvertBlock(block);
  EXPECT_EQ(11, Int(*row, 1994 + 32 * 11 + 32));
  EXPECT_EQ(12u, IdsIn(*row, 1995, 2378).size());
  EXPECT_EQ(-20, Int(*row, 489));
  EXPECT_EQ(3, Int(*row, 490));
  EXPECT_EQ(-255, Int(*ConvertBlock(CIE_Meas_Res{.count_f = 0}), 1994 + 32 * 11 + 32));
}

TEST_F(TdListsTest, GroupJIsNumberedByPosition) {
  HaveSettings();
  std::vector<TdPhysicalEntryJ> entries(300, TdPhysicalEntryJ{.ie3842 = 8, .ie4098 = -1, .ie4354 = 13857});
  Row row = ConvertBlock(CIE_Layer12_Config_Para{.count_j = 300, .entries_j = entries});
  EXPECT_EQ(Range(3842, 4097), IdsIn(*row, 3842, 4097));
  EXPECT_EQ(-255, Int(*row, 4098));
  EXPECT_EQ(1.0f, Float(*row, 4354 + 255));
  entries.resize(2);
  row = ConvertBlock(CIE_Layer12_Config_Para{.count_j = 2, .entries_j = entries});
  EXPECT_EQ(8, Int(*row, 3843));
  EXPECT_EQ(-255, Int(*row, 3844));
  EXPECT_EQ(-255.0f, Float(*row, 4354 + 255));
}

TEST_F(TdListsTest, GroupHAndTheSubBlocksNeedSettingsButForIe3710) {
  const std::array entries{TdPhysicalEntryH{.number = 5, .ie3826 = -1}, TdPhysicalEntryH{.number = 16}};
  const std::string long_text(50, 'x');
  const CIE_Layer12_Config_Para block{.count_h = 2,
                                      .entries_h = entries,
                                      .first = TdPhysicalFirst{.ie3688 = 1, .ie3689 = long_text},
                                      .second = TdPhysicalSecond{.ie3698 = "abc", .ie3705 = 20, .ie3710 = 3}};
  EXPECT_EQ((std::vector{3710}), IdsIn(*ConvertBlock(block), 2400, 5000));
  HaveSettings();
  const Row row = ConvertBlock(block);
  EXPECT_EQ(5, Int(*row, 3820));
  EXPECT_EQ(-255, Int(*row, 3831));
  EXPECT_EQ(long_text.substr(0, 43), Text(*row, 3689));
  EXPECT_EQ("abc", Text(*row, 3698));
  EXPECT_EQ(2.5f, Float(*row, 3705));
  EXPECT_EQ(kNotThere, Int(*row, 3723)) << "a null text";
}

TEST_F(TdListsTest, SystemInfoArraysEndWithTheListTheCountOrTheirRange) {
  const std::vector<std::int32_t> values(30, 5);
  const Row row = ConvertBlock(TdSystemInfo{.ie21325 = 43,
                                            .ie21327 = 0xFFFE,
                                            .ie21328 = 100,
                                            .ie21329 = values,
                                            .ie26772 = 2,
                                            .ie26773 = values,
                                            .ie26900 = -3,
                                            .ie26901 = values,
                                            .ie26966 = 4000,
                                            .ie26967 = std::span(values).first(4)});
  EXPECT_EQ(10.0f, Float(*row, 21325));
  EXPECT_EQ(-255, Int(*row, 21327));
  EXPECT_EQ(Range(21329, 21354), IdsIn(*row, 21329, 21400));
  EXPECT_EQ(Range(26773, 26774), IdsIn(*row, 26773, 26884));
  EXPECT_TRUE(IdsIn(*row, 26901, 26964).empty());
  EXPECT_EQ(Range(26967, 26970), IdsIn(*row, 26967, 30078));
}

TEST_F(TdListsTest, CellListsHold1To20Cells) {
  const std::vector<TdCell> cells(25, TdCell{.ie31362 = 1, .ie31542 = -2});
  const auto ids = [&](std::int16_t count) {
    return IdsIn(*ConvertBlock(TdCellList{.count = count, .cells = cells}), 31362, 31561);
  };
  EXPECT_EQ((std::vector{31362, 31363, 31542, 31543}), ids(2));
  EXPECT_EQ(40u, ids(20).size());
  EXPECT_TRUE(ids(0).empty());
  EXPECT_TRUE(ids(21).empty());
  EXPECT_TRUE(ids(-1).empty());
  Select({31363});
  EXPECT_EQ((std::vector{31363}), ids(2)) << "every cell by its own ids";
}

TEST_F(TdListsTest, SmallBlocks) {
  const std::vector<TdEntry292> entries(500, TdEntry292{.ie21356 = 1, .ie24556 = 2});
  TdTableRun<3> run;
  run.values = {4, -1, -2};
  const Row row = Convert(HandsetRecord()
                              .With(TdBlock292{.ie21355 = 500, .entries = entries})
                              .With(TdBlock304{.ie5248 = 16, .ie5249 = 0xFE})
                              .With(TdBlock332{.ie5259 = 0xFFFF})
                              .With(TdBlock344{.first = 2, .ie4611 = 7})
                              .With(TdBlockTable{.ie5930 = run})
                              .Set(&CTestdataBase::ie5256, 6)
                              .Build());
  EXPECT_EQ(Range(21356, 21755), IdsIn(*row, 21356, 22155));
  EXPECT_EQ(Range(24556, 24955), IdsIn(*row, 24556, 24955));
  EXPECT_EQ(-100, Int(*row, 5248));
  EXPECT_EQ(-255, Int(*row, 5249));
  EXPECT_EQ(kNotThere, Int(*row, 5259));
  EXPECT_EQ(kNotThere, Int(*row, 4611)) << "the block's first field is not 1";
  EXPECT_EQ(4, Int(*row, 5930));
  EXPECT_EQ(kNotThere, Int(*row, 5931));
  EXPECT_EQ(-255, Int(*row, 5932));
  EXPECT_EQ(6, Int(*row, 5256));
}

TEST_F(TdListsTest, AnItemOfTheSelectionStandsForTheIeThatItNames) {
  std::array<TdNeighbour, 2> list;
  list.fill({.cell_parameter_id = 7, .uarfcn = 10054});
  const std::array channels{TdTransportChannel{.number = 3, .ie935 = 4, .ie1000 = 9, .ie1033 = 2.5f}};
  const auto record = HandsetRecord()
                          .With(Neighbours(2, list))
                          .With(CIE_Channel_Para{.transport_channel_count = 1, .transport_channels = channels})
                          .Build();
  SelectItem("NborCellParameterID", "NborCellParameterID_0");
  EXPECT_EQ((std::vector{1141, 1142}), IdsIn(*Convert(record), 140, 2000));
  SelectItem("TrCHBLER", "TrCHBLER_1");
  EXPECT_EQ((std::vector{200, 1036, 1141, 1142}), IdsIn(*Convert(record), 140, 2000));
}

TEST_F(TdListsTest, ArraysAreSelectedEntryByEntryButForTheOnesThatAreOneItem) {
  Select({21330, 21356, 26614, 26702});
  const std::vector<std::int32_t> values(5, 5);
  const std::vector<TdEntry292> entries(3, TdEntry292{.ie21356 = 1, .ie24556 = 2});
  const std::vector<TdEntry348> pairs(3, TdEntry348{.ie26669 = 1, .ie26701 = 2});
  const Row row = Convert(HandsetRecord()
                              .With(TdSystemInfo{.ie21328 = 5, .ie21329 = values})
                              .With(TdBlock292{.ie21355 = 3, .entries = entries})
                              .With(TdBlock308{.ie26611 = 5, .ie26612 = values})
                              .With(TdBlock348{.ie26668 = 3, .entries = pairs})
                              .Build());
  EXPECT_EQ((std::vector{21330, 21356, 21357, 21358, 26614, 26702}), IdsIn(*row, 21325, 26733));
}

TEST_F(TdListsTest, TheLeafOfASystemInformationArraySelectsAllOfIt) {
  const std::vector<std::int32_t> values(1300, 5);
  const auto ids = [&](std::int32_t first, std::int32_t last) {
    const TdSystemInfo block{.ie26966 = 40, .ie26967 = values, .ie30081 = 1300, .ie30082 = values};
    return IdsIn(*ConvertBlock(block), first, last);
  };
  Select({30082});
  EXPECT_EQ(Range(30082, 31325), ids(26966, 31325)) << "up to the end of the array, and nothing of the other";
  Select({26967});
  EXPECT_EQ(Range(26967, 27006), ids(26967, 30078));
}

TEST_F(TdListsTest, AnEntryOfASystemInformationArrayCanStillBeNamed) {
  const std::vector<std::int32_t> values(5, 5);
  Select({26969});
  EXPECT_EQ((std::vector{26969}), IdsIn(*ConvertBlock(TdSystemInfo{.ie26966 = 5, .ie26967 = values}), 26966, 30078));
}

}  // namespace
}  // namespace loom::testing
