#include "host/logstore/record_codec.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "components/records/stream_and_string.h"
#include "platform/byte_reader.h"
#include "tests/logstore/record_filler.h"
#include "tests/support/records.h"

namespace loom {
namespace {

using Bytes = std::vector<std::byte>;

constexpr std::size_t kElementHeadBytes = 6;

// Everything that reading one payload needs.
struct Reading {
  explicit Reading(const Bytes& bytes) : payload(bytes) {}
  CTestdataBase& Header() { return DecodeHeader(payload, kPosition, record, arena), record; }
  CTestdataBase& All() { return DecodeRecord(payload, kPosition, record, arena), record; }

  static constexpr std::uint64_t kPosition = 5000;
  Bytes payload;
  std::pmr::monotonic_buffer_resource arena;
  CTestdataBase record{false, 0};
};

struct FullRecord {
  FullRecord() { records::FillRecord(record, arena); }
  std::pmr::monotonic_buffer_resource arena;
  CTestdataBase record{false, 0};
};

// An element with a value of 32-bit words.
Bytes Element(std::uint16_t tag, std::initializer_list<std::uint32_t> words) {
  Bytes bytes;
  ByteWriter out(bytes);
  out.U16(tag);
  out.U32(static_cast<std::uint32_t>(4 * words.size()));
  for (const std::uint32_t word : words) out.U32(word);
  return bytes;
}

Bytes operator+(Bytes a, const Bytes& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

Bytes HeaderElement() { return Element(1, {77, kRecordHandset}); }

// Reads the whole payload; false when it was refused with a position inside it.
bool Answers(const Bytes& payload) {
  Reading reading(payload);
  try {
    reading.All();
    return true;
  } catch (const FormatError& error) {
    EXPECT_GE(error.position_bytes(), Reading::kPosition);
    EXPECT_LE(error.position_bytes(), Reading::kPosition + payload.size());
    return false;
  }
}

TEST(RecordCodec, EveryFieldOfEveryBlockComesBack) {
  const FullRecord full;
  const Bytes payload = EncodeRecord(full.record);
  Reading reading(payload);
  EXPECT_EQ("", records::DifferingParts(full.record, reading.All()));
  EXPECT_EQ(payload, EncodeRecord(reading.record));
}

TEST(RecordCodec, TheHeaderPassMakesOnlyTheBlocksThatAreNeverDecoded) {
  const FullRecord full;
  Reading reading(EncodeRecord(full.record));
  const CTestdataBase& record = reading.Header();
  EXPECT_EQ(full.record.layer3_name, record.layer3_name);
  EXPECT_TRUE(record.service && record.scan && record.lte_scan && record.data_test_first && record.data_test_second);
  EXPECT_FALSE(record.serving_cell || record.gsm_neighbours || record.lte_measurements);
  EXPECT_FALSE(record.encoded_blocks.empty());

  ASSERT_TRUE(DecodeBlocks(reading.record, reading.arena));
  EXPECT_EQ("", records::DifferingParts(full.record, record));
  EXPECT_TRUE(record.encoded_blocks.empty());
  EXPECT_TRUE(DecodeBlocks(reading.record, reading.arena));
}

TEST(RecordCodec, MarkedRecordsKeepTheirMarks) {
  const Bytes payload = HandsetRecord().FailsToDecode().With(CIE_SCell_Para{.lac = 4}).Encode();
  Reading reading(payload);
  EXPECT_TRUE(reading.Header().fails_to_decode);
  EXPECT_FALSE(DecodeBlocks(reading.record, reading.arena));
  EXPECT_FALSE(reading.record.serving_cell);

  Reading whole(payload);
  EXPECT_TRUE(whole.All().fails_to_decode);
  EXPECT_EQ(4, whole.record.serving_cell->lac);
  EXPECT_EQ(payload, EncodeRecord(whole.record));
  EXPECT_TRUE(Reading(HandsetRecord().FailsToRead().Encode()).Header().fails_to_read);
}

TEST(RecordCodec, AShorterValueLeavesTheTrailingFieldsAbsent) {
  Reading reading(HeaderElement() + Element(316, {12}));
  const CTestdataBase& record = reading.All();
  EXPECT_EQ(77, record.record_id);
  EXPECT_EQ(-1, record.event_id);
  EXPECT_EQ(12, record.block316->ie26642);
  EXPECT_EQ(-1, record.block316->ie26643);
}

TEST(RecordCodec, FieldsThatAreAbsentAtTheEndAreNotWritten) {
  CTestdataBase record(false, 0);
  record.kind = kRecordFileMark;
  const TdBlock316 first_field{.ie26642 = 12};
  const CIE_NCell_Meas nothing{};
  record.block316 = &first_field;
  record.neighbours = &nothing;
  Bytes payload = EncodeRecord(record);
  constexpr std::size_t kHeaderUpToTime = 4 + 4 + 4 + 2 + 1 + 8;
  EXPECT_EQ(3 * kElementHeadBytes + kHeaderUpToTime + sizeof first_field.ie26642, payload.size());
  NumberRecord(payload, 0, 78);
  ShiftRecordTime(payload, 0, 3600.0);
  Reading reading(payload);
  EXPECT_EQ(78, reading.All().record_id);
  EXPECT_EQ(3600.0, reading.record.time.seconds);
  EXPECT_EQ(12, reading.record.block316->ie26642);
  ASSERT_TRUE(reading.record.neighbours);
  EXPECT_EQ(-1, reading.record.neighbours->count);
}

TEST(RecordCodec, ALongerValueAndAnUnknownTagAreSkipped) {
  Reading reading(Element(9, {1, 2}) + HeaderElement() + Element(60000, {3}) + Element(316, {12, 13, 14}) +
                  Element(222, {4}) + Element(252, {8}));
  EXPECT_EQ(13, reading.All().block316->ie26643);
  EXPECT_EQ(8, reading.record.block252->ie5403);
}

TEST(RecordCodec, LiesAreRefusedWithTheirPosition) {
  const Bytes header = HeaderElement();
  const struct {
    const char* what;
    Bytes payload;
    std::size_t position;  // from the end of the header
  } kCases[] = {
      {"entry count beyond the value", Element(292, {1, 0x40000000}), kElementHeadBytes + 4},
      {"entry count that overflows", Element(308, {1, 2, 0xFFFFFFFF}), kElementHeadBytes + 8},
      {"presence byte of 2", Element(516, {2}), kElementHeadBytes},
      {"field cut in two",
       [] {
         auto cut = Element(316, {12});
         cut[2] = std::byte{2};
         cut.resize(8);
         return cut;
       }(),
       kElementHeadBytes},
      {"block twice", Element(316, {12}) + Element(316, {12}), 2 * kElementHeadBytes + 4},
      {"header twice", header, kElementHeadBytes},
  };
  for (const auto& c : kCases) {
    Reading reading(header + c.payload);
    try {
      reading.All();
      ADD_FAILURE() << c.what << " was accepted";
    } catch (const FormatError& error) {
      EXPECT_EQ(Reading::kPosition + header.size() + c.position, error.position_bytes()) << c.what;
    }
  }
  EXPECT_THROW(Reading({}).Header(), FormatError);
  EXPECT_THROW(Reading(Element(316, {12})).Header(), FormatError);
}

TEST(RecordCodec, APayloadCutAnywhereGivesAnAnswerOrAnError) {
  const FullRecord full;
  const Bytes payload = EncodeRecord(full.record);
  std::size_t answers = 0;
  for (std::size_t size = 0; size < payload.size(); ++size) {
    answers += Answers(Bytes(payload.begin(), payload.begin() + static_cast<std::ptrdiff_t>(size)));
  }
  // Between two elements the rest is a record, only shorter.
  EXPECT_EQ(kRecordBlockCount, answers);
}

TEST(RecordCodec, AFlippedByteAnywhereGivesAnAnswerOrAnError) {
  const FullRecord full;
  Bytes payload = EncodeRecord(full.record);
  std::size_t refused = 0;
  for (std::byte& byte : payload) {
    const std::byte before = byte;
    for (const unsigned char flipped : {0x00, 0xFF, 0x80, 0x01}) {
      byte = before ^ std::byte{flipped};
      refused += !Answers(payload);
    }
    byte = before;
  }
  EXPECT_GT(refused, 500u);
  EXPECT_TRUE(Answers(payload));
}

TEST(RecordCodec, CountsAndListsAreKeptApart) {
  const TestRecord record =
      HandsetRecord().With(CIE_NCell_Meas{.count = -7, .neighbours = std::array<TdNeighbour, 2>{}}).Build();
  EXPECT_EQ(-7, record.neighbours->count);
  EXPECT_EQ(2u, record.neighbours->neighbours.size());
}

TEST(SysTime, ShowsHoursBeyondADayAndRoundsToMilliseconds) {
  EXPECT_EQ("00:00:59.999", (sys_time{59.9994}).toString());
  EXPECT_EQ("00:01:00.000", (sys_time{59.9996}).toString());
  EXPECT_EQ("25:01:01.500", (sys_time{90061.5}).toString());
  EXPECT_EQ("00:00:00.000", (sys_time{-1.0}).toString());
  EXPECT_EQ(25, (sys_time{90061.5}).hour());
  EXPECT_EQ(1, (sys_time{90061.5}).minute());
  EXPECT_DOUBLE_EQ(1.5, (sys_time{90061.5}).second());
}

TEST(MeasurementStructures, RenderBytesAsText) {
  const std::byte bytes[] = {std::byte{0x0A}, std::byte{0xF0}};
  CString text;
  CStreamAndString::numToString(text, bytes, 2);
  EXPECT_EQ("0AF0", text);
  CStreamAndString::numToString(text, bytes, -1);
  EXPECT_EQ("", text);
  EXPECT_EQ("4/-", CIE_GSM_2230E_Simple_Info::ChangeValue2CSText(4, -1));
}

TEST(MeasurementStructures, ListTheResultsOfAnLteScanner) {
  const std::array entries{LteScanEntry{.ie34691 = 5, .ie34883 = 2.5f}};
  const LteScanList one{.count = 1, .entries = entries};
  const TestRecord record = LteRecord(kModelOstrelLteScanner).With(LteScanResult{.first = one, .second = one}).Build();
  std::vector<pair_ie_id_value> list;
  record.GetAllIEs(list, 1);
  EXPECT_TRUE(list.empty());
  record.GetAllIEs(list, 2);
  ASSERT_EQ(14u, list.size());
  EXPECT_EQ(34691, list.front().id);
  EXPECT_EQ(5.0, list.front().value);
  EXPECT_EQ(35107, list.back().id);
  EXPECT_EQ(2.5, list.back().value);
}

}  // namespace
}  // namespace loom
