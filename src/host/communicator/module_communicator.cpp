#include "host/communicator/module_communicator.h"

#include <charconv>
#include <cmath>
#include <stdexcept>

#include "components/intermediate/header_blocks.h"
#include "components/project.h"
#include "host/streams/stream_store.h"

namespace loom {
namespace {

constexpr std::int32_t kIeLongitude = 2379;
constexpr std::int32_t kIeLatitude = 2380;

// The row itself when it lives in the stream's memory, else a copy there.
CMemDataRow* KeepRow(RowMap& rows, std::int32_t number, CMemDataRow* row) {
  if (!row->LivesIn(rows.get_allocator().resource())) return StoreRow(rows, number, *row);
  rows.emplace_hint(rows.end(), number, row);
  return row;
}

std::int32_t NextRowNumber(const RowMap& rows) { return rows.empty() ? 1 : rows.rbegin()->first + 1; }

// n of "NAME(n)", 0 without one.
std::int32_t NumberInName(const CString& device_name) {
  const int open = device_name.ReverseFind('(');
  if (open < 0 || device_name.Right(1) != ")") return 0;
  const CString digits = device_name.Mid(open + 1, device_name.GetLength() - open - 2);
  const char* const end = digits.c_str() + digits.GetLength();
  std::int32_t number = 0;
  const auto [stopped, error] = std::from_chars(digits.c_str(), end, number);
  return error == std::errc() && stopped == end ? number : 0;
}

void WidenBy(std::optional<uniFieldValue> value, ValueRange& range) {
  if (value && std::isfinite(value->float_value) && value->float_value != kInvalidFloat)
    range.Widen(static_cast<double>(value->float_value));
}

}  // namespace

ILogfile* ModuleCommunicator::MakeLogfile(const CString& path) {
  arrivals_.clear();
  log_has_bounds_ = false;
  if (store_.FindLogfile(path) != nullptr) return nullptr;
  ILogfile* const logfile = store_.MakeLogfile(path);
  logfile->SetImporting(1);
  return logfile;
}

IDataStream* ModuleCommunicator::MakeStream(const CString& path, const CString& name, std::int32_t kind) {
  return Expect(store_.MakeStream(name, kind), path);
}

IDataStream* ModuleCommunicator::MakeDualStream(const CString& path, const CString& name) {
  const ILogfile* const logfile = store_.FindLogfile(path);
  const bool is_indoor = logfile != nullptr && logfile->IsIndoor();
  return Expect(store_.MakeStream(name, is_indoor ? kStreamIndoorHandset : kStreamOutdoorHandset), path);
}

IDataStream* ModuleCommunicator::Expect(IDataStream* stream, const CString& path) {
  if (stream != nullptr) arrivals_[stream] = {.logfile = store_.FindLogfile(path)};
  return stream;
}

void ModuleCommunicator::TakeFileHeader(ILogfile* logfile, std::span<const std::byte> file_header,
                                        std::span<const std::byte>) {
  const std::optional<HostFileFields> fields = ReadFileHeaderBlock(file_header);
  if (!fields) return;
  logfile->SetVersion(fields->log_version);
  logfile->SetHandsetType(fields->model_code);
  logfile->SetOutdoor(fields->is_indoor ? 0 : 1);
  SetBounds(fields->bounds, *logfile);
  log_has_bounds_ = true;
}

void ModuleCommunicator::TakeStreamHeader(IDataStream* stream, std::span<const std::byte> block) {
  const StreamHeaderBlock header = ReadStreamHeaderBlock(block);
  stream->SetDeviceName(header.device_name);
  stream->SetProtocol(header.protocol);
  if (!header.host) {
    stream->SetDeviceNumber(NumberInName(header.device_name));
    stream->SetStreamClass(stream->GetStreamType() == kStreamScanner ? kStreamClassScanner : kStreamClassHandset);
    stream->SetFilterOperator("AND");
    return;
  }
  stream->SetDeviceNumber(header.host->device_number);
  stream->SetStreamClass(header.host->stream_class);
  stream->SetFilterOperator(header.host->filter_operator);
  Arrival& arrival = arrivals_[stream];
  arrival.block = header;
  HandOverRanges(arrival, *stream);
}

void ModuleCommunicator::AddRows(IDataStream* stream, std::span<CMemDataRow* const> rows) {
  RowMap& stored = *stream->GetRows();
  Arrival& arrival = arrivals_[stream];
  std::int32_t number = NextRowNumber(stored);
  for (CMemDataRow* row : rows) {
    KeepRow(stored, number++, row);
    if (!arrival.block) Measure(*row, arrival);
  }
  HandOverRanges(arrival, *stream);
  if (arrival.logfile == nullptr) return;
  arrival.logfile->SetRowTotal(arrival.logfile->GetRowTotal() + static_cast<std::int32_t>(rows.size()));
  if (!log_has_bounds_) WidenLogBounds(arrival);
}

// The rows of a dual-protocol stream count as those of its sources.
void ModuleCommunicator::AddDualRows(IDataStream* stream, std::span<const CMergeDataRow_2M> rows) {
  RowMap& stored = *stream->GetRows();
  MergedRowMap& merged = *stream->GetMergedRows();
  Arrival& arrival = arrivals_[stream];
  std::int32_t number = NextRowNumber(stored);
  for (const CMergeDataRow_2M& row : rows) {
    CMemDataRow* const kept = KeepRow(stored, number, row.row);
    merged.emplace_hint(merged.end(), number, CMergeDataRow_2M{kept, row.td_row_number, row.gsm_row_number});
    ++number;
    if (!arrival.block) Measure(*kept, arrival);
  }
  HandOverRanges(arrival, *stream);
}

void ModuleCommunicator::Measure(const CMemDataRow& row, Arrival& arrival) {
  const double time_s = row.GetRecordTime();
  if (std::isfinite(time_s) && time_s != kInvalidDouble) arrival.time_s.Widen(time_s);
  WidenBy(row.GetIEValueByID(kIeLongitude), arrival.bounds.longitude);
  WidenBy(row.GetIEValueByID(kIeLatitude), arrival.bounds.latitude);
}

void ModuleCommunicator::HandOverRanges(const Arrival& arrival, IDataStream& stream) {
  if (!arrival.block) return HandOverMeasured(arrival, stream);
  if (stream.GetRows()->size() != arrival.block->row_count) return;
  const HostStreamFields& told = *arrival.block->host;
  stream.SetPositionFlag(told.position_flag);
  stream.SetEarliestTime(told.earliest_time_s);
  stream.SetLatestTime(told.latest_time_s);
  SetBounds(told.bounds, stream);
}

void ModuleCommunicator::HandOverMeasured(const Arrival& arrival, IDataStream& stream) {
  stream.SetEarliestTime(arrival.time_s.minimum);
  stream.SetLatestTime(arrival.time_s.maximum);
  SetBounds(arrival.bounds, stream);
  stream.SetPositionFlag(arrival.bounds.longitude.minimum == kInvalidDouble ? 0 : 1);
}

void ModuleCommunicator::WidenLogBounds(const Arrival& arrival) const {
  ILogfile& logfile = *arrival.logfile;
  PositionBounds bounds = BoundsOf(logfile);
  bounds.longitude.Add(arrival.bounds.longitude);
  bounds.latitude.Add(arrival.bounds.latitude);
  SetBounds(bounds, logfile);
}

void ModuleCommunicator::LinkDualStream(IDataStream* dual, IDataStream* td_scdma, IDataStream* gsm) {
  auto* const stream = dynamic_cast<DataStream*>(dual);
  if (stream == nullptr) throw std::logic_error("a stream of another host cannot be linked");
  stream->SetSources({td_scdma, gsm});
}

}  // namespace loom
