#include "text/text_export_writer.h"

#include <algorithm>
#include <exception>
#include <string>
#include <string_view>

#include "components/dt_time.h"
#include "components/project.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/notes.h"
#include "platform/number.h"
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
constexpr std::size_t kBlockBytes = 64 * 1024;

void InsertInFront(std::vector<CString>& names, const char* name) { names.insert(names.begin(), name); }

void InsertUnlessThere(std::vector<CString>& names, const char* name) {
  if (std::find(names.begin(), names.end(), name) == names.end()) InsertInFront(names, name);
}

class StreamTextWriter {
 public:
  StreamTextWriter(const TextExportSettings& settings, IDataStream& stream, const std::vector<CString>& names)
      : settings_(settings), cursor_(stream.MakeRowCursor()), names_(names), file_(settings.file_name) {}

  void Write() {
    if (settings_.write_header == 1) AppendHeader();
    PrepareColumns();
    WriteRows();
    file_.Write(text_);
    file_.Commit();
  }

 private:
  struct Column {
    std::int32_t ie_id;
    const ExportLimit* limit;  // null: none
  };

  void AppendHeader() {
    for (std::size_t at = 0; at < names_.size(); ++at) {
      if (at > 0) AppendSeparator();
      text_ += names_[at];
      if (settings_.write_units == 1) text_ += Format("(%s)", g_project->GetIEUnitByIEName(names_[at]));
    }
    text_ += kLineEnd;
  }

  void PrepareColumns() {
    for (const CString& name : names_) {
      const std::int32_t id = g_project->GetIEID(name);
      if (id == kInvalidInt)
        CurrentNotes().Add("information element unknown", settings_.file_name, "column '" + GbkToUtf8(name) + "'",
                           "the catalogue has no such name, its column stays blank");
      if (settings_.limits != nullptr) {
        const auto limit = settings_.limits->find(name);
        if (limit != settings_.limits->end()) limits_.insert_or_assign(id, limit->second);
      }
      columns_.push_back({id, nullptr});
    }
    for (Column& column : columns_) {
      const auto limit = limits_.find(column.ie_id);
      if (limit != limits_.end()) column.limit = &limit->second;
    }
  }

  void WriteRows() {
    cursor_->GoToFirstRow();
    for (bool last_is_written = false; !(cursor_->IsLastRow() && last_is_written); cursor_->Move(1)) {
      AppendRow();
      last_is_written = cursor_->IsLastRow();
      if (text_.size() < kBlockBytes) continue;
      file_.Write(text_);
      text_.clear();
    }
  }

  void AppendRow() {
    for (const Column& column : columns_) {
      if (&column != columns_.data()) AppendSeparator();
      const std::size_t start = text_.size();
      if (settings_.fill_gaps == 1)
        cursor_->AppendFilledValue(column.ie_id, text_);
      else
        cursor_->AppendValue(column.ie_id, text_);
      FinishCell(column, start);
    }
    text_ += kLineEnd;
  }

  void AppendSeparator() {
    if (settings_.separator.GetLength() == 1)
      text_ += settings_.separator[0];
    else
      text_ += settings_.separator;
  }

  void FinishCell(const Column& column, std::size_t start) {
    const auto cell = [&] { return std::string_view(text_).substr(start); };
    const auto replace = [&](std::string_view by) { text_.replace(start, std::string::npos, by); };
    if (text_.size() == start) text_ += kBlank[0];
    if (column.limit != nullptr && cell() != kInvalid) {
      const double value = PrefixDouble(cell());
      if (value < column.limit->minimum || value > column.limit->maximum) replace(kInvalid);
    }
    if (column.ie_id == kRecordTimeIe && cell() != kBlank)
      replace(CDTTime(PrefixDouble(cell())).ToString(kDateAndTime));
  }

  const TextExportSettings& settings_;
  std::unique_ptr<IRowCursor> cursor_;
  const std::vector<CString>& names_;
  AtomicFile file_;
  std::vector<Column> columns_;
  std::map<std::int32_t, ExportLimit> limits_;  // by IE id
  std::string text_;                            // of the lines not yet in the file
};

}  // namespace

int WriteStreamAsText(TextExportSettings settings, IDataStream* stream, std::vector<CString>& parameters) {
  parameters.push_back(kDistance);
  parameters.push_back(kTimeStamp);
  const CWaitCursor wait;
  try {
    StreamTextWriter writer(settings, *stream, parameters);
    InsertUnlessThere(parameters, kLatitude);
    InsertUnlessThere(parameters, kLongitude);
    InsertInFront(parameters, kRecordTime);
    writer.Write();
    return 1;
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
    return 0;
  }
}

}  // namespace loom
