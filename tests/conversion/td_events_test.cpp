#include <array>

#include "tests/conversion/conversion_test.h"

namespace loom::testing {
namespace {

using TdEventsTest = ConversionTest;

constexpr std::int32_t kCallDrop = 1106;

TEST_F(TdEventsTest, AnEventOfOneDeviceIsARowOfItsOwn) {
  stream_.day_offset_s = 100.0;
  const Row row = Convert(EventRecord(kCallDrop).At(5).Set(&CTestdataBase::ie7, 0).Build());
  ASSERT_NE(nullptr, row);
  EXPECT_EQ((std::vector{1, 3, 7, 10, 20, 2379, 2380, 2386, 26771}), IdsIn(*row, 0, 40000));
  EXPECT_EQ(105.0, row->GetRecordTime());
  EXPECT_EQ("CallDrop", Text(*row, 20));
  EXPECT_EQ(1, row->GetSynFieldValue());
  EXPECT_TRUE(stream_.event_names.contains("CallDrop"));
  EXPECT_EQ(kInvalidDouble, stream_.time_s.maximum) << "events do not widen the stream's ranges";
  EXPECT_EQ(nullptr, Convert(EventRecord(kCallDrop).Device(0).Build()));
}

TEST_F(TdEventsTest, EventsOfTheLogAndFileMarksCarryNoRowNumber) {
  const auto absent = EventRecord(kCallDrop).Device(0).Set(&CTestdataBase::ie7, -99000000).Build();
  const Row event = converter_.ConvertEvent(absent, 10.0, 0);
  EXPECT_EQ((std::vector{3, 10, 20, 2379, 2380, 2386, 26771}), IdsIn(*event, 0, 40000));
  const Row mark = converter_.ConvertFileMark(FileMarkRecord("bridge").NoPosition().Build(), 10.0, 1);
  EXPECT_EQ(1610, Int(*mark, 10));
  EXPECT_EQ("FileMark", Text(*mark, 20));
  EXPECT_EQ("bridge", Text(*mark, 32284));
  EXPECT_EQ(-255.0f, Float(*mark, 2379));
  EXPECT_EQ(36010.0, mark->GetRecordTime());
}

TEST_F(TdEventsTest, EventRowsAreSelectedByTheirName) {
  Select({10});
  EXPECT_EQ(nullptr, Convert(EventRecord(kCallDrop).Build()));
  Select({}, {"Event"});
  EXPECT_NE(nullptr, Convert(EventRecord(kCallDrop).Build()));
}

TEST_F(TdEventsTest, MeasurementRowsShowKnownEventsButTheSilentOnes) {
  const auto event = [this](std::int32_t id) { return Int(*Convert(HandsetRecord().Event(id).Build()), 10); };
  EXPECT_EQ(kCallDrop, event(kCallDrop));
  EXPECT_EQ(kNotThere, event(2052));
  EXPECT_EQ(kNotThere, event(2053));
  EXPECT_EQ(kNotThere, event(987654)) << "an event without a name";
  Select({20});
  EXPECT_EQ(kNotThere, event(kCallDrop));
}

TEST_F(TdEventsTest, Layer3HeaderOfAMeasurementRow) {
  const auto record = HandsetRecord()
                          .Message(3005, "Measurement Report")
                          .RawBytes(std::string_view("\x01\xAB\x00", 3))
                          .MessageText("text")
                          .Channel(-2);
  Row row = Convert(record.Build());
  EXPECT_EQ(3005, Int(*row, 33));
  EXPECT_EQ("Measurement Report", Text(*row, 35));
  EXPECT_EQ(3, Int(*row, 36));
  EXPECT_EQ("01AB00", Text(*row, 37));
  EXPECT_EQ("text", Text(*row, 38));
  EXPECT_EQ(-255, Int(*row, 39));
  EXPECT_TRUE(stream_.l3_names.contains("Measurement Report"));

  row = Convert(RecordBuilder(record).Set(&CTestdataBase::raw_length, 4000).Build());
  EXPECT_EQ("01AB00", Text(*row, 37)) << "no more than there is";
  EXPECT_EQ(4000, Int(*row, 36));
  EXPECT_EQ(kNotThere, Int(*Convert(RecordBuilder(record).Message(3007, "x").Build()), 35));
  EXPECT_EQ(kNotThere, Int(*Convert(RecordBuilder(record).Message(3005, "SYSTEM INFORMATION TYPE 3").Build()), 35));
  Select({33, 36, 37});
  EXPECT_TRUE(IdsIn(*Convert(record.Build()), 33, 39).empty()) << "35 selects them all";
}

TEST_F(TdEventsTest, RawMessagesGiveTheirBytesAsText) {
  const Row row = Convert(RecordBuilder(kRecordTdMessage).Message(7, "Paging").RawMessage("raw text").Build());
  EXPECT_EQ("raw text", Text(*row, 37));
  EXPECT_EQ(7, Int(*row, 33));
}

TEST_F(TdEventsTest, Model10GivesEventsAloneAndModel5MeasuresInGsmToo) {
  const auto model10 = [this](const CTestdataBase& record) {
    stream_.row_number = ++rows_;
    return converter_.ConvertModel10(record, stream_.state, stream_, 0);
  };
  EXPECT_EQ(nullptr, model10(HandsetRecord().Model(kModelMarlo77).Build()));
  EXPECT_NE(nullptr, model10(EventRecord(kCallDrop).Model(kModelMarlo77).Build()));

  const auto gsm = GsmRecord().Model(kModel5).With(CIE_SCell_Meas{.pccpch_rscp = 60}).Build();
  const Row row = converter_.ConvertModel5(gsm, stream_.state, stream_, 0);
  ASSERT_TRUE(row->Holds(500));
  EXPECT_EQ(static_cast<std::uint16_t>(-56), row->GetIEValueByID(500)->short_value);
}

class TdSamplesTest : public ConversionTest {
 protected:
  TestRecord Record(std::int32_t model, std::int32_t count, std::span<const TdSample> samples) {
    return HandsetRecord().Model(model).Id(9).With(TdSamples{.count = count, .samples = samples}).Build();
  }
  Row Sample(const CTestdataBase& record, const CMemDataRow& first, std::int32_t sample) {
    stream_.row_number = ++rows_;
    return converter_.ConvertSample(record, first, sample, stream_, selection_switch_);
  }
};

TEST_F(TdSamplesTest, FurtherSamplesAreRowsOfTheirOwn) {
  const std::array samples{TdSample{.ie5132 = 1, .ie5165 = 11}, TdSample{.ie5132 = 2, .ie5165 = 0xFE}};
  const auto record = Record(kModelRv2230, 3, samples);
  const Row first = Convert(record);
  EXPECT_EQ(3, Int(*first, 5065));
  EXPECT_EQ(1, Int(*first, 5132));
  ASSERT_EQ(3, converter_.SampleCount(*first));
  const Row second = Sample(record, *first, 1);
  EXPECT_EQ((std::vector{1, 3, 2379, 2380, 5132, 5165, 26771}), IdsIn(*second, 0, 40000));
  EXPECT_EQ(2, Int(*second, 1));
  EXPECT_EQ(9, Int(*second, 3));
  EXPECT_EQ(2, Int(*second, 5132));
  EXPECT_EQ(-255, Int(*second, 5165));
  EXPECT_EQ(first->GetRecordTime(), second->GetRecordTime());
  EXPECT_EQ(nullptr, Sample(record, *first, 2)) << "announced but missing";
}

TEST_F(TdSamplesTest, CountsAreLimited) {
  const std::vector<TdSample> samples(40, TdSample{.ie5132 = 1});
  EXPECT_EQ(32, converter_.SampleCount(*Convert(Record(kModelRv2230, 40, samples))));
  EXPECT_EQ(0, converter_.SampleCount(*Convert(Record(kModelRv2230, 1, samples))));
  EXPECT_EQ(0, converter_.SampleCount(*Convert(Record(kModelRv2230, -5, samples))));
  EXPECT_EQ(0, converter_.SampleCount(*Convert(HandsetRecord().Build())));
}

TEST_F(TdSamplesTest, Models5And10TakeTheSamplesFromTheFirstRow) {
  const auto record = HandsetRecord().Model(kModel5).Build();
  const Row first = Convert(record);
  first->QuickAddIE(5065, uniFieldValue(2));
  first->QuickAddIE(5066 + 2, uniFieldValue(41));
  first->QuickAddIE(5897 + 2, uniFieldValue(42));
  Row row = Sample(record, *first, 1);
  EXPECT_EQ(41, Int(*row, 5066));
  EXPECT_EQ(42, Int(*row, 5897));
  EXPECT_EQ(kNotThere, Int(*row, 5099));
  Select({5897});
  row = Sample(record, *first, 1);
  EXPECT_EQ(kNotThere, Int(*row, 5066));
  EXPECT_EQ(42, Int(*row, 5897));
}

}  // namespace
}  // namespace loom::testing
