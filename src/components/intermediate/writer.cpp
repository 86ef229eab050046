#include "components/intermediate/writer.h"

#include <limits>
#include <map>
#include <vector>

#include "components/intermediate/header_blocks.h"
#include "components/intermediate/layout.h"
#include "components/intermediate/row_encoder.h"
#include "components/note_kinds.h"
#include "components/project.h"
#include "platform/byte_reader.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/interrupt.h"

namespace loom {
namespace {

namespace layout = intermediate;

constexpr std::uint64_t kMostFileBytes = std::numeric_limits<std::uint32_t>::max();
constexpr const NoteKind& kNameLeftOut = "name left out of the intermediate file"_note;

// One stream and where its parts stand in the file.
struct PlannedStream {
  IDataStream* stream = nullptr;
  bool is_dual = false;
  std::vector<std::uint32_t> ie_ids;
  std::vector<std::uint32_t> event_ids;
  std::vector<std::uint16_t> row_lengths;
  std::uint64_t data_bytes = 0;
  std::uint64_t entry_at = 0;
  std::uint64_t base_at = 0;

  std::uint64_t EntryBytes() const { return layout::kEntryBytes + 4 * (ie_ids.size() + event_ids.size()); }
  std::uint64_t IndexOffset() const { return (data_bytes + 7) / 8 * 8; }
  std::uint64_t AreaBytes() const {
    return layout::kBaseGapBytes + IndexOffset() + row_lengths.size() * layout::kIndexEntryBytes;
  }
};

// Collects what goes out into pieces of about a megabyte.
class Buffered {
 public:
  explicit Buffered(IntermediateOutput& output) : output_(output) { buffer_.reserve(2 * kFlushBytes); }
  Buffered(const Buffered&) = delete;
  Buffered& operator=(const Buffered&) = delete;

  ByteWriter& Bytes() {
    if (buffer_.size() >= kFlushBytes) Flush();
    return writer_;
  }
  std::uint64_t Position() const { return handed_over_ + buffer_.size(); }
  void PadTo(std::uint64_t position) { Bytes().Zeros(position - Position()); }
  void Flush() {
    output_.Append(buffer_);
    handed_over_ += buffer_.size();
    buffer_.clear();
  }

 private:
  static constexpr std::size_t kFlushBytes = 1 << 20;

  IntermediateOutput& output_;
  std::uint64_t handed_over_ = 0;
  std::vector<std::byte> buffer_;
  ByteWriter writer_{buffer_};
};

class Writer {
 public:
  Writer(const EventIds& event_ids, const ILogfile& logfile, const std::list<IDataStream*>& streams,
         const CString& path)
      : logfile_(logfile), chosen_(streams), path_(path), event_ids_(event_ids) {}

  IntermediateSummary Write(const IntermediateOutputMaker& make_output) {
    const std::uint64_t size = Plan();
    if (size > kMostFileBytes) {
      throw FileError(path_, 0, std::to_string(size) + " bytes are more than an intermediate file can have (4 GB)");
    }
    const std::unique_ptr<IntermediateOutput> output = make_output(static_cast<std::uint32_t>(size));
    Buffered out(*output);
    WriteHeader(out);
    for (const PlannedStream& planned : streams_) WriteEntry(planned, out);
    IntermediateSummary summary{.streams = streams_.size(), .rows = 0, .bytes = static_cast<std::uint32_t>(size)};
    for (const PlannedStream& planned : streams_) {
      WriteRows(planned, out);
      summary.rows += planned.row_lengths.size();
    }
    out.Flush();
    output->Complete();
    return summary;
  }

 private:
  // Gives the file's size.
  std::uint64_t Plan() {
    for (IDataStream* stream : chosen_) {
      if (streams_.size() == layout::kMostEntries) {
        Note(kNameLeftOut, "stream \"" + GbkToUtf8(stream->GetName()) + "\": a file has at most 22 streams");
      } else {
        streams_.push_back(PlanStream(*stream));
      }
    }
    std::uint64_t at = layout::kHeaderBytes;
    for (PlannedStream& planned : streams_) {
      planned.entry_at = at;
      at += planned.EntryBytes();
    }
    for (PlannedStream& planned : streams_) {
      at = (at + 7) / 8 * 8;
      planned.base_at = at;
      at += planned.AreaBytes();
    }
    return at;
  }

  PlannedStream PlanStream(IDataStream& stream) {
    PlannedStream planned;
    planned.stream = &stream;
    planned.is_dual = stream.GetProtocol() == layout::kDualProtocol;
    for (const CString& name : stream.GetIENames()) {
      const std::int32_t id = g_project->GetIEID(name);
      id >= 0 ? planned.ie_ids.push_back(static_cast<std::uint32_t>(id)) : NoteName("information element", name);
    }
    for (const CString& name : stream.GetEventNames()) {
      const auto event = event_ids_.find(name);
      event != event_ids_.end() ? planned.event_ids.push_back(static_cast<std::uint32_t>(event->second))
                                : NoteName("event", name);
    }
    planned.row_lengths.reserve(stream.GetRows()->size());
    ForEachRow(planned, {}, [&](const CMemDataRow&, std::span<const std::byte> bytes) {
      planned.row_lengths.push_back(static_cast<std::uint16_t>(bytes.size()));
      planned.data_bytes += bytes.size();
    });
    return planned;
  }

  // Calls use(row, its row data) in the order of row numbers.
  template <class Use>
  void ForEachRow(const PlannedStream& planned, const IntermediateRowEncoder::Teller& tell, Use use) {
    const MergedRowMap& merged = *planned.stream->GetMergedRows();
    std::uint64_t done = 0;
    for (const auto& [number, row] : *planned.stream->GetRows()) {
      CMergeDataRow_2M pair;
      if (const auto found = merged.find(number); found != merged.end()) pair = found->second;
      use(*row, encoder_.Encode(*row, planned.is_dual ? &pair : nullptr, tell));
      TellProgress(++done, planned.stream->GetRows()->size());
    }
  }

  void WriteHeader(Buffered& out) {
    ByteWriter& bytes = out.Bytes();
    for (const std::uint8_t byte : layout::kMagic) bytes.U8(byte);
    WriteFileHeaderBlock({.log_version = logfile_.GetVersion(),
                          .model_code = logfile_.GetHandsetType(),
                          .is_indoor = logfile_.IsIndoor(),
                          .bounds = BoundsOf(logfile_)},
                         bytes);
    out.PadTo(layout::kEntryOffsetsAt);
    for (const PlannedStream& planned : streams_) bytes.U32(static_cast<std::uint32_t>(planned.entry_at));
    out.PadTo(layout::kEntryCountAt);
    bytes.U16(static_cast<std::uint16_t>(streams_.size()));
    out.PadTo(layout::kHeaderBytes);
  }

  void WriteEntry(const PlannedStream& planned, Buffered& out) {
    IDataStream& stream = *planned.stream;
    ByteWriter& bytes = out.Bytes();
    bytes.U32(static_cast<std::uint32_t>(planned.base_at));
    bytes.U8(layout::kFlagImport);
    bytes.Zeros(layout::kStreamHeaderAt - layout::kFlagAt - 1);
    WriteStreamHeaderBlock({.data_length_bytes = static_cast<double>(planned.data_bytes),
                            .row_count = static_cast<std::uint32_t>(planned.row_lengths.size()),
                            .index_offset = static_cast<std::uint32_t>(planned.IndexOffset()),
                            .ie_count = static_cast<std::uint32_t>(planned.ie_ids.size()),
                            .event_count = static_cast<std::uint32_t>(planned.event_ids.size()),
                            .stream_kind = stream.GetStreamType(),
                            .device_name = stream.GetDeviceName(),
                            .protocol = stream.GetProtocol(),
                            .host = HostStreamFields{.earliest_time_s = stream.GetEarliestTime(),
                                                     .latest_time_s = stream.GetLatestTime(),
                                                     .bounds = BoundsOf(stream),
                                                     .device_number = stream.GetDeviceNumber(),
                                                     .stream_class = stream.GetStreamClass(),
                                                     .position_flag = stream.GetPositionFlag(),
                                                     .filter_operator = stream.GetFilterOperator()}},
                           bytes);
    for (const std::uint32_t id : planned.ie_ids) bytes.U32(id);
    for (const std::uint32_t id : planned.event_ids) bytes.U32(id);
  }

  void WriteRows(const PlannedStream& planned, Buffered& out) {
    out.PadTo(planned.base_at + layout::kBaseGapBytes);
    const auto tell = [this](const NoteKind& kind, const std::string& what) { Note(kind, what, at_); };
    at_ = out.Position();
    ForEachRow(planned, tell, [&](const CMemDataRow&, std::span<const std::byte> row_data) {
      out.Bytes().Bytes(row_data);
      at_ += row_data.size();
    });
    out.PadTo(planned.base_at + layout::kBaseGapBytes + planned.IndexOffset());
    std::uint64_t data_offset = 0;
    auto length = planned.row_lengths.begin();
    for (const auto& [number, row] : *planned.stream->GetRows()) {
      ByteWriter& bytes = out.Bytes();
      bytes.F64(row->GetRecordTime());
      bytes.I32(row->GetSynFieldValue());
      bytes.U32(static_cast<std::uint32_t>(data_offset));
      bytes.U16(*length);
      bytes.Zeros(layout::kIndexEntryUnusedBytes);
      data_offset += *length++;
    }
    const bool is_last = &planned == &streams_.back();
    if (!is_last) out.PadTo((out.Position() + 7) / 8 * 8);
  }

  void NoteName(const std::string& what, const CString& name) const {
    Note(kNameLeftOut, "the catalogue has no " + what + " \"" + GbkToUtf8(name) + "\"");
  }
  void Note(const NoteKind& kind, const std::string& what, std::uint64_t at = 0) const {
    CurrentNotes().Add(kind, path_, at, what);
  }

  const ILogfile& logfile_;
  const std::list<IDataStream*>& chosen_;
  CString path_;
  const EventIds& event_ids_;
  std::vector<PlannedStream> streams_;
  IntermediateRowEncoder encoder_;
  std::uint64_t at_ = 0;  // where the row that is being written begins
};

}  // namespace

IntermediateSummary WriteIntermediateFile(const ILogfile& logfile, const std::list<IDataStream*>& streams,
                                          const CString& path, const EventIds& event_ids,
                                          const IntermediateOutputMaker& make_output) {
  return Writer(event_ids, logfile, streams, path).Write(make_output);
}

}  // namespace loom
