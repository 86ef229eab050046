#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "components/decoder.h"
#include "components/import_settings.h"
#include "components/log_store.h"
#include "components/progress_wnd.h"
#include "components/stream_info.h"
#include "conversion/td_record_converter.h"
#include "importers/importer.h"
#include "importers/skipped_records.h"

namespace loom {

// What a log is recorded as: it decides the title and type of the streams.
enum LogTestType : std::int32_t { kTestOutdoor = 1, kTestIndoor = 2 };

// Stream key -> device number -> context of the stream.
using StreamIndex = std::map<std::int32_t, std::map<std::int32_t, std::unique_ptr<struct_STREAMINFO>>>;
// Stream name -> stream, which belongs to the log file object.
using StreamMap = std::map<CString, IDataStream*>;

// Of a whole log.
struct LogTotals {
  std::int32_t rows = 0;
  PositionBounds bounds;
};

// One import of a log of the module's own format: what it needs, and its steps. Used by one import at a time; what
// belongs to a log is reset by BeginImport.
class CLogImporter : public CImporter {
 public:
  ~CLogImporter() override;

  virtual void SetImpIESetting(ImpIESettings settings);  // empty: every IE is imported
  virtual void ClearImpIESetting();
  virtual void ResetDeviceProtocols();
  // Takes over what the record carries into the newest structures of its stream.
  virtual void UpdateStateRecord(const CTestdataBase& record, StateRecord& state) = 0;
  // Hands every stream its totals and names, merges the streams of dual-mode handsets, gives the log its totals.
  virtual void MergeProtocolStreams(StreamIndex& index, StreamMap& streams, ILogfile* logfile) = 0;
  // Context of the record's stream, made on first sight; null when the record belongs to no stream.
  virtual struct_STREAMINFO* GetStreamContext(ILogfile* logfile, const CString& path, double day_offset_s,
                                              StreamIndex& index, StreamMap& streams, const CTestdataBase& record) = 0;
  virtual void FinishScannerStream(std::int32_t device_number, struct_STREAMINFO& context, StreamMap& streams,
                                   LogTotals& totals) = 0;
  virtual void FinishHandsetStream(std::int32_t device_number, struct_STREAMINFO& context, StreamMap& streams,
                                   LogTotals& totals) = 0;
  // Opens the log and makes its log file object; gives an ImportResult.
  virtual int BeginImport(const CString& path, ILogfile** logfile) = 0;

  void SetTestType(LogTestType test_type) { test_type_ = test_type; }
  // Records of the log imported last that became no row, by reason.
  std::map<std::string_view, std::uint64_t> SkippedCounts() const { return skipped_.Counts(); }

 protected:
  CLogImporter();

  std::unique_ptr<CTDRecordConverter> converter_;
  std::unique_ptr<IDecoder> decoder_;
  LogTestType test_type_ = kTestOutdoor;
  bool has_cell_table_ = false;
  ImpIESettings ie_settings_;
  std::map<std::int32_t, std::int32_t> device_protocols_;  // device number -> protocol its newest record asked for
  std::int32_t selection_switch_ = 0;                      // 1: only the IEs of the settings
  std::unique_ptr<CProgressWnd> progress_;                 // while an import runs
  std::unique_ptr<CLogFileManager> reader_;
  double day_offset_s_ = -1.0;  // local midnight of the log's day in seconds since 1970
  std::int32_t percent_ = 0;
  std::int32_t shown_percent_ = 0;
  SkippedRecords skipped_;
};

}  // namespace loom
