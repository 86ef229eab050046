#pragma once

#include "importers/log_importer.h"
#include "importers/record_pool.h"

namespace loom {

struct RecordRoute;

// The log that is being imported: the contexts live as long as the import, the streams belong to the log file object.
struct LogImport {
  CString path;
  ILogfile* logfile = nullptr;
  std::int32_t log_version = 0;
  StreamIndex index;
  StreamMap streams;
  RecordPool pool;
};

// Importer type 1: drive tests outdoors. Reads the log record by record, each into a row of its device's stream.
class COutdoorLogImporter : public CLogImporter {
 public:
  COutdoorLogImporter();

  // Gives an ImportResult; the log file object is null unless it is 1. What the work throws passes through, and nothing
  // of the log stays behind then.
  int Import(const CString& path, ILogfile** logfile) override;
  void UpdateStateRecord(const CTestdataBase& record, StateRecord& state) override;
  void MergeProtocolStreams(StreamIndex& index, StreamMap& streams, ILogfile* logfile) override;
  struct_STREAMINFO* GetStreamContext(ILogfile* logfile, const CString& path, double day_offset_s, StreamIndex& index,
                                      StreamMap& streams, const CTestdataBase& record) override;
  void FinishScannerStream(std::int32_t device_number, struct_STREAMINFO& context, StreamMap& streams,
                           LogTotals& totals) override;
  void FinishHandsetStream(std::int32_t device_number, struct_STREAMINFO& context, StreamMap& streams,
                           LogTotals& totals) override;
  int BeginImport(const CString& path, ILogfile** logfile) override;

 private:
  int ImportOpenedLog(LogImport& log);
  void EndImport();
  void ShowProgress(const CString& file_name);
  void PrepareConverter();
  bool ReadRecord(CTestdataBase& record, int& result);
  void ShowPercent();

  void Dispatch(LogImport& log, CTestdataBase& record);
  void ConvertRecord(LogImport& log, CTestdataBase& record, const RecordRoute& route);
  void ConvertHandset(LogImport& log, CTestdataBase& record, const RecordRoute& route);
  void ConvertFileMark(LogImport& log, CTestdataBase& record, const RecordRoute& route);
  bool Decode(const LogImport& log, CTestdataBase& record);
  struct_STREAMINFO* ContextOf(LogImport& log, const CTestdataBase& record);
  void StoreFurtherSamples(const CTestdataBase& record, const CMemDataRow& first_row, struct_STREAMINFO& context);
  bool BroadcastEvent(LogImport& log, const CTestdataBase& record);
  void Broadcast(LogImport& log, const CTestdataBase& record, CMemDataRow& row);
  void Skip(SkipReason reason, const CTestdataBase& record);
  static const RecordRoute kRoutes[];

  std::int32_t ResolveModel(ILogfile& logfile, const CTestdataBase& record);
  struct_STREAMINFO* JoinedContext(StreamIndex& index, std::int32_t device_number, double day_offset_s);
  CString LogTitle(const CString& path) const;
  CString FreeStreamName(const CString& name, const CString& path, const StreamMap& streams) const;
  void NoteLeftOut(const CTestdataBase& record);

  void MergeDevice(const std::vector<struct_STREAMINFO*>& contexts, StreamMap& streams, ILogfile& logfile);
};

}  // namespace loom
