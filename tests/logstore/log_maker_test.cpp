#include <sys/resource.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "components/autotest.h"
#include "components/dt_time.h"
#include "host/logstore/log_cut.h"
#include "host/logstore/log_merge.h"
#include "host/logstore/log_reader.h"
#include "host/simulation/simulator.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "tests/logstore/log_files.h"

namespace loom::testing {
namespace {

using Stamps = std::vector<std::pair<std::int32_t, double>>;  // record ids and times of day

constexpr CalendarDay kFriday{2024, 5, 17};
constexpr CalendarDay kSaturday{2024, 5, 18};

LogHeader Header(const CalendarDay& day = kFriday, std::int32_t version = 160, std::int32_t test_type = 1,
                 LogKind kind = LogKind::kStore) {
  return {kind, version, test_type, day};
}

void Write(const CString& path, const Stamps& stamps, const LogHeader& header = Header()) {
  LogWriter log(path, header);
  for (const auto& [id, time_s] : stamps) {
    CTestdataBase record(false, 0);
    record.record_id = id;
    record.text = "some text in front of the time";
    record.time.seconds = time_s;
    log.Append(EncodeRecord(record), time_s);
  }
  log.Finish();
}

// As an import sees the log.
Stamps Read(const CString& path) {
  CLogFileManager log;
  const PathParts parts = SplitPath(path);
  EXPECT_NE(0, log.OpenFile(parts.folder, parts.name, 0));
  Stamps stamps;
  for (std::pmr::monotonic_buffer_resource arena;;) {
    CTestdataBase record(false, 0);
    record.arena = &arena;
    if (!log.ReadFile(record)) return stamps;
    stamps.emplace_back(record.record_id, record.time.seconds);
  }
}

// A full disk: files cannot grow beyond that size.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &old_);
    old_action_ = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, old_action_);
  }

 private:
  rlimit old_{};
  void (*old_action_)(int);
};

class LogMaker : public ::testing::Test {
 protected:
  CString File(const CString& name) const { return folder_.File(name); }
  int Merge(const std::vector<CString>& names) {
    std::vector<CString> paths;
    for (const CString& name : names) paths.push_back(File(name));
    return CLogFileManager().MergeFile(paths, File("merged.log"), 1);
  }
  // [from, to] of Friday, seconds of the day.
  int Cut(const CString& source, int from_s, int to_s, const CString& target = "cut.log") {
    const auto at = [](int second) { return CTime(LocalTime{.day = kFriday, .second = second}); };
    return CLogFileManager().ExtractLogFile(File(source), at(from_s), at(to_s), folder_.Folder(), target);
  }
  LogHeader HeaderOf(const CString& name) { return PeekLogHeader(File(name)).value(); }
  std::ptrdiff_t FileCount() const { return std::distance(std::filesystem::directory_iterator(folder_.native()), {}); }

  TempFolder folder_;
  Notes notes_;
  NotesScope scope_{notes_};
};

// The wish to end stays for the process, so it is made in another one.
TEST_F(LogMaker, AnInterruptStopsThemAndLeavesTheTarget) {
  Write(File("a.log"), {{1, 10.0}, {2, 20.0}});
  Write(File("b.log"), {{11, 5.0}});
  WriteWholeFile(File("merged.log"), "old");
  WriteWholeFile(File("cut.log"), "old");
  const auto files = FileCount();
  const auto is_stopped = [&] {
    Interrupt();
    return Merge({"a.log", "b.log"}) == kMergeInterrupted && Cut("a.log", 10, 20) == kExtractFailed &&
           Cut("a.log", 30, 40) == kExtractFailed;
  };
  EXPECT_EXIT(std::_Exit(is_stopped() ? 0 : 1), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ("old", ReadWholeText(File("merged.log")));
  EXPECT_EQ("old", ReadWholeText(File("cut.log")));
  EXPECT_EQ(files, FileCount());
}

TEST_F(LogMaker, MergeOrdersByTimeAndEqualTimesByTheList) {
  Write(File("a.log"), {{1, 10.0}, {2, 20.0}, {3, 20.0}, {4, 30.5}});
  Write(File("b.log"), {{11, 5.0}, {12, 20.0}, {13, 40.0}});
  Write(File("c.log"), {{21, 20.0}, {22, 30.25}});
  EXPECT_EQ(kMergeDone, Merge({"b.log", "a.log", "c.log"}));
  EXPECT_EQ(
      (Stamps{{11, 5.0}, {1, 10.0}, {12, 20.0}, {2, 20.0}, {3, 20.0}, {21, 20.0}, {22, 30.25}, {4, 30.5}, {13, 40.0}}),
      Read(File("merged.log")));
  EXPECT_EQ(Header(kFriday, 600), HeaderOf("merged.log"));
  const auto times = LogReader(File("merged.log")).ReadTimes();
  ASSERT_TRUE(times);
  EXPECT_EQ(35'500'000'000, times->end_ns - times->start_ns + 500'000'000);
  EXPECT_TRUE(notes_.IsEmpty());
}

TEST_F(LogMaker, TimesOfLaterDaysCountOnFromTheEarliestDay) {
  Write(File("sat.log"), {{11, 60.0}, {12, -1.0}}, Header(kSaturday, 140, 2));
  Write(File("fri.log"), {{1, 86'399.5}}, Header(kFriday, 160, 2));
  EXPECT_EQ(kMergeDone, Merge({"sat.log", "fri.log"}));  // by hand in the other order
  // A time that is none stays none; it stands at the midnight of its day.
  EXPECT_EQ((Stamps{{1, 86'399.5}, {11, 86'460.0}, {12, -1.0}}), Read(File("merged.log")));
  EXPECT_EQ(Header(kFriday, 600, 2), HeaderOf("merged.log"));
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder_.Folder(), "merged.log", 0));
  EXPECT_EQ("24:01:00.000", log.GetRecordEndTime().toString());
}

TEST_F(LogMaker, MergedLogsMergeAgain) {
  Write(File("a.log"), {{1, 10.0}});
  Write(File("b.log"), {{2, 20.0}}, Header(kSaturday));
  ASSERT_EQ(kMergeDone, Merge({"a.log", "b.log"}));
  std::filesystem::rename(folder_.native() / "merged.log", folder_.native() / "first.log");
  Write(File("c.log"), {{3, 15.0}}, Header(kSaturday));
  EXPECT_EQ(kMergeDone, Merge({"first.log", "c.log"}));
  EXPECT_EQ((Stamps{{1, 10.0}, {3, 86'415.0}, {2, 86'420.0}}), Read(File("merged.log")));
}

TEST_F(LogMaker, MergeNamesTheFirstRecordOutOfOrder) {
  Write(File("a.log"), {{1, 10.0}, {2, 30.0}, {3, 20.0}, {4, 25.0}, {5, 40.0}});
  Write(File("b.log"), {{11, 15.0}, {12, 35.0}});
  EXPECT_EQ(kMergeDone, Merge({"a.log", "b.log"}));
  EXPECT_EQ((Stamps{{1, 10.0}, {11, 15.0}, {2, 30.0}, {3, 20.0}, {4, 25.0}, {12, 35.0}, {5, 40.0}}),
            Read(File("merged.log")));
  ASSERT_EQ(1U, notes_.Count("log not in time order"));
  LogReader reader(File("a.log"));
  LogPacket packet;
  for (int i = 0; i < 3; ++i) ASSERT_TRUE(reader.Next(packet));
  EXPECT_EQ("byte " + std::to_string(packet.position_bytes), notes_.kinds().front().places.front().at);
}

TEST_F(LogMaker, MergeRefusesWhatDoesNotGoTogether) {
  Write(File("a.log"), {{1, 10.0}});
  Write(File("indoor.log"), {{1, 10.0}}, Header(kFriday, 160, 2));
  Write(File("auto.log"), {{1, 10.0}}, Header(kFriday, 160, 1, LogKind::kAuto));
  Write(File("cmcc.log"), {{1, 10.0}}, Header(kFriday, 160, 1, LogKind::kCmcc));
  Write(File("later.log"), {{1, 10.0}}, Header({2025, 7, 8}));
  WriteWholeFile(File("foreign.log"), "no log at all");
  WriteWholeFile(File("merged.log"), "the target");
  for (const CString other : {"indoor.log", "auto.log", "cmcc.log", "later.log", "foreign.log", "missing.log"}) {
    EXPECT_EQ(kMergeRefused, Merge({"a.log", other})) << other;
    EXPECT_EQ(1U, notes_.Count("log refused")) << other;
    notes_.Clear();
  }
  EXPECT_EQ(kMergeRefused, Merge({}));
  EXPECT_EQ("the target", ReadWholeText(File("merged.log")));
  // The target among the sources, by another name.
  Write(File("merged.log"), {{7, 10.0}});
  std::filesystem::create_symlink("merged.log", folder_.native() / "link.log");
  EXPECT_EQ(kMergeRefused, Merge({"a.log", "link.log"}));
  EXPECT_EQ((Stamps{{7, 10.0}}), Read(File("merged.log")));
}

TEST_F(LogMaker, MergeLeavesOldLogsOut) {
  Write(File("old.log"), {{1, 10.0}}, Header(kFriday, 130));
  Write(File("new.log"), {{2, 20.0}}, Header(kFriday, 131));
  EXPECT_EQ(kMergeInPart, Merge({"old.log", "new.log"}));
  EXPECT_EQ((Stamps{{2, 20.0}}), Read(File("merged.log")));
  EXPECT_EQ(1U, notes_.Count("log left out"));
  EXPECT_EQ(kMergeRefused, Merge({"old.log"}));
}

TEST_F(LogMaker, TornAndEmptyLogsGiveWhatTheyHold) {
  Write(File("empty.log"), {});
  Write(File("torn.log"), {{1, 10.0}, {2, 20.0}, {3, 30.0}});
  const std::string bytes = ReadWholeText(File("torn.log"));
  WriteWholeFile(File("torn.log"), bytes.substr(0, bytes.size() * 3 / 4));
  ASSERT_EQ(2U, Read(File("torn.log")).size());
  notes_.Clear();
  EXPECT_EQ(kMergeDone, Merge({"empty.log", "torn.log"}));
  EXPECT_EQ((Stamps{{1, 10.0}, {2, 20.0}}), Read(File("merged.log")));
  EXPECT_EQ(1U, notes_.Count("log ends early"));
  EXPECT_EQ(kExtractDone, Cut("torn.log", 20, 60));
  EXPECT_EQ((Stamps{{2, 20.0}}), Read(File("cut.log")));
  EXPECT_EQ(kExtractDone, Cut("empty.log", 0, 60));
  EXPECT_TRUE(Read(File("cut.log")).empty());
}

TEST_F(LogMaker, WritingThatFailsLeavesTheOldTargetAndNothingElse) {
  WriteLog(File("a.log"), 5000);
  WriteLog(File("b.log"), 5000);
  WriteWholeFile(File("merged.log"), "the target");
  const auto files = FileCount();
  {
    const FileSizeLimit full_disk(300'000);
    EXPECT_EQ(kMergeFailed, Merge({"a.log", "b.log"}));
    EXPECT_EQ(kExtractFailed, Cut("a.log", 0, 86'000, "merged.log"));
  }
  EXPECT_EQ(2U, notes_.Count("log not written"));
  EXPECT_EQ("the target", ReadWholeText(File("merged.log")));
  EXPECT_EQ(files, FileCount());
  EXPECT_EQ(kExtractFailed, Cut("a.log", 0, 86'000, "missing/cut.log"));
  EXPECT_EQ(kMergeFailed, CLogFileManager().MergeFile({File("a.log"), File("b.log")}, folder_.Folder(), 1));
  EXPECT_EQ(kExtractFailed, Cut("a.log", 0, 86'000, "a.log"));
  EXPECT_EQ(5000U, Read(File("a.log")).size());
}

// Somebody writes to the source all the while; a round in which that one got no turn says nothing.
TEST_F(LogMaker, SourceThatChangesWhileItIsReadThrowsAndLeavesNothing) {
  WriteLog(File("a.log"), 20'000);
  const std::string native = GbkPathToNative(File("a.log"));
  std::atomic<bool> stop = false;
  std::thread writer([&] {
    for (int second = 0; !stop; ++second)
      std::filesystem::last_write_time(native, std::filesystem::file_time_type(std::chrono::seconds(second)));
  });
  const auto throws = [](auto work) {
    for (int round = 0; round < 100; ++round) {
      try {
        work();
      } catch (const FileError& error) {
        return error.reason().find("written to while") != std::string::npos;
      }
    }
    return false;
  };
  EXPECT_TRUE(throws([&] { Merge({"a.log"}); }));
  EXPECT_TRUE(throws([&] { Cut("a.log", 0, 86'000); }));
  stop = true;
  writer.join();
  for (const auto& entry : std::filesystem::directory_iterator(folder_.native()))
    EXPECT_EQ(".log", entry.path().extension()) << entry.path();
}

TEST_F(LogMaker, CutHoldsItsLastSecondWhole) {
  Write(File("a.log"), {{1, 9.999}, {2, 10.0}, {3, 19.0}, {4, 19.999}, {5, 20.0}});
  EXPECT_EQ(kExtractDone, Cut("a.log", 10, 19));
  EXPECT_EQ((Stamps{{2, 10.0}, {3, 19.0}, {4, 19.999}}), Read(File("cut.log")));
  EXPECT_EQ(Header(), HeaderOf("cut.log"));
  CLogFileManager log;
  ASSERT_NE(0, log.OpenFile(folder_.Folder(), "cut.log", 0));
  EXPECT_EQ("00:00:10.000", log.GetRecordStartTime().toString());
  EXPECT_EQ("00:00:19.999", log.GetRecordEndTime().toString());
}

TEST_F(LogMaker, WindowsSideBySideAddUpToTheWhole) {
  SimulationOptions drive;
  drive.minutes = 3.0;
  drive.handsets = {SimulatedNetwork::kTdScdma, SimulatedNetwork::kLte};
  SimulateLog(File("whole.log"), drive);
  std::string lines;
  for (int from = 9 * 3600 + 1800; from < 9 * 3600 + 1800 + 200; from += 50) {
    ASSERT_EQ(kExtractDone, Cut("whole.log", from, from + 49));
    const std::string part = Dump(File("cut.log"));
    lines += lines.empty() ? part : part.substr(part.find('\n') + 1);
  }
  EXPECT_EQ(Dump(File("whole.log")), lines);
}

TEST_F(LogMaker, BlocksOfOtherContainersAreTakenOver) {
  WriteLog(File("a.log"), 3);
  std::string bytes = ReadWholeText(File("a.log"));
  bytes[0x70] = 6;  // microseconds: the same ticks are a thousand times later
  WriteWholeFile(File("micro.log"), bytes);
  LogReader before(File("micro.log"));
  LogPacket packet;
  ASSERT_TRUE(before.Next(packet));
  const std::int64_t time_ns = packet.time_ns;
  ASSERT_EQ(kMergeDone, Merge({"micro.log"}));
  LogReader after(File("merged.log"));
  ASSERT_TRUE(after.Next(packet));
  EXPECT_EQ(time_ns, packet.time_ns);
  EXPECT_TRUE(packet.is_native);
  EXPECT_EQ(Ids(3), ReadThrough(File("merged.log")).ids);
}

TEST_F(LogMaker, LogsOfTheAutomaticTestSystem) {
  const LogHeader header = Header(kFriday, 120, 1, LogKind::kAuto);
  Write(File("a.log"), {{1, 36'000.25}, {2, 90'061.5}}, header);
  Write(File("b.log"), {{11, 36'001.0}}, header);
  Write(File("store.log"), {{11, 36'001.0}});
  const CCSLogImportWrap wrap;
  SYSTEMTIME begin, end;
  ASSERT_TRUE(wrap.GetBeginEndTime(File("a.log"), begin, end));
  EXPECT_EQ("2024-05-17 10:00:00.250", CDTTime(begin).ToString(127));
  EXPECT_EQ("2024-05-18 01:01:01.500", CDTTime(end).ToString(127));
  EXPECT_EQ(6, end.wDayOfWeek);
  EXPECT_FALSE(wrap.GetBeginEndTime(File("store.log"), begin, end));

  EXPECT_EQ(kMergeDone, wrap.MergeFile(File("merged.log"), {File("a.log"), File("b.log")}));
  EXPECT_EQ((Stamps{{1, 36'000.25}, {11, 36'001.0}, {2, 90'061.5}}), Read(File("merged.log")));
  EXPECT_TRUE(wrap.IsCSLog(File("merged.log")));
  EXPECT_EQ(kMergeRefused, wrap.MergeFile(File("merged.log"), {File("a.log"), File("store.log")}));

  EXPECT_EQ(kExtractDone, wrap.ExtractLogByTimeW(File("a.log"), end, end, File("cut.log")));
  EXPECT_EQ((Stamps{{2, 90'061.5}}), Read(File("cut.log")));
  EXPECT_EQ(kExtractFailed, wrap.ExtractLogByTimeW(File("store.log"), begin, end, File("cut.log")));
}

TEST_F(LogMaker, CaptureToolsMergeAndCutTheSameRecords) {
  if (!Succeeds("editcap --version") || !Succeeds("mergecap --version")) GTEST_SKIP() << "no capture tools";
  SimulationOptions drive;
  drive.minutes = 2.0;
  SimulateLog(File("a.log"), drive);
  drive.seed = 2;
  drive.handsets = {SimulatedNetwork::kLte};
  SimulateLog(File("b.log"), drive);
  const auto records = [this](const CString& name) {
    const std::string lines = Dump(File(name));
    return lines.substr(lines.find('\n') + 1);  // behind the header, whose version differs
  };
  const std::string in_folder = "cd " + folder_.native().string() + " && TZ=UTC ";
  ASSERT_EQ(kMergeDone, Merge({"a.log", "b.log"}));
  // Of equal times it takes the log listed last first.
  ASSERT_TRUE(Succeeds(in_folder + "mergecap -w theirs.log b.log a.log"));
  EXPECT_TRUE(records("theirs.log") == records("merged.log"));
  // Its end is not in the window.
  ASSERT_TRUE(Succeeds(in_folder + "editcap -A '2024-05-17 09:30:30' -B '2024-05-17 09:31:00' a.log theirs.log"));
  ASSERT_EQ(kExtractDone, Cut("a.log", 9 * 3600 + 1830, 9 * 3600 + 1859));
  EXPECT_TRUE(records("theirs.log") == records("cut.log"));
}

}  // namespace
}  // namespace loom::testing
