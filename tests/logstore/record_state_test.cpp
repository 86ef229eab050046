#include <gtest/gtest.h>

#include <array>

#include "components/records/state_record.h"
#include "tests/support/records.h"

namespace loom {
namespace {

TEST(StateRecord, StartsWithTheTdStructuresAndNoGsmOnes) {
  const StateRecord state;
  ASSERT_TRUE(state.record().serving_cell && state.record().timeslot_measurements && state.record().neighbours &&
              state.record().channels && state.record().codes && state.record().physical_channels);
  EXPECT_EQ(-1, state.record().serving_cell->uarfcn);
  EXPECT_EQ(-1, state.record().neighbours->count);
  EXPECT_FALSE(state.record().gsm_serving_cell || state.record().gsm_rat);
}

TEST(StateRecord, KeepsTheLastValueOfAStructureThatARecordLacks) {
  StateRecord state;
  EXPECT_TRUE(state.Update<CIE_SCell_Para>(HandsetRecord().With(CIE_SCell_Para{.uarfcn = 10054}).Build()));
  EXPECT_FALSE(state.Update<CIE_SCell_Para>(HandsetRecord().Build()));
  EXPECT_EQ(10054, state.record().serving_cell->uarfcn);

  EXPECT_FALSE(state.Update<CIE_GSM_RAT_Indicate>(GsmRecord().Build()));
  EXPECT_FALSE(state.record().gsm_rat);
  EXPECT_TRUE(state.Update<CIE_GSM_RAT_Indicate>(GsmRecord().With(CIE_GSM_RAT_Indicate{.rat = 3}).Build()));
  EXPECT_EQ(3, state.record().gsm_rat->rat);
}

TEST(StateRecord, ListsAndTextsOutliveTheRecordThatTheyCameFrom) {
  StateRecord state;
  {
    const TestRecord record =
        HandsetRecord()
            .With(CIE_Layer12_Config_Para{.entries_g = std::array{TdPhysicalEntryG{.number = 1, .ie3787 = 7}},
                                          .entries_h = std::array{TdPhysicalEntryH{.number = 5}},
                                          .entries_j = std::array{TdPhysicalEntryJ{.ie4354 = 9}},
                                          .first = TdPhysicalFirst{.ie3689 = "first"},
                                          .second = TdPhysicalSecond{.ie3698 = "second"}})
            .With(CIE_GSM_Ded_CH_Info{
                .frequencies = GsmDedicatedFrequencies{.kind = 1, .ie31732 = std::array<std::uint8_t, 3>{1, 2, 3}}})
            .Build();
    ASSERT_TRUE(state.Update<CIE_Layer12_Config_Para>(record));
    ASSERT_TRUE(state.Update<CIE_GSM_Ded_CH_Info>(record));
  }
  const CIE_Layer12_Config_Para& block = *state.record().physical_channels;
  ASSERT_EQ(1u, block.entries_g.size());
  EXPECT_EQ(7, block.entries_g[0].ie3787);
  EXPECT_EQ(5, block.entries_h[0].number);
  EXPECT_EQ(9, block.entries_j[0].ie4354);
  EXPECT_EQ("first", block.first->ie3689);
  EXPECT_EQ("second", block.second->ie3698);
  EXPECT_EQ(nullptr, block.second->ie3723.data());
  EXPECT_EQ(3, state.record().gsm_dedicated_channel->frequencies->ie31732[2]);
}

TEST(StateRecord, AShorterListReplacesALongerOneInTheSameStorage) {
  StateRecord state;
  state.Update<CIE_NCell_Meas>(
      HandsetRecord().With(CIE_NCell_Meas{.count = 8, .neighbours = std::array<TdNeighbour, 8>{}}).Build());
  const TdNeighbour* storage = state.record().neighbours->neighbours.data();
  state.Update<CIE_NCell_Meas>(
      HandsetRecord().With(CIE_NCell_Meas{.neighbours = std::array{TdNeighbour{.uarfcn = 4}}}).Build());
  const auto& neighbours = state.record().neighbours->neighbours;
  EXPECT_EQ(storage, neighbours.data());
  ASSERT_EQ(1u, neighbours.size());
  EXPECT_EQ(4, neighbours[0].uarfcn);
}

TEST(StateRecord, TakesTheBasicInformationOfEveryRecord) {
  StateRecord state;
  EXPECT_TRUE(state.UpdateBasicInfo(HandsetRecord().Device(3).At(12.5).Position(100.0, 20.0).Build()));
  EXPECT_EQ(3, state.basic_info().device_number);
  EXPECT_EQ(12.5, state.basic_info().time.toSecond());
  EXPECT_EQ(100.0, state.basic_info().longitude);
}

}  // namespace
}  // namespace loom
