#include <algorithm>

#include "host/recordings/record_window.h"
#include "tests/recordings/recording_test.h"

// Frames, bare packets and clocks.
namespace loom::test {
namespace {

using Builder = RecordingBuilder;
constexpr std::uint8_t kPcch = 6;

// A message that can be told by its length.
Builder::Bytes Message(int number) {
  return Builder::Rrc(101, kPcch, std::string(static_cast<std::size_t>(number), '\0'));
}

class Frames : public RecordingTest {
 protected:
  std::vector<int> Order() const { return All("raw_length", -1); }
};

TEST(FrameChecksum, OfTheCheckTextAndOfEveryLength) {
  EXPECT_EQ(0x906E, recordings::FrameChecksum(AsBytes("123456789")));
  const std::string bytes = "0123456789 abcdefghijk }~ \x7D\x7E";
  for (std::size_t length = 1; length <= bytes.size(); ++length) {
    std::uint16_t crc = 0xFFFF;
    for (const char c : bytes.substr(0, length)) {
      crc ^= static_cast<std::uint8_t>(c);
      for (int bit = 0; bit < 8; ++bit) crc = static_cast<std::uint16_t>(crc >> 1 ^ ((crc & 1) != 0 ? 0x8408 : 0));
    }
    EXPECT_EQ(crc ^ 0xFFFF, recordings::FrameChecksum(AsBytes(bytes).first(length))) << length;
  }
}

TEST_F(Frames, WhatIsNoLogPacketIsCountedWithItsPlace) {
  Builder recording;
  recording.Raw("the end of a frame~").Raw("~~").Put(0xB0C0, 0.0, Message(1));
  const std::size_t bad_at = recording.bytes().size();
  recording.Raw("\x10 no checksum~").Frame({std::byte{0x79}, std::byte{0x7E}, std::byte{0x7D}});
  recording.Put(0xB0C0, 1.0, Message(0x7E))
      .Put(0x1234, 2.0, Message(1))
      .Put(0xB0C0, 3.0, Builder::Bytes{std::byte{99}});
  recording.PutOfRadio(2, 0xB0C0, 4.0, Message(3)).Raw("cut");
  const RecordingReport report = Make(recording);
  EXPECT_EQ((std::vector{1, 0x7E, 3}), Order());
  EXPECT_EQ((std::vector{1, 1, 2}), All("device_number", 0));
  const std::map<std::string, std::uint64_t> skipped{
      {"file begins within a frame", 1},  {"frame with a wrong checksum", 1}, {"file ends within a frame", 1},
      {"frame that is no log packet", 1}, {"log code that is not read", 1},   {"log packet of an unknown version", 1}};
  EXPECT_EQ(skipped, report.skipped);
  EXPECT_EQ(3U, report.packets.at("B0C0").at("20"));
  EXPECT_EQ(1U, report.packets.at("B0C0").at("99"));
  EXPECT_EQ(1U, report.packets.at("1234").at("-"));
  const auto bad = std::find_if(notes_.kinds().begin(), notes_.kinds().end(),
                                [](const Notes::Kind& kind) { return kind.name() == "frame with a wrong checksum"; });
  ASSERT_NE(notes_.kinds().end(), bad);
  EXPECT_EQ("byte " + std::to_string(bad_at), bad->places.front().at);
}

TEST_F(Frames, BarePacketsAreTheSameWithoutFrames) {
  Builder recording;
  for (int i = 1; i <= 4; ++i) {
    const auto packet = Builder::Packet(0xB0C0, kStart_s + i, Message(i));
    recording.Raw(AsText(std::span(packet).subspan(4)));
  }
  recording.Raw("\x50");
  const RecordingReport report = Make(recording);
  EXPECT_EQ((std::vector{1, 2, 3, 4}), Order());
  EXPECT_EQ(1U, report.skipped.at("file ends within a frame"));
}

TEST_F(Frames, EveryPrefixIsReadAsFarAsItGoes) {
  Builder recording;
  for (int i = 1; i <= 3; ++i) recording.Put(0xB0C0, i, Message(i));
  std::size_t records = 0;
  for (std::size_t length = 0; length <= recording.bytes().size(); ++length) {
    Builder cut;
    cut.Raw(AsText(std::span(recording.bytes()).first(length)));
    options_.files.clear();
    const RecordingReport report = Make(cut);
    EXPECT_EQ(report.files.front().refusal.empty(), report.is_written) << length;
    EXPECT_LE(records, records_.size()) << length;
    records = records_.size();
  }
  EXPECT_EQ(3U, records);
}

// Messages in the order of the file by their times, and in the order of the log.
struct ClockCase {
  const char* name;
  std::vector<double> times;
  std::vector<int> order;
  std::vector<double> written;
};
constexpr double kHour_s = 3600.0;
constexpr double kEarly_s = 315'964'800.0 - kStart_s;  // 1980-01-06

class Clocks : public Frames, public ::testing::WithParamInterface<ClockCase> {};

TEST_P(Clocks, ComeIntoOrder) {
  Builder recording;
  for (std::size_t i = 0; i < GetParam().times.size(); ++i)
    recording.Put(0xB0C0, GetParam().times[i], Message(static_cast<int>(i) + 1));
  Make(recording);
  EXPECT_EQ(GetParam().order, Order());
  EXPECT_EQ(GetParam().written, SecondsFromStart());
  EXPECT_EQ("2024-05-17", header_["date"]);
}

INSTANTIATE_TEST_SUITE_P(
    Recordings, Clocks,
    ::testing::Values(
        ClockCase{"EqualStampsKeepTheirOrder", {1, 1, 1, 2}, {1, 2, 3, 4}, {1, 1, 1, 2}},
        ClockCase{"SmallStepsBack", {5, 3, 4, 6, 2}, {5, 2, 3, 1, 4}, {2, 3, 4, 5, 6}},
        ClockCase{"GluedRecordings", {kHour_s, kHour_s + 1, 0, 1}, {3, 4, 1, 2}, {0, 1, kHour_s, kHour_s + 1}},
        ClockCase{"OneStampAhead", {0, 5 * kHour_s, 1, 2}, {1, 3, 4, 2}, {0, 1, 2, 5 * kHour_s}},
        ClockCase{"BeforeNetworkTime", {kEarly_s + 1, kEarly_s + 3, 10, 11}, {1, 2, 3, 4}, {8, 10, 10, 11}},
        ClockCase{"ClockLostForAWhile", {0, kEarly_s, kEarly_s + 2, 9}, {1, 2, 3, 4}, {0, 7, 9, 9}},
        ClockCase{"ClockLostAtTheEnd", {0, 1, kEarly_s, kEarly_s + 2}, {1, 2, 3, 4}, {0, 1, 1, 3}}),
    [](const auto& test) { return test.param.name; });

TEST_F(Frames, WithoutNetworkTimeTheStartIsNeeded) {
  Builder recording;
  recording.Put(0xB0C0, kEarly_s + 100, Message(1)).Put(0xB0C0, kEarly_s + 102, Message(2));
  const RecordingReport refused = Make(recording);
  EXPECT_FALSE(refused.is_written);
  EXPECT_NE(std::string::npos, refused.files.front().refusal.find("--start"));
  options_.start = LocalMomentFromText("2024-05-17 09:30:05.250");
  MakeLog();
  EXPECT_EQ((std::vector{5.25, 7.25}), SecondsFromStart());
}

TEST_F(Frames, FilesAreMergedByTimeAndLongDrivesGoBeyondMidnight) {
  Builder first, second;
  first.Put(0xB0C0, 0, Message(1)).Put(0xB0C0, 2, Message(3)).Put(0xB0C0, 30 * kHour_s, Message(5));
  second.Put(0xB0C0, 1, Message(2)).Put(0xB0C0, 3, Message(4));
  Make({&first, &second});
  EXPECT_EQ((std::vector{1, 2, 3, 4, 5}), Order());
  EXPECT_EQ(30 * kHour_s, SecondsFromStart().back());
  EXPECT_EQ(1U, notes_.Count("more than 24 hours without a packet"));
  EXPECT_EQ((std::vector{1, 2, 3, 4, 5}), All("record_id", 0));
  EXPECT_EQ(static_cast<std::uint32_t>((kLocalStart_s + 6 * kHour_s) * 1000), records_.back()["time_stamp"]);
}

TEST_F(Frames, APartOfTheTimesAndOneOfTheRadios) {
  Builder recording;
  for (int i = 0; i < 6; ++i) recording.PutOfRadio(1 + i % 2, 0xB0C0, i * 0.5, Message(i + 1));
  options_.from = LocalMomentFromText("2024-05-17 09:30:00.500");
  options_.to = LocalMomentFromText("2024-05-17 09:30:01");
  EXPECT_EQ(3U, Make(recording).skipped.at("outside of --from and --to"));
  EXPECT_EQ((std::vector{2, 3, 4}), Order());
  options_.radio = 2;
  EXPECT_EQ(3U, MakeLog().skipped.at("another radio"));
  EXPECT_EQ((std::vector{2, 4}), Order());
  options_.to = LocalMomentFromText("2024-05-17 09:29:59");
  EXPECT_THROW(MakeLog(), Error);
}

TEST_F(Frames, AFileThatIsNoRecordingIsRefusedWithItsReason) {
  const struct {
    std::string_view bytes;
    const char* reason;
  } kCases[] = {
      {"", "is empty"},
      {"a text\n", "is no recording: neither log packets of a baseband nor a capture"},
      {"\x1F\x8B\x08 packed", "is packed by gzip: unpack it first"},
      {"PK\x03\x04 packed", "is packed by zip: unpack it first"},
  };
  for (const auto& c : kCases) {
    options_.files.clear();
    EXPECT_EQ(c.reason, Make(Builder().Raw(c.bytes)).files.at(0).refusal);
  }
  options_.files.clear();
  Make(Builder().Put(0xB0C0, 0.0, Message(1)));
  options_.files = {options_.files[0], options_.files[0], options_.out};
  options_.out = folder_.File("other.log");
  const RecordingReport report = MakeLogFromRecordings(options_);
  EXPECT_EQ("", report.files.at(0).refusal);
  EXPECT_EQ("is given twice", report.files.at(1).refusal);
  EXPECT_EQ("is a log already", report.files.at(2).refusal);
}

TEST(RecordWindow, GivesOutByTimeAndHoldsNoMoreThanItsLimit) {
  recordings::RecordWindow window;
  constexpr std::size_t kPayloadBytes = 300U << 10;
  constexpr int kRecords = 500;
  std::vector<std::int64_t> given;
  for (int i = 0; i < kRecords; ++i) {
    *window.Put(i % 10 == 0 ? 1'000'000 - i : i, kPayloadBytes) = std::byte{1};
    while (const auto record = window.Take(-1)) given.push_back(record->time_ns);
  }
  EXPECT_GT(given.size(), kRecords - (recordings::RecordWindow::kMostBytes / kPayloadBytes) - 10);
  while (const auto record = window.Take(INT64_MAX)) given.push_back(record->time_ns);
  EXPECT_EQ(static_cast<std::size_t>(kRecords), given.size());
  EXPECT_TRUE(std::is_sorted(given.begin(), given.end()));
}

}  // namespace
}  // namespace loom::test
