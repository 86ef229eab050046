#include "apps/qloom/log_report.h"

#include <algorithm>
#include <iomanip>
#include <ostream>
#include <sstream>

#include "components/dt_time.h"
#include "components/log_store.h"
#include "manager/log_row_counts.h"
#include "platform/encoding.h"
#include "platform/path.h"
#include "settings/handset_type_dialog.h"

namespace loom {
namespace {

const char* ResultText(int result) {
  switch (result) {
    case kImportDone:
      return "imported";
    case kImportCancelled:
      return "cancelled";
    case kImportAlreadyPresent:
      return "already in the project";
    case kNotAttempted:
      return "not attempted";
    default:
      return "failed or refused";
  }
}

std::string RangeText(double low, double high, int digits) {
  if (low == kInvalidDouble) return "-";
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << low << ".." << high;
  return text.str();
}

std::string TimeText(double time_s) {
  return time_s == kInvalidDouble ? "-" : GbkToUtf8(CDTTime(time_s).ToString(127));
}

void PrintStream(std::ostream& out, IDataStream& stream) {
  out << "  " << GbkNameToUtf8(stream.GetName()) << '\n'
      << "    " << stream.GetRowCount() << " rows, " << GbkToUtf8(stream.GetProtocol()) << ", "
      << TimeText(stream.GetEarliestTime()) << " to " << TimeText(stream.GetLatestTime()) << '\n'
      << "    longitude " << RangeText(stream.GetLongitudeMinimum(), stream.GetLongitudeMaximum(), 6) << ", latitude "
      << RangeText(stream.GetLatitudeMinimum(), stream.GetLatitudeMaximum(), 6) << '\n';
}

}  // namespace

std::vector<std::string> HandsetNames() {
  std::vector<std::string> names;
  for (const HandsetChoice& choice : kHandsetChoices) names.emplace_back(choice.name);
  return names;
}

const std::map<std::string, ImporterTypeEnum>& LogNodes() {
  static const std::map<std::string, ImporterTypeEnum> nodes{
      {"outdoor", kImporterOutdoorLog}, {"indoor", kImporterIndoorLog}, {"cmcc", kImporterChinaMobileLog}};
  return nodes;
}

int BatchResultOf(const Json& outcomes) {
  const auto done = std::count_if(outcomes.begin(), outcomes.end(),
                                  [](const Json& outcome) { return outcome["result"] == kImportDone; });
  if (static_cast<std::size_t>(done) == outcomes.size()) return kBatchDone;
  return done == 0 ? kBatchNothing : kBatchInPart;
}

LogReport::LogReport(Session& session) : session_(session) {
  session_.manager().SetLogListener(
      [this](const LogOutcome& outcome) { (outcome.type == kImporterText ? texts_ : logs_).push_back(outcome); });
}

LogReport::~LogReport() { session_.manager().SetLogListener({}); }

Json LogReport::LogJson(const LogOutcome& log) const {
  Json json{{"path", JsonText(log.path)}, {"result", log.result}};
  json["name"] = JsonText(TitleOf(log.path));
  json["type"] = static_cast<int>(log.type);
  json["version"] = log.version;
  json["test_type"] = log.test_type;
  if (log.logfile != nullptr) {
    ILogfile& file = *log.logfile;
    json["handset_type"] = file.GetHandsetType();
    json["indoor"] = file.IsIndoor();
    const LogRowCounts counts = CountRows(file);
    json["rows"] = counts.rows;
    json["merged_rows"] = counts.merged_rows;
    json["bounds"] = {{"longitude", {JsonNumber(file.GetLongitudeMinimum()), JsonNumber(file.GetLongitudeMaximum())}},
                      {"latitude", {JsonNumber(file.GetLatitudeMinimum()), JsonNumber(file.GetLatitudeMaximum())}}};
  }
  json["skipped"] = Json::object();
  for (const auto& [reason, count] : log.skipped) json["skipped"][std::string(reason)] = count;
  json["streams"] = Json::array();
  if (log.logfile != nullptr) {
    for (IDataStream* stream : log.logfile->GetStreams()) json["streams"].push_back(StreamJson(*stream));
  }
  return json;
}

Json LogReport::ToJson(int result) const {
  Json logs = Json::array();
  for (const LogOutcome& log : Outcomes()) logs.push_back(LogJson(log));
  return {{"result", result}, {"logs", std::move(logs)}};
}

// In the order in which the files were named, then those that nobody named.
std::vector<LogOutcome> LogReport::Outcomes() const {
  std::vector<LogOutcome> heard = logs_;
  std::vector<LogOutcome> outcomes;
  for (const CString& path : named_) {
    const auto found = std::ranges::find(heard, path, &LogOutcome::path);
    if (found == heard.end()) {
      outcomes.push_back({.path = path, .result = kNotAttempted});
    } else {
      outcomes.push_back(*found);
      heard.erase(found);
    }
  }
  outcomes.insert(outcomes.end(), heard.begin(), heard.end());
  return outcomes;
}

template <class Visit>
void LogReport::ForEach(Visit visit) const {
  for (const LogOutcome& outcome : Outcomes()) visit(outcome);
  for (const LogOutcome& outcome : texts_) visit(outcome);
}

void LogReport::PrintHuman(std::ostream& out) const {
  ForEach([&](const LogOutcome& log) {
    out << GbkPathToNative(log.path) << ": " << ResultText(log.result);
    if (log.logfile != nullptr) {
      const LogRowCounts counts = CountRows(*log.logfile);
      out << ", " << counts.rows << " rows in " << counts.streams << " streams";
      if (counts.merged_streams > 0) {
        out << ", " << counts.merged_rows << " merged rows in " << counts.merged_streams << " merged streams";
      }
    }
    out << '\n';
    if (log.logfile == nullptr) return;
    for (IDataStream* stream : log.logfile->GetStreams()) PrintStream(out, *stream);
  });
}

int LogReport::ExitCodeOf(int result) const {
  std::size_t files = 0;
  std::size_t imported = 0;
  bool is_cancelled = false;
  ForEach([&](const LogOutcome& log) {
    ++files;
    if (log.result == kImportDone) ++imported;
    is_cancelled |= log.result == kImportCancelled;
  });
  if (result == kImportDone && imported == files) return kExitDone;
  if (result == kBatchInPart || imported > 0) return kExitInPart;
  return is_cancelled ? kExitCancelled : kExitFailed;
}

template <class Visit>
void LogReport::ForEachStream(Visit visit) const {
  ForEach([&](const LogOutcome& log) {
    if (log.logfile == nullptr) return;
    for (IDataStream* stream : log.logfile->GetStreams()) visit(stream);
  });
}

IDataStream* LogReport::FindStream(const CString& name) const {
  IDataStream* found = nullptr;
  ForEachStream([&](IDataStream* stream) {
    if (found == nullptr && stream->GetName() == name) found = stream;
  });
  return found;
}

std::vector<IDataStream*> LogReport::Streams() const {
  std::vector<IDataStream*> streams;
  ForEachStream([&](IDataStream* stream) { streams.push_back(stream); });
  return streams;
}

std::vector<std::string> LogReport::StreamNames() const {
  std::vector<std::string> names;
  ForEachStream([&](IDataStream* stream) { names.push_back(GbkNameToUtf8(stream->GetName())); });
  return names;
}

IDataStream* LogReport::TextStream(const CString& path) const {
  for (const LogOutcome& text : texts_) {
    if (text.path == path && text.logfile != nullptr) return text.logfile->GetStreams().front();
  }
  return nullptr;
}

}  // namespace loom
