#include "text/export/text_export_writer.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string_view>

#include "components/dt_time.h"
#include "components/note_kinds.h"
#include "components/project.h"
#include "platform/completes.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/number.h"
#include "platform/text_buffer.h"
#include "platform/ui/wait_cursor.h"

namespace loom {
namespace {

constexpr const char* kRecordTime = "RecordTime";
constexpr const char* kLongitude = "Longitude";
constexpr const char* kLatitude = "Latitude";
constexpr const char* kDistance = "Distance";
constexpr const char* kTimeStamp = "TimeStamp";
constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kBlank = " ";
constexpr std::string_view kInvalid = "-255";
constexpr int kDateAndTime = 127;  // of CDTTime::ToString
constexpr std::size_t kWrittenBlockBytes = 64 * 1024;

void InsertInFront(std::vector<CString>& names, const char* name) { names.insert(names.begin(), name); }

void InsertUnlessThere(std::vector<CString>& names, const char* name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) InsertInFront(names, name);
}

class StreamTextWriter {
 public:
  StreamTextWriter(const TextExportSettings& settings, IDataStream& stream, const std::vector<CString>& names)
      : settings_(settings), cursor_(stream.MakeRowCursor()), names_(names), file_(settings.file_name) {}

  void Write() {
    if (settings_.binned_data == 1)
      CurrentNotes().Add("merged and averaged data"_note, settings_.file_name, "all rows",
                         "the rows are written as they were recorded; there are no others");
    if (settings_.write_header == 1) AppendHeader();
    PrepareColumns();
    WriteRows();
    file_.Write(text_.view());
    file_.Commit();
  }

 private:
  // Columns that stand side by side and are written alike.
  struct Run {
    std::vector<std::uint32_t> columns;  // numbers of the cursor; one where there is a limit, and for the record time
    const ExportLimit* limit;            // null: none
    bool is_record_time;
  };

  void AppendHeader() {
    for (std::size_t at = 0; at < names_.size(); ++at) {
      if (at > 0) text_.Append(settings_.separator);
      text_.Append(names_[at]);
      if (settings_.write_units == 1) text_.Append(Format("(%s)", g_project->GetIEUnitByIEName(names_[at])));
    }
    text_.Append(kLineEnd);
  }

  void PrepareColumns() {
    std::vector<std::int32_t> ids;
    for (const CString& name : names_) {
      ids.push_back(g_project->GetIEID(name));
      if (ids.back() == kInvalidInt)
        CurrentNotes().Add("unknown information element"_note, settings_.file_name, "column '" + GbkToUtf8(name) + "'",
                           "the catalogue has no such name, its column stays blank");
      if (settings_.limits == nullptr) continue;
      const auto limit = settings_.limits->find(name);
      if (limit != settings_.limits->end()) limits_.insert_or_assign(ids.back(), limit->second);
    }
    for (const std::int32_t id : ids) AddColumn(id);
  }

  void AddColumn(std::int32_t ie_id) {
    const auto found = limits_.find(ie_id);
    const ExportLimit* const limit = found != limits_.end() ? &found->second : nullptr;
    const bool is_record_time = ie_id == kRecordTimeIe;
    const bool is_plain = limit == nullptr && !is_record_time;
    if (!is_plain || runs_.empty() || runs_.back().limit != nullptr || runs_.back().is_record_time)
      runs_.push_back({.columns = {}, .limit = limit, .is_record_time = is_record_time});
    runs_.back().columns.push_back(cursor_->AddColumn(ie_id));
  }

  void WriteRows() {
    cursor_->GoToFirstRow();
    for (bool last_is_written = false; !(cursor_->IsLastRow() && last_is_written); cursor_->Move(1)) {
      AppendRow();
      last_is_written = cursor_->IsLastRow();
      if (text_.size() < kWrittenBlockBytes) continue;
      file_.Write(text_.view());
      text_.Clear();
    }
  }

  void AppendRow() {
    for (const Run& run : runs_) {
      if (&run != runs_.data()) text_.Append(settings_.separator);
      if (run.is_record_time) {
        AppendRecordTime(run.limit);
      } else if (run.limit != nullptr) {
        AppendLimited(run.columns, *run.limit);
      } else {
        cursor_->AppendValues(run.columns, layout_, text_);
      }
    }
    text_.Append(kLineEnd);
  }

  static bool IsOutside(double value, const ExportLimit& limit) {
    return value < limit.minimum || value > limit.maximum;
  }

  void AppendLimited(std::span<const std::uint32_t> column, const ExportLimit& limit) {
    const std::size_t start = text_.size();
    cursor_->AppendValues(column, layout_, text_);
    const std::string_view cell = text_.view().substr(start);
    if (cell == kInvalid || !IsOutside(PrefixDouble(cell), limit)) return;
    text_.Truncate(start);
    text_.Append(kInvalid);
  }

  // What is invalid is written as a time all the same.
  void AppendRecordTime(const ExportLimit* limit) {
    const std::optional<double> time_s = cursor_->GetRecordTime();
    const double value = time_s.value_or(0);  // a blank counts as 0
    const bool is_invalid = !std::isfinite(value) || (limit != nullptr && IsOutside(value, *limit));
    if (!time_s && !is_invalid) return text_.Append(kBlank);
    text_.SetEnd(time_text_.Put(is_invalid ? kInvalidDouble : value, text_.Room(DateTimeText::kRoom)));
  }

  const TextExportSettings& settings_;
  std::unique_ptr<IRowCursor> cursor_;
  const std::vector<CString>& names_;
  AtomicFile file_;
  std::map<std::int32_t, ExportLimit> limits_;  // by IE id
  std::vector<Run> runs_;                       // of every row
  const RowLayout layout_{settings_.separator, kBlank, settings_.fill_gaps == 1};
  DateTimeText time_text_{kDateAndTime};
  TextBuffer text_;  // of the lines not yet in the file
};

}  // namespace

int WriteStreamAsText(TextExportSettings settings, IDataStream* stream, std::vector<CString>& parameters) {
  parameters.push_back(kDistance);
  parameters.push_back(kTimeStamp);
  const CWaitCursor wait;
  bool is_ended = false;
  const bool is_written = Completes([&] {
    StreamTextWriter writer(settings, *stream, parameters);
    InsertUnlessThere(parameters, kLatitude);
    InsertUnlessThere(parameters, kLongitude);
    InsertInFront(parameters, kRecordTime);
    try {
      writer.Write();
    } catch (const Interrupted&) {
      is_ended = true;
    }
  });
  if (is_ended) throw Interrupted();
  return is_written ? 1 : 0;
}

}  // namespace loom
