#include <algorithm>
#include <cstring>
#include <fstream>

#include "components/autotest.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/pcapng.h"
#include "tests/logstore/log_files.h"

namespace loom::testing {
namespace {

constexpr int kRecords = 5;

std::uint32_t NumberAt(const std::string& bytes, std::size_t at) {
  std::uint32_t number;
  std::memcpy(&number, bytes.data() + at, sizeof(number));
  return number;
}

void SetNumber(std::string& bytes, std::size_t at, std::uint32_t number) {
  std::memcpy(bytes.data() + at, &number, sizeof(number));
}

// Where the blocks of a sound container begin, and its end.
std::vector<std::size_t> BlockStarts(const std::string& bytes) {
  std::vector<std::size_t> starts;
  for (std::size_t at = 0; at < bytes.size(); at += NumberAt(bytes, at + 4)) starts.push_back(at);
  starts.push_back(bytes.size());
  return starts;
}

class Container : public ::testing::Test {
 protected:
  Container() : path_(folder_.File("a.log")) {
    WriteLog(path_, kRecords);
    sound_ = ReadWholeText(path_);
    starts_ = BlockStarts(sound_);  // section, interface, records, statistics
  }
  ReadLog Reread(const std::string& bytes) {
    std::ofstream(GbkPathToNative(path_), std::ios::binary) << bytes;  // without syncing: this happens often
    return ReadThrough(path_);
  }
  // Records that stand whole in front of a position.
  int WholeRecordsBefore(std::size_t at) const {
    int whole = 0;
    for (int i = 0; i < kRecords; ++i) whole += starts_[3 + i] <= at;
    return whole;
  }

  TempFolder folder_;
  CString path_;
  std::string sound_;
  std::vector<std::size_t> starts_;
};

TEST_F(Container, GivesBackWhatWasWritten) {
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder_.Folder(), "a.log", 0));
  EXPECT_EQ(140, log.GetLogFileVersion());
  EXPECT_EQ(140, CLogFileManager::GetLogFileVersion(path_));
  EXPECT_EQ(1, CLogFileManager::GetLogTestType(path_));
  ASSERT_NE(nullptr, log.GetLogFile());
  EXPECT_EQ(2024, log.GetLogFile()->getYear());
  EXPECT_EQ(5, log.GetLogFile()->getMonth());
  EXPECT_EQ(17, log.GetLogFile()->getDate());
  EXPECT_EQ("10:00:01.000", log.GetRecordStartTime().toString());
  EXPECT_EQ("10:00:05.000", log.GetRecordEndTime().toString());
  EXPECT_EQ(Ids(kRecords), ReadThrough(path_).ids);
  log.CloseReadingFile();
  EXPECT_EQ(nullptr, log.GetLogFile());
}

TEST_F(Container, ShareReadGrowsUpToOne) {
  const ReadLog read = ReadThrough(path_);
  ASSERT_EQ(static_cast<std::size_t>(kRecords), read.shares.size());
  EXPECT_TRUE(std::is_sorted(read.shares.begin(), read.shares.end()));
  EXPECT_GT(read.shares.front(), 0.0);
  EXPECT_LE(read.shares.back(), 1.0);
}

TEST_F(Container, CutAtEveryByteKeepsTheRecordsInFrontAndSaysWhereItEnds) {
  for (std::size_t size = 0; size < sound_.size(); ++size) {
    const ReadLog read = Reread(sound_.substr(0, size));
    ASSERT_EQ(size >= starts_[1], read.opened) << size;
    ASSERT_EQ(Ids(WholeRecordsBefore(size)), read.ids) << size;
    const bool at_border = std::find(starts_.begin() + 1, starts_.end(), size) != starts_.end();
    ASSERT_EQ(!at_border, !read.notes.IsEmpty()) << size;
    ASSERT_FALSE(read.threw) << size;
  }
}

TEST_F(Container, LyingBlockLengthEndsTheLogThereWithANote) {
  for (std::size_t i = 1; i + 1 < starts_.size(); ++i) {
    for (const std::size_t at : {starts_[i] + 4, starts_[i + 1] - 4}) {
      for (const std::uint32_t lie : {0U, 4U, 11U, 12U, NumberAt(sound_, at) + 4, NumberAt(sound_, at) - 4, 0x01000004U,
                                      0x7FFFFFFCU, 0xFFFFFFFFU}) {
        std::string bytes = sound_;
        SetNumber(bytes, at, lie);
        const ReadLog read = Reread(bytes);
        ASSERT_EQ(Ids(WholeRecordsBefore(starts_[i])), read.ids) << at << ' ' << lie;
        ASSERT_EQ(1U, read.notes.Count("log ends early")) << at << ' ' << lie;
        ASSERT_EQ("byte " + std::to_string(starts_[i]), read.notes.kinds().front().places.front().at);
      }
    }
  }
}

TEST_F(Container, RecordThatLiesIsSkippedAndTheNextOneRead) {
  const std::size_t second = starts_[3];
  const struct {
    const char* what;
    std::size_t at;
    std::uint32_t value;
  } kLies[] = {
      {"interface that is not described", second + 8, 7},
      {"captured length beyond the block", second + 20, 5000},
      {"record cut by a tool", second + 24, 5000},
      {"first tag longer than the record", second + 28 + 2, 5000},
  };
  for (const auto& lie : kLies) {
    std::string bytes = sound_;
    SetNumber(bytes, lie.at, lie.value);
    const ReadLog read = Reread(bytes);
    EXPECT_EQ((std::vector<std::int32_t>{1, 3, 4, 5}), read.ids) << lie.what;
    EXPECT_EQ(1U, read.notes.Count("record skipped")) << lie.what;
  }
}

TEST_F(Container, UnknownBlocksOtherLinksAndFurtherSectionsArePassedOver) {
  const std::string unknown("\x0A\0\0\0\x10\0\0\0abcd\x10\0\0\0", 16);
  std::string foreign_link = sound_.substr(starts_[1], starts_[2] - starts_[1]);
  foreign_link[8] = 1;
  // Described second: its packets are not records.
  std::string packet = sound_.substr(starts_[2], starts_[3] - starts_[2]);
  packet[8] = 1;
  const ReadLog read =
      Reread(sound_.substr(0, starts_[2]) + unknown + foreign_link + packet + sound_.substr(starts_[2]) + sound_);
  EXPECT_EQ(2U * kRecords, read.ids.size());
  EXPECT_EQ(1U, read.notes.Count("record skipped"));
}

TEST_F(Container, SectionOfAnotherLogEndsTheLog) {
  const CString other = folder_.File("b.log");
  WriteLog(other, 2, {LogKind::kStore, 150, 1, {2024, 5, 17}});
  const ReadLog read = Reread(sound_ + ReadWholeText(other));
  EXPECT_EQ(Ids(kRecords), read.ids);
  EXPECT_EQ(1U, read.notes.Count("log ends early"));
}

TEST_F(Container, TimesAreFoundWithoutStatistics) {
  WriteWholeFile(path_, sound_.substr(0, starts_[2 + kRecords]));
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder_.Folder(), "a.log", 0));
  EXPECT_EQ("10:00:01.000", log.GetRecordStartTime().toString());
  EXPECT_EQ("10:00:05.000", log.GetRecordEndTime().toString());
}

TEST_F(Container, FileThatShrinksWhileItIsReadThrows) {
  WriteLog(path_, 60'000);  // several pieces
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder_.Folder(), "a.log", 0));
  std::filesystem::resize_file(GbkPathToNative(path_), 2'000'000);
  std::pmr::monotonic_buffer_resource arena;
  EXPECT_THROW(
      for (;;) {
        CTestdataBase record(false, 0);
        record.arena = &arena;
        if (!log.ReadFile(record)) break;
      },
      FileError);
}

TEST_F(Container, RefusesWhatIsNoLogWithAReason) {
  std::string no_option = sound_;
  no_option[24] = 1;
  std::string no_date = sound_;
  no_date.replace(no_date.find("date="), 5, "dame=");
  std::string big_endian = sound_;
  std::reverse(big_endian.begin() + 8, big_endian.begin() + 12);
  const std::pair<const char*, std::string> kForeign[] = {
      {"empty", ""},
      {"section header block", "some text that is no log at all"},
      {"old form", std::string("\xD4\xC3\xB2\xA1\2\0\4\0", 8)},
      {"does not say that it holds a log", no_option},
      {"'date' is missing", no_date},
      {"big-endian", big_endian},
  };
  for (const auto& [reason, bytes] : kForeign) {
    const ReadLog read = Reread(bytes);
    EXPECT_FALSE(read.opened) << reason;
    ASSERT_EQ(1U, read.notes.Count("log refused")) << reason;
    EXPECT_NE(std::string::npos, read.notes.kinds().front().places.front().what.find(reason))
        << read.notes.kinds().front().places.front().what;
    EXPECT_EQ(kUnreadableVersion, CLogFileManager::GetLogFileVersion(path_)) << reason;
  }
  EXPECT_FALSE(ReadThrough(folder_.File("missing.log")).opened);
}

TEST_F(Container, ForeignCapturesAreRefused) {
  if (SharedSamples().empty()) GTEST_SKIP() << "no sample captures";
  int seen = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(SharedSamples() / "capture")) {
    const std::string extension = entry.path().extension();
    if (extension != ".pcap" && extension != ".pcapng") continue;
    const ReadLog read = ReadThrough(NativePathToGbk(entry.path().string()));
    EXPECT_FALSE(read.opened) << entry.path();
    EXPECT_EQ(1U, read.notes.Count("log refused")) << entry.path();
    ++seen;
  }
  EXPECT_GT(seen, 0);
}

TEST_F(Container, KindTellsTheAutomaticTestLogs) {
  const CCSLogImportWrap cs;
  const CCMCCLogImportWrap cmcc;
  for (const LogKind kind : {LogKind::kStore, LogKind::kAuto, LogKind::kCmcc}) {
    WriteLog(path_, 1, {kind, 140, 1, {2024, 5, 17}});
    EXPECT_EQ(kind == LogKind::kAuto, cs.IsCSLog(path_));
    EXPECT_EQ(kind == LogKind::kCmcc, cmcc.IsCMCCLog(path_));
  }
  EXPECT_FALSE(cs.IsCSLog(folder_.File("missing.log")));
}

TEST_F(Container, RecordBeyondTheLimitIsRefusedAndNothingIsLeftBehind) {
  const CString path = folder_.File("b.log");
  {
    LogWriter log(path, {});
    const std::vector<std::byte> long_record(pcapng::kMaxRecordBytes + 1);
    EXPECT_THROW(log.Append(long_record, 0.0), FileError);
  }
  EXPECT_FALSE(FileExists(path));
  EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder_.native()), {}));
}

TEST_F(Container, CaptureToolsCarryALogUnchanged) {
  if (!Succeeds("editcap --version") || !Succeeds("mergecap --version")) GTEST_SKIP() << "no capture tools";
  const std::string log = GbkPathToNative(path_);
  const auto tool = [&](const std::string& command) {
    return Succeeds("cd " + folder_.native().string() + " && " + command);
  };
  ASSERT_TRUE(tool("capinfos a.log"));
  ASSERT_TRUE(tool("editcap a.log edited.log"));
  ASSERT_TRUE(tool("editcap -r a.log cut.log 2-3"));
  ASSERT_TRUE(tool("mergecap -w merged.log a.log edited.log"));
  EXPECT_EQ(Dump(path_), Dump(folder_.File("edited.log")));
  EXPECT_EQ((std::vector<std::int32_t>{2, 3}), ReadThrough(folder_.File("cut.log")).ids);
  EXPECT_EQ(2U * kRecords, ReadThrough(folder_.File("merged.log")).ids.size());
  CLogFileManager cut;
  ASSERT_NE(0, cut.OpenFile(folder_.Folder(), "cut.log", 0));
  EXPECT_EQ("10:00:02.000", cut.GetRecordStartTime().toString());
  EXPECT_EQ("10:00:03.000", cut.GetRecordEndTime().toString());
}

}  // namespace
}  // namespace loom::testing
