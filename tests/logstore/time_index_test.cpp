#include "host/logstore/time_index.h"

#include <cstring>

#include "host/logstore/log_cut.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/pcapng.h"
#include "host/logstore/trailer_cursor.h"
#include "host/logstore/window_reader.h"
#include "tests/logstore/log_files.h"

namespace loom::testing {
namespace {

constexpr std::int64_t kSecond_ns = 1'000'000'000;
constexpr int kIndexedRecords = 300;

class TimeIndexOfALog : public ::testing::Test {
 protected:
  // 300 records one second apart, every tenth of them 25 s early; an entry of the index covers about five of them.
  TimeIndexOfALog() : path_(folder_.File("a.log")), midnight_ns_(MidnightSeconds(kHeader.day) * kSecond_ns) {
    LogWriter log(path_, kHeader, 400);
    for (int id = 1; id <= kIndexedRecords; ++id) {
      CTestdataBase record(false, 0);
      record.record_id = id;
      record.time.seconds = 1000.0 + id - (id % 10 == 0 ? 25 : 0);
      log.Append(EncodeRecord(record), record.time.seconds);
    }
    log.Finish();
    sound_ = ReadWholeText(path_);
    const InputFile file(path_);
    TrailerCursor trailers(file);
    for (Trailer trailer; trailers.Next(trailer);)
      if (trailer.type == pcapng::kCustomDropped) index_ = trailer;
  }
  TimeWindow Seconds(int from, int to) const {
    return {midnight_ns_ + (1000 + from) * kSecond_ns, midnight_ns_ + (1000 + to) * kSecond_ns};
  }
  std::string Cut(const CString& source, const TimeWindow& window) const {
    EXPECT_TRUE(CutLog(source, folder_.File("cut.log"), window));
    return ReadWholeText(folder_.File("cut.log"));
  }
  std::string WithoutIndex() const {
    std::string bytes = sound_;
    return bytes.erase(index_.position_bytes, index_.length_bytes);
  }

  static constexpr LogHeader kHeader{LogKind::kStore, 140, 1, {2024, 5, 17}};
  TempFolder folder_;
  Notes notes_;
  NotesScope scope_{notes_};
  CString path_;
  std::int64_t midnight_ns_;
  std::string sound_;
  Trailer index_;
};

TEST_F(TimeIndexOfALog, CutsTheSameBytesWithAndWithoutIt) {
  WriteWholeFile(folder_.File("plain.log"), WithoutIndex());
  const auto index = LogReader(path_).ReadIndex();
  ASSERT_TRUE(index);
  EXPECT_GT(index->stretches.size(), 40U);
  EXPECT_FALSE(LogReader(folder_.File("plain.log")).ReadIndex());
  for (const auto& [from, to] :
       {std::pair(-50, 1), {0, 301}, {1, 2}, {40, 60}, {77, 78}, {299, 400}, {500, 600}, {-9, -8}})
    EXPECT_EQ(Cut(folder_.File("plain.log"), Seconds(from, to)), Cut(path_, Seconds(from, to))) << from << ' ' << to;
  EXPECT_TRUE(notes_.IsEmpty());
}

TEST_F(TimeIndexOfALog, StretchesHoldAllRecordsAndOnlyThoseOfTheWindowAreRead) {
  const auto index = LogReader(path_).ReadIndex();
  ASSERT_TRUE(index);
  std::uint32_t count = 0;
  for (const LogStretch& stretch : index->stretches) count += stretch.record_count;
  EXPECT_EQ(static_cast<std::uint32_t>(kIndexedRecords), count);
  // Damage in a stretch outside of the window is not met.
  std::string bytes = sound_;
  bytes[index->stretches[30].position_bytes + 4] = 1;
  WriteWholeFile(folder_.File("torn.log"), bytes);
  EXPECT_EQ(Cut(path_, Seconds(230, 260)), Cut(folder_.File("torn.log"), Seconds(230, 260)));
  EXPECT_TRUE(notes_.IsEmpty());
}

// Every number of the index's body, and the records of a stretch: what is wrong is noted and the whole log read.
TEST_F(TimeIndexOfALog, IsNotUsedWhenItLies) {
  const std::size_t body = index_.position_bytes + 8;
  const std::size_t entry = body + 20 + 28 * 10;  // of a stretch about the 55th second
  const struct {
    const char* what;
    std::size_t at;
    int change;  // of a byte
  } kLies[] = {
      {"file size", body + 8, 4},
      {"number of stretches", body + 16, 1},
      {"position within the stretch", entry, 4},
      {"position beyond the next one", entry + 1, 16},
      {"earliest time behind the latest", entry + 8 + 5, 1},
      {"earliest time later than a record's", entry + 8 + 3, 16},
      {"latest time earlier than a record's", entry + 16 + 3, -16},
      {"fewer records", entry + 24, -1},
      {"more records", entry + 24, 1},
      {"far more records", entry + 26, 1},
      {"first position", body + 20, 4},
  };
  const std::string sound_cut = Cut(path_, Seconds(0, 301));
  for (const auto& lie : kLies) {
    std::string bytes = sound_;
    bytes[lie.at] = static_cast<char>(bytes[lie.at] + lie.change);
    WriteWholeFile(folder_.File("lie.log"), bytes);
    notes_.Clear();
    EXPECT_EQ(sound_cut, Cut(folder_.File("lie.log"), Seconds(0, 301))) << lie.what;
    EXPECT_EQ(1U, notes_.Count("time index not used")) << lie.what;
    EXPECT_EQ(1U, notes_.kinds().size()) << lie.what;
  }
}

TEST_F(TimeIndexOfALog, RecordSkippedInAStretchIsNotedOnceByTheWholeReading) {
  const auto index = LogReader(path_).ReadIndex();
  ASSERT_TRUE(index);
  std::string bytes = sound_;
  bytes[index->stretches[10].position_bytes + 8] = 7;  // an interface that is not described
  WriteWholeFile(folder_.File("bad.log"), bytes);
  std::string plain = bytes;
  WriteWholeFile(folder_.File("plain.log"), plain.erase(index_.position_bytes, index_.length_bytes));
  EXPECT_EQ(Cut(folder_.File("plain.log"), Seconds(0, 301)), Cut(folder_.File("bad.log"), Seconds(0, 301)));
  EXPECT_EQ(2U, notes_.Count("record skipped"));
  EXPECT_EQ(1U, notes_.Count("time index not used"));
}

TEST_F(TimeIndexOfALog, ToolsAndReadersPassOverIt) {
  EXPECT_EQ(Ids(kIndexedRecords), ReadThrough(path_).ids);
  // The file size that it tells is not that of two logs in one file.
  WriteWholeFile(folder_.File("two.log"), sound_ + sound_);
  EXPECT_FALSE(LogReader(folder_.File("two.log")).ReadIndex());
  EXPECT_EQ(1U, notes_.Count("time index not used"));
  if (!Succeeds("editcap --version") || !Succeeds("mergecap --version")) GTEST_SKIP() << "no capture tools";
  const std::string in_folder = "cd " + folder_.native().string() + " && ";
  ASSERT_TRUE(Succeeds(in_folder + "test $(capinfos -TMrc a.log | cut -f2) = 300"));
  ASSERT_TRUE(Succeeds(in_folder + "editcap -F pcapng a.log edited.log"));
  ASSERT_TRUE(Succeeds(in_folder + "mergecap -a -w merged.log a.log"));
  for (const char* rewritten : {"edited.log", "merged.log"}) {
    EXPECT_EQ(std::string::npos, ReadWholeText(folder_.File(rewritten)).find(std::string("\xAD\x0B\0\x40", 4)))
        << rewritten;
    EXPECT_EQ(Cut(path_, Seconds(40, 60)), Cut(folder_.File(rewritten), Seconds(40, 60))) << rewritten;
  }
}

TEST(TimeIndexBuilder, StaysSmallAndCoversEveryRecord) {
  TimeIndexBuilder builder(100);
  constexpr std::uint64_t kCount = 3 * TimeIndexBuilder::kMostStretches;
  for (std::uint64_t i = 0; i < kCount; ++i) builder.Add(i * 100, static_cast<std::int64_t>(i));
  EXPECT_LE(builder.BlockBytes(), 1U << 20);
  std::vector<std::byte> body;
  ByteWriter out(body);
  builder.WriteBody(out, 0);
  ByteReader entries(body);
  entries.Skip(20);
  std::uint64_t records = 0;
  while (!entries.AtEnd()) {
    const std::uint64_t first = entries.U64() / 100;
    EXPECT_EQ(records, first);
    EXPECT_EQ(static_cast<std::int64_t>(first), entries.I64());
    const auto latest = entries.I64();
    records += entries.U32();
    EXPECT_EQ(static_cast<std::int64_t>(records) - 1, latest);
  }
  EXPECT_EQ(kCount, records);
}

}  // namespace
}  // namespace loom::testing
