#include "apps/qloom/recording_report.h"

#include <algorithm>
#include <ostream>

#include "platform/encoding.h"

namespace loom {
namespace {

bool IsAnyRefused(const RecordingReport& report) {
  return std::any_of(report.files.begin(), report.files.end(),
                     [](const RecordingFile& file) { return !file.refusal.empty(); });
}

int ResultOf(const RecordingReport& report) {
  if (!report.is_written) return kBatchNothing;
  return IsAnyRefused(report) ? kBatchInPart : kBatchDone;
}

}  // namespace

Json RecordingReportJson(const RecordingReport& report) {
  Json files = Json::array();
  for (const RecordingFile& file : report.files) {
    files.push_back({{"path", JsonText(file.path)}, {"result", file.refusal.empty() ? 1 : 0}});
    if (!file.refusal.empty()) files.back()["reason"] = file.refusal;
  }
  Json packets = Json::object();
  for (const auto& [code, versions] : report.packets) packets[code] = versions;
  Json records = Json::object();
  for (const auto& [kind, count] : report.records) records[std::to_string(kind)] = count;
  Json skipped = Json::object();
  for (const auto& [reason, count] : report.skipped) skipped[reason] = count;
  return {{"result", ResultOf(report)},
          {"files", std::move(files)},
          {"packets", std::move(packets)},
          {"records", std::move(records)},
          {"skipped", std::move(skipped)}};
}

void PrintRecordingReport(std::ostream& out, const RecordingReport& report, const std::string& log) {
  for (const RecordingFile& file : report.files)
    if (!file.refusal.empty()) out << GbkToUtf8(file.path) << ": refused, " << file.refusal << '\n';
  std::uint64_t records = 0;
  for (const auto& [kind, count] : report.records) records += count;
  if (report.is_written)
    out << log << ": " << records << " records\n";
  else
    out << log << ": not written, no record came of the files\n";
  for (const auto& [kind, count] : report.records) out << "    kind " << kind << ": " << count << '\n';
  for (const auto& [reason, count] : report.skipped) out << "  left out: " << reason << ": " << count << '\n';
}

int ExitCodeOf(const RecordingReport& report) {
  if (!report.is_written) return kExitFailed;
  return IsAnyRefused(report) ? kExitInPart : kExitDone;
}

}  // namespace loom
