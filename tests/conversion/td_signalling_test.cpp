#include <array>

#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

class TdSignallingTest : public ConversionTest {
 protected:
  static CString Message(const char* identity, const char* crc) {
    return CString("dl-AddReconfTransChInfoList\n{\n{\ndl-transportChannelIdentity ") + CString(identity) +
           CString(",\ncrc-Size ") + CString(crc) + CString("\n}\n}\n");
  }
  void Configure(const char* name, const CString& lines) {
    Convert(HandsetRecord().Message(1, name).Lines(lines).Build());
  }
  Row Channels(std::span<const TdTransportChannel> channels) {
    return Convert(HandsetRecord()
                       .With(CIE_Channel_Para{.transport_channel_count = static_cast<std::int8_t>(channels.size()),
                                              .transport_channels = channels})
                       .Build());
  }
};

TEST_F(TdSignallingTest, TotalsCountTheChannelsThatMessagesConfigured) {
  const std::array channels{TdTransportChannel{.number = 5, .ie935 = 3, .ie1000 = 30, .ie1033 = 10.0f},
                            TdTransportChannel{.number = 6, .ie935 = 1, .ie1000 = 10, .ie1033 = 12.0f},
                            TdTransportChannel{.number = 7, .ie935 = -1, .ie1000 = 50, .ie1033 = 90.0f}};
  EXPECT_EQ(kNotThere, Int(*Channels(channels), 968)) << "no channel is known to have a CRC";
  Configure("RRC Connection Setup", Message("5", "crc16"));
  Row row = Channels(channels);
  EXPECT_EQ(3, Int(*row, 968));
  EXPECT_EQ(30, Int(*row, 1033));
  EXPECT_EQ(10.0f, Float(*row, 1066));
  EXPECT_EQ(10.0f, Float(*row, 1067));
  Configure("Radio Bearer Setup (DL-DCCH)", Message("6", "crc8"));
  Configure("Radio Bearer Reconfiguration (DL-DCCH)", Message("7", "crc8"));
  Configure("Handover Command", Message("8", "crc8"));
  row = Channels(channels);
  EXPECT_EQ(4, Int(*row, 968)) << "invalid pairs beside valid ones are ignored";
  EXPECT_EQ(40, Int(*row, 1033));
  EXPECT_EQ(90.0f, Float(*row, 1067));
  Configure("RRC Connection Setup", Message("7", "crc16"));
  row = Channels(channels);
  EXPECT_EQ(-255, Int(*row, 968)) << "only an invalid pair is left";
  EXPECT_EQ(-255, Int(*row, 1033));
  EXPECT_EQ(-255.0f, Float(*row, 1066));
}

TEST_F(TdSignallingTest, ErrorRatesOfNoBlocks) {
  Configure("RRC Connection Setup", Message("5", "crc16"));
  EXPECT_EQ(0.0f, Float(*Channels(std::array{TdTransportChannel{.number = 5, .ie935 = 0, .ie1000 = 0}}), 1066));
  EXPECT_EQ(-255.0f, Float(*Channels(std::array{TdTransportChannel{.number = 5, .ie935 = 2, .ie1000 = 0}}), 1066));
}

TEST_F(TdSignallingTest, AMessageThatTheDecoderRefusesStillEmptiesTheSet) {
  stream_.crc_channels = {5};
  Configure("Radio Bearer Setup (DL-DCCH)", {});
  EXPECT_EQ((std::set<std::int32_t>{5}), stream_.crc_channels);
  Configure("RRC Connection Setup", {});
  EXPECT_TRUE(stream_.crc_channels.empty());
}

TEST_F(TdSignallingTest, CodeMaximaAndSumsStartAtZeroAndSkipInvalidValues) {
  const std::array entries{TdCodeEntryD{.number = 1, .ie1588 = -1, .ie1622 = -1, .ie1656 = 4},
                           TdCodeEntryD{.number = 2, .ie1588 = 7, .ie1622 = -2, .ie1656 = 9},
                           TdCodeEntryD{.number = 3, .ie1588 = 5, .ie1622 = -1, .ie1656 = -1}};
  const auto record = HandsetRecord().With(CIE_Meas_Res{.count_d = 3, .entries_d = entries, .scale_word = 0}).Build();
  Row row = Convert(record);
  EXPECT_EQ(7.0f, Float(*row, 1621));
  EXPECT_EQ(12.0f, Float(*row, 1622));
  EXPECT_EQ(-255.0f, Float(*row, 1655));
  EXPECT_EQ(-255.0f, Float(*row, 1656));
  EXPECT_EQ(kNoFloat, Float(*row, 1690));
  HaveSettings();
  EXPECT_EQ(9.0f, Float(*Convert(record), 1690));
  Convert(HandsetRecord().With(CIE_Meas_Res{.count_d = 0}).Build());
  row = Convert(HandsetRecord()
                    .With(CIE_Meas_Res{.count_d = 3, .entries_d = std::span(entries).last(1), .scale_word = 0})
                    .Build());
  EXPECT_EQ(5.0f, Float(*row, 1622)) << "numbers that were reset do not count";
}

TEST_F(TdSignallingTest, GroupESums) {
  const std::array entries{TdCodeEntryE{.number = 5, .ie1979 = 1, .ie1953 = 15, .ie1966 = -1},
                           TdCodeEntryE{.number = 15, .ie1979 = 1, .ie1953 = 20, .ie1966 = 30}};
  const Row row = Convert(HandsetRecord().With(CIE_Meas_Res{.count_e = 2, .entries_e = entries}).Build());
  EXPECT_EQ(2.0f, Float(*row, 1969));
  EXPECT_EQ(3.5f, Float(*row, 1970));
  EXPECT_EQ(3.0f, Float(*row, 1982));
  EXPECT_EQ(3.0f, Float(*row, 1983));
}

TEST_F(TdSignallingTest, TheFirstTimeslotRscpThatIsValid) {
  const auto first = [this](std::span<const TimeslotValue> rscp) {
    return Int(*Convert(HandsetRecord().With(CIE_SCell_Meas{.timeslot_rscp_count = 1, .timeslot_rscp = rscp}).Build()),
               5406);
  };
  EXPECT_EQ(kNotThere, first({}));
  EXPECT_EQ(-66, first(std::array{TimeslotValue{3, -2}, TimeslotValue{5, 50}, TimeslotValue{6, 60}}));
  EXPECT_EQ(-255, first(std::array{TimeslotValue{3, -2}}));
}

class BestCellTest : public TdSignallingTest {
 protected:
  static std::optional<int> Short(const CMemDataRow& row, std::int32_t id) {
    const auto value = row.GetIEValueByID(id);
    if (value) {
      EXPECT_EQ(value->int_value, value->short_value) << "the upper half is zero";
    }
    return value ? std::optional(static_cast<std::int16_t>(value->short_value)) : std::nullopt;
  }
  static RecordBuilder WithLevels(int serving, std::initializer_list<int> neighbours) {
    std::vector<TdNeighbour> list;
    for (const int level : neighbours) {
      const auto at = static_cast<std::int8_t>(list.size());
      list.push_back({.cell_parameter_id = static_cast<std::int8_t>(20 + at),
                      .uarfcn = 10100 + at,
                      .pccpch_rscp = static_cast<std::int8_t>(level)});
    }
    return HandsetRecord()
        .Device(0)
        .With(CIE_SCell_Meas{.pccpch_rscp = static_cast<std::int8_t>(serving)})
        .With(CIE_NCell_Meas{.count = static_cast<std::int8_t>(list.size()), .neighbours = list});
  }
};

TEST_F(BestCellTest, IsTheStrongestOfServingCellAndNeighbours) {
  const CIE_SCell_Para serving{.cell_parameter_id = 7, .uarfcn = 10054};
  Row row = Convert(WithLevels(60, {60, -1}).With(serving).Build());
  EXPECT_EQ(-56, Short(*row, 500));
  EXPECT_EQ(10054, Short(*row, 148)) << "equal levels leave the serving cell";
  EXPECT_EQ(7, Short(*row, 141));
  row = Convert(WithLevels(60, {61, 62, 63, 63}).With(serving).Build());
  EXPECT_EQ(-53, Short(*row, 500));
  EXPECT_EQ(10102, Short(*row, 148));
  EXPECT_EQ(22, Short(*row, 141));
  row = Convert(WithLevels(-2, {40}).Build());
  EXPECT_EQ(-76, Short(*row, 500)) << "better than an invalid serving level";
  EXPECT_EQ(kNotThere, Short(*Convert(HandsetRecord().Build()), 500));
}

TEST_F(BestCellTest, TakesTheServingCellFromTheStateWhenTheRowLacksIt) {
  Convert(HandsetRecord().Device(0).With(CIE_SCell_Para{.cell_parameter_id = -2, .uarfcn = 10060}).Build());
  const Row row = Convert(WithLevels(60, {}).Build());
  EXPECT_EQ(10060, Short(*row, 148));
  EXPECT_EQ(-255, Short(*row, 141));
}

TEST_F(BestCellTest, FollowsTheSelection) {
  Select({500});
  const Row row = Convert(WithLevels(60, {70}).Build());
  EXPECT_EQ(-46, Short(*row, 500));
  EXPECT_EQ(kNotThere, Short(*row, 148));
}

}  // namespace
}  // namespace loom::testing
