#include <filesystem>

#include "tests/recordings/recording_test.h"
#include "tests/support/places.h"

namespace loom::test {
namespace {

using Builder = RecordingBuilder;

// The 16 bits of a level, as a record holds them.
int Bits(int level) { return level & 0xFFFF; }

class Measurements : public RecordingTest {
 protected:
  // B193 with one part of a version; `cells` behind its head.
  static Builder::Bytes Serving(std::uint8_t version, const std::vector<std::uint32_t>& body) {
    Builder::Bytes packet;
    ByteWriter out(packet);
    out.U32(1 << 8 | 1);
    out.U8(25);
    out.U8(version);
    out.U16(static_cast<std::uint16_t>(4 + 4 * body.size()));
    for (const std::uint32_t word : body) out.U32(word);
    return packet;
  }
  static std::uint32_t Rsrp(double dbm) { return static_cast<std::uint32_t>((dbm + 180) * 16); }
  static std::uint32_t Rsrq(double db) { return static_cast<std::uint32_t>((db + 30) * 16); }
  static std::uint32_t Rssi(double dbm) { return static_cast<std::uint32_t>((dbm + 110) * 16); }

  // Version 18: EARFCN, cell, frame number, an unknown word, then the words of the levels.
  static std::vector<std::uint32_t> Cell18(std::uint32_t head) {
    std::vector<std::uint32_t> body(23);
    body[0] = 1'850;
    body[1] = head;
    std::uint32_t* const w = body.data() + 5;
    w[0] = Rsrp(-97.5) << 10;
    w[1] = Rsrp(-95.0) << 12;
    w[2] = Rsrp(-95.0) << 12;
    w[3] = Rsrq(-12.0) << 12;
    w[4] = Rsrq(-11.0) | Rsrq(-11.4375) << 20;
    w[5] = 0 << 10 | Rssi(-64.0) << 21;
    w[6] = Rssi(-64.0);
    w[12] = 185 | 350 << 9;
    return body;
  }
};

TEST_F(Measurements, LevelsOfTheServingCellAreRoundedAndMarkersStepAside) {
  Builder recording;
  recording.Put(0xB193, 0.0, Serving(18, Cell18(101 | 1 << 12)));
  Make(recording);
  const auto& block = records_[0]["lte_measurements"];
  EXPECT_EQ(101, block["serving"]["physical_cell_id"]);
  EXPECT_EQ(1'850, block["serving"]["earfcn"]);
  EXPECT_EQ(Bits(-95), block["serving"]["ie33364"]);
  EXPECT_EQ(Bits(-11), block["serving"]["ie33365"]);
  EXPECT_EQ(Bits(-64), block["serving"]["ie33367"]);
  EXPECT_EQ(Bits(-98), block["meas24"]["ie33650"]);  // halves away from 0
  EXPECT_EQ(Bits(-95), block["meas24"]["ie33652"]);
  EXPECT_FALSE(block["meas24"].contains("ie33655"));  // raw 0: not measured
  EXPECT_EQ(Bits(-3), block["meas32"]["ie33658"]);    // -1.5 would be a marker
  EXPECT_EQ(15, block["meas32"]["ie33659"]);
  EXPECT_EQ(1U, notes_.Count("level of -1 or -2, written as -3"));
}

TEST_F(Measurements, SecondaryCarriersAreCountedAndOtherCellsBecomeNeighbours) {
  Builder recording;
  recording.Put(0xB193, 0.0, Serving(18, Cell18(101 | 1 << 9 | 1 << 12)));
  recording.Put(0xB193, 1.0, Serving(18, Cell18(102)));
  recording.Put(0xB193, 2.0, Serving(99, {1, 2}));
  recording.Put(0xB193, 3.0, Serving(18, {1'850, 101, 0}));
  const RecordingReport report = Make(recording);
  EXPECT_EQ(1U, report.skipped.at("secondary carrier"));
  EXPECT_EQ(1U, report.skipped.at("log packet of an unknown version"));
  EXPECT_EQ(1U, report.skipped.at("packet shorter than its fields"));
  ASSERT_EQ(1U, records_.size());
  EXPECT_EQ(102, records_[0]["lte_measurements"]["neighbours"]["neighbours"][0]["physical_cell_id"]);
  EXPECT_FALSE(records_[0]["lte_measurements"].contains("meas24"));
}

TEST_F(Measurements, RadiosHaveCellsOfTheirOwn) {
  Builder recording;
  Builder::Bytes part;
  ByteWriter out(part);
  for (const std::uint32_t word : {1U << 8 | 1U, 31U | 4U << 8 | 64U << 16, 1'850U, 1U, 7U, 0U, 0U, Rsrp(-101.0)})
    out.U32(word);
  for (int i = 0; i < 9; ++i) out.U32(i == 1 ? Rsrq(-14.5) << 10 : i == 3 ? Rssi(-70.0) << 11 : 0);
  recording.PutOfRadio(1, 0xB193, 0.0, Serving(18, Cell18(101 | 1 << 12)));
  recording.PutOfRadio(2, 0xB193, 0.1, Serving(18, Cell18(202 | 1 << 12)));
  recording.PutOfRadio(1, 0xB195, 0.2, part);
  recording.PutOfRadio(2, 0xB195, 0.3, part);
  Make(recording);
  EXPECT_EQ((std::vector{1, 2, 1, 2}), All("device_number", 0));
  EXPECT_EQ(101, records_[2]["lte_measurements"]["serving"]["physical_cell_id"]);
  EXPECT_EQ(202, records_[3]["lte_measurements"]["serving"]["physical_cell_id"]);
  const auto& neighbour = records_[3]["lte_measurements"]["neighbours"]["neighbours"][0];
  EXPECT_EQ(7, neighbour["physical_cell_id"]);
  EXPECT_EQ(1'850, neighbour["earfcn"]);
  EXPECT_EQ(40, neighbour["ie33899"]);
  EXPECT_EQ(11, neighbour["ie33963"]);
  EXPECT_EQ(71, neighbour["ie34027"]);
}

// Real recordings, which are no part of the project: counts and shares only.
struct RealCase {
  const char* name;
  std::uint64_t records;
  bool has_levels;  // of both antennas: RSRQ, RSRP and RSSI have to agree
};

class RealRecordings : public RecordingTest, public ::testing::WithParamInterface<RealCase> {};

TEST_P(RealRecordings, BecomeLogs) {
  const auto file = testing::SharedSamples() / "modem" / GetParam().name;
  if (testing::SharedSamples().empty() || !std::filesystem::exists(file)) GTEST_SKIP() << "no " << file;
  ASSERT_TRUE(IsRecording(NativePathToGbk(file.string())));
  options_.files = {NativePathToGbk(file.string())};
  MakeLog();
  std::uint64_t messages = 0, named = 0, measured = 0, sound = 0;
  std::uint64_t records = 0;
  for (const auto& record : records_) {
    records += record["kind"] == 1 ? 1 : 0;
    if (record.contains("raw_message") && record["kind"] == 1) {
      ++messages;
      named += record.contains("layer3_name") ? 1 : 0;
    }
    if (!record.contains("lte_measurements") || !record["lte_measurements"].contains("meas24")) continue;
    const auto& serving = record["lte_measurements"]["serving"];
    const auto level = [&](const char* name) { return static_cast<std::int16_t>(serving.value(name, 0)); };
    if (!serving.contains("ie33364") || !serving.contains("ie33365") || !serving.contains("ie33367")) continue;
    ++measured;
    const double blocks = std::pow(10.0, (level("ie33365") - level("ie33364") + level("ie33367")) / 10.0);
    sound += blocks > 3.0 && blocks < 240.0 ? 1 : 0;
  }
  EXPECT_EQ(GetParam().records, records);
  EXPECT_EQ(messages, named);
  EXPECT_EQ(GetParam().has_levels, measured > 0);
  EXPECT_GE(static_cast<double>(sound), 0.98 * static_cast<double>(measured));
}

INSTANTIATE_TEST_SUITE_P(Recordings, RealRecordings,
                         ::testing::Values(RealCase{"drive_1752425567.qmdl", 8'891, false},
                                           RealCase{"nexus6p_20160118_001301.mi2log", 1'388, true},
                                           RealCase{"bler_sample_first.mi2log", 1'172, true},
                                           RealCase{"cmcc_mi10_20201116_123302.mi2log", 962, false}),
                         [](const auto& test) {
                           const std::string name = test.param.name;
                           return name.substr(0, name.find('_'));
                         });

}  // namespace
}  // namespace loom::test
