#include "components/autotest.h"
#include "components/log_store.h"
#include "components/note_kinds.h"
#include "host/logstore/log_cut.h"
#include "host/logstore/log_merge.h"
#include "host/logstore/log_reader.h"
#include "platform/error.h"
#include "platform/time_units.h"

namespace loom {
namespace {

LogImporterMaker& Maker() {
  static LogImporterMaker maker = nullptr;
  return maker;
}

// The settings that every importer of a kind reads when an import starts. They outlive every importer.
template <ImporterTypeEnum kType>
ImpIESettings& SettingsOf() {
  static ImpIESettings settings;
  return settings;
}

bool IsKind(const CString& path, LogKind kind) {
  const auto header = PeekLogHeader(path);
  return header && header->kind == kind;
}

SYSTEMTIME ClockTime(std::int64_t time_ns) {
  const std::int64_t seconds = time_ns / kSecond_ns - (time_ns % kSecond_ns < 0 ? 1 : 0);
  return SystemTimeOf(ClockTimeOf(seconds), static_cast<int>((time_ns - seconds * kSecond_ns) / 1'000'000));
}

template <ImporterTypeEnum kType>
IImporter* Make() {
  if (!Maker()) throw Error("the maker of log importers is not registered");
  return Maker()(kType, &SettingsOf<kType>()).release();
}

}  // namespace

void RegisterLogImporterMaker(LogImporterMaker maker) { Maker() = maker; }

bool CCSLogImportWrap::IsCSLog(const CString& path) const { return IsKind(path, LogKind::kAuto); }
void CCSLogImportWrap::SetImpSetting(const ImpIESettings& settings) { SettingsOf<kImporterAutoTestLog>() = settings; }
IImporter* CCSLogImportWrap::CreateImporter() { return Make<kImporterAutoTestLog>(); }

bool CCSLogImportWrap::GetBeginEndTime(const CString& path, SYSTEMTIME& begin, SYSTEMTIME& end) const {
  if (!IsCSLog(path)) return false;
  const LogReader reader(path);
  const std::int64_t midnight_ns = MidnightSeconds(reader.header().day) * kSecond_ns;
  const LogTimes times = reader.ReadTimes().value_or(LogTimes{midnight_ns, midnight_ns});
  begin = ClockTime(times.start_ns);
  end = ClockTime(times.end_ns);
  return true;
}

int CCSLogImportWrap::MergeFile(const CString& target, const std::vector<CString>& paths) const {
  return MergeLogs(paths, target, [](LogKind kind) { return kind == LogKind::kAuto; });
}

int CCSLogImportWrap::ExtractLogByTimeW(const CString& source, const SYSTEMTIME& start, const SYSTEMTIME& end,
                                        const CString& target) const {
  if (!IsCSLog(source)) {
    CurrentNotes().Add("log refused"_note, source, std::uint64_t{0}, "is no log of the automatic test system");
    return kExtractFailed;
  }
  const TimeWindow window = WindowOfSeconds(LocalTimeOf(start), LocalTimeOf(end));
  return CutLog(source, target, window) ? kExtractDone : kExtractFailed;
}

bool CCMCCLogImportWrap::IsCMCCLog(const CString& path) const { return IsKind(path, LogKind::kCmcc); }
void CCMCCLogImportWrap::SetImpSetting(const ImpIESettings& settings) {
  SettingsOf<kImporterChinaMobileLog>() = settings;
}
IImporter* CCMCCLogImportWrap::CreateImporter() { return Make<kImporterChinaMobileLog>(); }

}  // namespace loom
