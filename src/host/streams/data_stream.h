#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <memory_resource>
#include <vector>

#include "components/stream_manager.h"
#include "host/streams/bounded.h"
#include "platform/bulk_memory.h"

namespace loom {

// A stream with its rows in memory. The nodes of both row collections, the rows and all that rows hold come from the
// stream's own memory resource and go with it in one release: no row is destroyed one by one. Rows must therefore take
// all of their memory from that resource, as StoreRow makes them do.
class DataStream final : public Bounded<IDataStream> {
 public:
  DataStream(const CString& name, std::int32_t stream_type);
  DataStream(const DataStream&) = delete;
  DataStream& operator=(const DataStream&) = delete;

  CString GetName() const override { return name_; }
  void SetName(const CString& name) override { name_ = name; }
  std::int32_t GetStreamType() const override { return stream_type_; }
  CString GetFilterOperator() const override { return filter_operator_; }
  void SetFilterOperator(const CString& text) override { filter_operator_ = text; }
  void AddIEName(const CString& name) override { ie_names_.push_back(name); }
  std::list<CString> GetIENames() const override { return ie_names_; }
  void AddEventName(const CString& name) override { event_names_.push_back(name); }
  std::list<CString> GetEventNames() const override { return event_names_; }
  void AddL3Name(const CString& name) override { l3_names_.push_back(name); }
  std::list<CString> GetL3Names() const override { return l3_names_; }
  CString GetDeviceName() const override { return device_name_; }
  void SetDeviceName(const CString& name) override { device_name_ = name; }
  std::int32_t GetStreamClass() const override { return stream_class_; }
  void SetStreamClass(std::int32_t stream_class) override { stream_class_ = stream_class; }
  std::int32_t GetDeviceNumber() const override { return device_number_; }
  void SetDeviceNumber(std::int32_t number) override { device_number_ = number; }
  double GetEarliestTime() const override { return earliest_time_s_; }
  void SetEarliestTime(double time_s) override { earliest_time_s_ = time_s; }
  double GetLatestTime() const override { return latest_time_s_; }
  void SetLatestTime(double time_s) override { latest_time_s_ = time_s; }
  std::int32_t GetRowCount() const override { return row_count_; }
  void SetRowCount(std::int32_t count) override { row_count_ = count; }
  CString GetProtocol() const override { return protocol_; }
  void SetProtocol(const CString& text) override { protocol_ = text; }
  CStatResult* GetStatResult() override { return &statistics_; }
  RowMap* GetRows() override { return rows_; }
  MergedRowMap* GetMergedRows() override { return merged_rows_; }
  RowMap* GetKeyRows() override { return key_rows_; }
  void SetCompleted(std::int32_t completed) override { completed_ = completed; }
  bool IsCompleted() const override { return completed_ != 0; }
  void FinishRows() override;
  void FinishStream() override {}  // rows are stored exactly sized: nothing is left to give back
  void SetPositionFlag(std::int32_t flag) override { position_flag_ = flag; }
  std::int32_t GetPositionFlag() const override { return position_flag_; }
  std::unique_ptr<IRowCursor> MakeRowCursor() override;

  // The streams whose rows this one refers to; empty for a stream with rows of its own.
  void SetSources(std::vector<const IDataStream*> sources) { sources_ = std::move(sources); }
  const std::vector<const IDataStream*>& Sources() const { return sources_; }

 private:
  BulkMemory memory_;
  RowMap* rows_;               // in memory_, never destroyed
  MergedRowMap* merged_rows_;  // likewise
  RowMap* key_rows_;           // likewise
  CString name_;
  CString device_name_;
  CString protocol_;
  CString filter_operator_;
  std::list<CString> ie_names_;
  std::list<CString> event_names_;
  std::list<CString> l3_names_;
  std::vector<const IDataStream*> sources_;
  CStatResult statistics_;
  double earliest_time_s_ = kInvalidDouble;
  double latest_time_s_ = kInvalidDouble;
  std::int32_t stream_type_;
  std::int32_t stream_class_ = kStreamClassNone;
  std::int32_t device_number_ = 0;
  std::int32_t row_count_ = 0;
  std::int32_t position_flag_ = 0;
  std::int32_t completed_ = 0;
};

}  // namespace loom
