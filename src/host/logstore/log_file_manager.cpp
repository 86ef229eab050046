#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "components/log_store.h"
#include "components/note_kinds.h"
#include "host/logstore/log_cut.h"
#include "host/logstore/log_merge.h"
#include "host/logstore/log_reader.h"
#include "host/logstore/reading_log.h"
#include "host/logstore/record_codec.h"
#include "platform/error.h"
#include "platform/time_units.h"

namespace loom {
namespace {

ReadingPlace& CurrentReading() {
  static ReadingPlace place;
  return place;
}

std::span<const std::byte> CopyToArena(std::span<const std::byte> bytes, std::pmr::memory_resource& arena) {
  auto* copy = static_cast<std::byte*>(arena.allocate(bytes.size(), 1));
  std::copy(bytes.begin(), bytes.end(), copy);
  return {copy, bytes.size()};
}

// The record as it was before something was read into it.
void StartAfresh(CTestdataBase& record) {
  std::pmr::memory_resource* arena = record.arena;
  record = CTestdataBase(false, 0);
  record.arena = arena;
}

}  // namespace

const ReadingPlace& Reading() { return CurrentReading(); }

struct CLogFileManager::Impl {
  explicit Impl(const CString& path) : reader(path) {
    const CalendarDay& day = reader.header().day;
    file.SetDay(day.year, day.month, day.day);
  }
  // Looked up when they are first asked for; midnight for a log without records.
  const LogTimes& Times() {
    if (!times) times = reader.ReadTimes().value_or(LogTimes{Midnight(), Midnight()});
    return *times;
  }
  sys_time TimeOfDay(std::int64_t time_ns) const { return {static_cast<double>(time_ns - Midnight()) / 1e9}; }
  std::int64_t Midnight() const { return MidnightSeconds(reader.header().day) * kSecond_ns; }

  LogReader reader;
  CDTFile file;
  std::optional<LogTimes> times;
  std::uint64_t record_position_bytes = 0;
};

CLogFileManager::CLogFileManager() = default;
CLogFileManager::~CLogFileManager() = default;

int CLogFileManager::OpenFile(const CString& folder, const CString& file_name, int) {
  impl_.reset();
  const CString path = folder + file_name;
  try {
    impl_ = std::make_unique<Impl>(path);
    return 1;
  } catch (const FileError& error) {
    CurrentNotes().Add("log refused"_note, path, error.position_bytes(), error.reason());
    return 0;
  }
}

void CLogFileManager::CloseReadingFile() { impl_.reset(); }

int CLogFileManager::GetLogFileVersion() const { return impl_ ? impl_->reader.header().version : kUnreadableVersion; }

int CLogFileManager::GetLogFileVersion(const CString& path) {
  const auto header = PeekLogHeader(path);
  return header ? header->version : kUnreadableVersion;
}

int CLogFileManager::GetLogTestType(const CString& path) {
  const auto header = PeekLogHeader(path);
  return header ? header->test_type : kUnreadableVersion;
}

int CLogFileManager::ReadFile(CTestdataBase& record) {
  if (!impl_) return 0;
  if (!record.arena) throw Error("a record is read into its arena, and it has none");
  LogPacket packet;
  while (impl_->reader.Next(packet)) {
    const auto payload = CopyToArena(packet.payload, *record.arena);
    impl_->record_position_bytes = packet.position_bytes;
    CurrentReading() = {impl_->reader.path(), packet.position_bytes};
    try {
      DecodeHeader(payload, packet.payload_position_bytes, record, *record.arena);
    } catch (const FormatError& error) {
      CurrentNotes().Add("record skipped"_note, impl_->reader.path(), error.position_bytes(), error.reason());
      StartAfresh(record);
      continue;
    }
    if (record.fails_to_read)
      throw FileError(impl_->reader.path(), packet.position_bytes, "the record is marked as one that fails to read");
    return 1;
  }
  return 0;
}

double CLogFileManager::GetCurPercent() const { return impl_ ? impl_->reader.ShareRead() : 0.0; }

CDTFile* CLogFileManager::GetLogFile() { return impl_ ? &impl_->file : nullptr; }

std::uint64_t CLogFileManager::GetRecordPosition() const { return impl_ ? impl_->record_position_bytes : 0; }

bool CLogFileManager::GetLogFileDate(int& year, int& month, int& day) const {
  if (!impl_) return false;
  const CalendarDay& date = impl_->reader.header().day;
  year = date.year;
  month = date.month;
  day = date.day;
  return true;
}

sys_time CLogFileManager::GetRecordStartTime() {
  return impl_ ? impl_->TimeOfDay(impl_->Times().start_ns) : sys_time{};
}

sys_time CLogFileManager::GetRecordEndTime() { return impl_ ? impl_->TimeOfDay(impl_->Times().end_ns) : sys_time{}; }

int CLogFileManager::MergeFile(std::vector<CString> paths, const CString& target, int) {
  return MergeLogs(paths, target, [](LogKind kind) { return kind != LogKind::kAuto; });
}

int CLogFileManager::ExtractLogFile(const CString& source, const CTime& start, const CTime& end,
                                    const CString& target_folder, const CString& target_name) {
  const TimeWindow window = WindowOfSeconds(start.GetLocalTime(), end.GetLocalTime());
  return CutLog(source, target_folder + target_name, window) ? kExtractDone : kExtractFailed;
}

}  // namespace loom
