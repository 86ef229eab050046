#pragma once

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <vector>

#include "components/mem_row.h"
#include "components/row_cursor.h"
#include "platform/cstring.h"

namespace loom {

// A run of rows in which one cell was the strongest.
struct STRUCT_SCANNERSCELLSTAT {
  std::int32_t first_row = 0;
  std::int32_t last_row = 0;
  CString cell_key;  // empty before the first run
  std::int32_t row_count = 0;
};

// Statistics of a scanner stream.
class CStatResult {
 public:
  void SetScannerSCellStatResult(std::vector<STRUCT_SCANNERSCELLSTAT> runs) { pccpch_runs_ = std::move(runs); }
  void SetScannerSCellDwpchResult(std::vector<STRUCT_SCANNERSCELLSTAT> runs) { dwpch_runs_ = std::move(runs); }
  const std::vector<STRUCT_SCANNERSCELLSTAT>& PccpchRuns() const { return pccpch_runs_; }
  const std::vector<STRUCT_SCANNERSCELLSTAT>& DwpchRuns() const { return dwpch_runs_; }

 private:
  std::vector<STRUCT_SCANNERSCELLSTAT> pccpch_runs_;
  std::vector<STRUCT_SCANNERSCELLSTAT> dwpch_runs_;
};

// Stream types as the stream manager knows them.
enum StreamTypeEnum : std::int32_t {
  kStreamOutdoorHandset = 1,
  kStreamIndoorHandset = 2,
  kStreamUplink = 6,
  kStreamScanner = 14,
};
enum StreamClassEnum : std::int32_t { kStreamClassNone = 0, kStreamClassHandset = 1, kStreamClassScanner = 2 };

// One stream of rows of one device and protocol. Numbers are positions in the interface; times are seconds since 1970,
// coordinates degrees, -255 where unknown.
class IDataStream {
 public:
  virtual ~IDataStream() = default;
  virtual CString GetName() const = 0;                                       // 1
  virtual void SetName(const CString& name) = 0;                             // 2
  virtual std::int32_t GetStreamType() const = 0;                            // 7
  virtual CString GetFilterOperator() const = 0;                             // 21
  virtual void SetFilterOperator(const CString& text) = 0;                   // 22
  virtual void AddIEName(const CString& name) = 0;                           // 25
  virtual std::list<CString> GetIENames() const = 0;                         // 26, in the order handed over
  virtual void AddEventName(const CString& name) = 0;                        // 27
  virtual std::list<CString> GetEventNames() const = 0;                      // 28
  virtual void AddL3Name(const CString& name) = 0;                           // 29
  virtual std::list<CString> GetL3Names() const = 0;                         // 30
  virtual CString GetDeviceName() const = 0;                                 // 31
  virtual void SetDeviceName(const CString& name) = 0;                       // 32
  virtual std::int32_t GetStreamClass() const = 0;                           // 33
  virtual void SetStreamClass(std::int32_t stream_class) = 0;                // 34
  virtual std::int32_t GetDeviceNumber() const = 0;                          // 35
  virtual void SetDeviceNumber(std::int32_t number) = 0;                     // 36
  virtual double GetEarliestTime() const = 0;                                // 37
  virtual void SetEarliestTime(double time_s) = 0;                           // 38
  virtual double GetLatestTime() const = 0;                                  // 39
  virtual void SetLatestTime(double time_s) = 0;                             // 40
  virtual double GetLongitudeMaximum() const = 0;                            // 41
  virtual void SetLongitudeMaximum(double degrees) = 0;                      // 42
  virtual double GetLongitudeMinimum() const = 0;                            // 43
  virtual void SetLongitudeMinimum(double degrees) = 0;                      // 44
  virtual double GetLatitudeMaximum() const = 0;                             // 45
  virtual void SetLatitudeMaximum(double degrees) = 0;                       // 46
  virtual double GetLatitudeMinimum() const = 0;                             // 47
  virtual void SetLatitudeMinimum(double degrees) = 0;                       // 48
  virtual std::int32_t GetRowCount() const = 0;                              // 49
  virtual void SetRowCount(std::int32_t count) = 0;                          // 50
  virtual CString GetProtocol() const = 0;                                   // 51
  virtual void SetProtocol(const CString& text) = 0;                         // 52
  virtual CStatResult* GetStatResult() = 0;                                  // 54
  virtual RowMap* GetRows() = 0;                                             // 58
  virtual MergedRowMap* GetMergedRows() = 0;                                 // 59, empty but for merged streams
  // 59 too, of a stream that came from a text file: copies of its first row and of every 500th, by their numbers.
  virtual RowMap* GetKeyRows() = 0;
  virtual void SetCompleted(std::int32_t completed) = 0;  // 1: every row of its file is there
  virtual bool IsCompleted() const = 0;
  // 62, 63. Finishing calls, made once all rows are stored: the first freezes the rows' totals, the second gives
  // working memory back.
  virtual void FinishRows() = 0;
  virtual void FinishStream() = 0;
  virtual void SetPositionFlag(std::int32_t flag) = 0;                       // 70
  virtual std::int32_t GetPositionFlag() const = 0;                          // 71
  // A cursor on the first row.
  virtual std::unique_ptr<IRowCursor> MakeRowCursor() = 0;
};

// One imported log with its streams, which it does not own.
class ILogfile {
 public:
  virtual ~ILogfile() = default;
  virtual CString GetName() const = 0;                       // 1, the full path it was made for
  virtual std::int32_t GetVersion() const = 0;               // 4
  virtual void SetVersion(std::int32_t version) = 0;         // 5
  virtual void SetImporting(std::int32_t flag) = 0;          // 7, with 1 right after a log's creation, 6 for a text file
  virtual double GetLongitudeMaximum() const = 0;            // 8
  virtual void SetLongitudeMaximum(double degrees) = 0;      // 9
  virtual double GetLongitudeMinimum() const = 0;            // 10
  virtual void SetLongitudeMinimum(double degrees) = 0;      // 11
  virtual double GetLatitudeMaximum() const = 0;             // 12
  virtual void SetLatitudeMaximum(double degrees) = 0;       // 13
  virtual double GetLatitudeMinimum() const = 0;             // 14
  virtual void SetLatitudeMinimum(double degrees) = 0;       // 15
  virtual std::int32_t GetRowTotal() const = 0;              // 16
  virtual void SetRowTotal(std::int32_t rows) = 0;           // 17
  virtual void AddStream(IDataStream* stream) = 0;           // 18
  virtual std::list<IDataStream*> GetStreams() const = 0;    // 20, in the order added
  virtual bool IsIndoor() const = 0;                         // 23
  virtual void SetOutdoor(std::int32_t outdoor) = 0;         // 24, 0 marks an indoor log
  virtual void SetHandsetType(std::int32_t model_code) = 0;  // 29
  virtual std::int32_t GetHandsetType() const = 0;           // 30, 0 until known
};

// Owns the log file objects and streams of the open project.
class IStreamManager {
 public:
  virtual ~IStreamManager() = default;
  // 1. A new empty stream; null when the stream type is unknown.
  virtual IDataStream* MakeStream(const CString& name, std::int32_t stream_type) = 0;
  // 4. Drops the log file object made for the path with all its streams and rows.
  virtual void DropLogfile(const CString& path) = 0;
  // 12. Makes the log file object for the path; it must not exist yet.
  virtual ILogfile* MakeLogfile(const CString& path) = 0;
  // 13. The log file object already made for the path, or null.
  virtual ILogfile* FindLogfile(const CString& path) = 0;
  // 16. Fills the map with the names of the log files held.
  virtual void GetLogfileNames(std::map<CString, ILogfile*>& names) = 0;
  // One stream made of two in time order, protocol "DOUBLEPROTOCOL", row count, times and bounds set; null when
  // either is missing.
  virtual IDataStream* MergeTwoProtocolStream_MsgEvent(IDataStream* td_stream, IDataStream* gsm_stream) = 0;
};

class CStreamManagerCreator {
 public:
  static IStreamManager* CreateStreamManager();  // the one manager, owned by its library
};

}  // namespace loom
