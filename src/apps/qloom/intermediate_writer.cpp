#include "apps/qloom/intermediate_writer.h"

#include <unistd.h>

#include <filesystem>
#include <limits>
#include <map>
#include <vector>

#include "apps/qloom/intermediate_row_encoder.h"
#include "components/intermediate_layout.h"
#include "components/project.h"
#include "host/communicator/header_blocks.h"
#include "platform/byte_reader.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/notes.h"
#include "platform/path.h"
#include "platform/replace_file.h"

namespace loom {
namespace {

namespace layout = intermediate;

constexpr std::size_t kFlushBytes = 1 << 20;
constexpr std::uint64_t kMostFileBytes = std::numeric_limits<std::uint32_t>::max();
constexpr std::string_view kNameLeftOut = "name left out of the intermediate file";

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

// A file of known size that is filled from its start through the facade. It takes its path when it is complete.
class MappedOutput {
 public:
  MappedOutput(CIOManager& manager, const CString& path, std::uint32_t size_bytes)
      : manager_(manager),
        path_(path),
        temporary_(FolderOf(path) + Format(".qloom-%s", std::to_string(getpid()).c_str())),
        size_bytes_(size_bytes),
        mapping_(manager.CreateFileMap(temporary_, size_bytes)) {
    Check();
    buffer_.reserve(2 * kFlushBytes);
  }
  MappedOutput(const MappedOutput&) = delete;
  MappedOutput& operator=(const MappedOutput&) = delete;
  ~MappedOutput() {
    if (mapping_ == nullptr && is_complete_) return;
    manager_.CloseFileMap(mapping_);
    unlink(GbkPathToNative(temporary_).c_str());
  }

  ByteWriter& Bytes() {
    if (buffer_.size() >= kFlushBytes) Flush();
    return writer_;
  }
  std::uint64_t Position() const { return std::uint64_t{offset_} + buffer_.size(); }
  void PadTo(std::uint64_t position) { Bytes().Zeros(position - Position()); }

  void Complete() {
    Flush();
    if (offset_ != size_bytes_) throw FileError(path_, offset_, "a planned size does not hold");
    manager_.CloseFileMap(mapping_);
    mapping_ = nullptr;
    Check();
    ReplaceFile(temporary_, path_);
    is_complete_ = true;
  }

 private:
  void Flush() {
    if (buffer_.empty()) return;
    offset_ +=
        manager_.ExportMemoryToFile(mapping_, offset_, buffer_.data(), static_cast<std::uint32_t>(buffer_.size()));
    buffer_.clear();
    Check();
  }
  void Check() const {
    if (!manager_.FileMapFailure().empty()) throw FileError(path_, offset_, manager_.FileMapFailure());
  }

  CIOManager& manager_;
  CString path_;
  CString temporary_;
  std::uint32_t size_bytes_;
  void* mapping_;
  bool is_complete_ = false;
  std::uint32_t offset_ = 0;  // of what was handed to the facade
  std::vector<std::byte> buffer_;
  ByteWriter writer_{buffer_};
};

// The file that a path stands for, links followed; a folder or a device is refused.
CString TargetOf(const CString& path) {
  if (!FileExists(path)) return path;
  const InputFile refuses_what_is_no_file(path);
  return NativePathToGbk(std::filesystem::canonical(GbkPathToNative(path)).native());
}

class Writer {
 public:
  Writer(const IECatalogue& catalogue, const ILogfile& logfile, const CString& path) : logfile_(logfile), path_(path) {
    for (const auto& [id, name] : catalogue.Events()) event_ids_.emplace(name, id);
  }

  IntermediateSummary Write(CIOManager& manager) {
    const std::uint64_t size = Plan();
    if (size > kMostFileBytes) {
      throw FileError(path_, 0, std::to_string(size) + " bytes are more than an intermediate file can have (4 GB)");
    }
    MappedOutput out(manager, path_, static_cast<std::uint32_t>(size));
    WriteHeader(out);
    for (const PlannedStream& planned : streams_) WriteEntry(planned, out);
    IntermediateSummary summary{.streams = streams_.size(), .rows = 0, .bytes = static_cast<std::uint32_t>(size)};
    for (const PlannedStream& planned : streams_) {
      WriteRows(planned, out);
      summary.rows += planned.row_lengths.size();
    }
    out.Complete();
    return summary;
  }

 private:
  // Gives the file's size.
  std::uint64_t Plan() {
    for (IDataStream* stream : logfile_.GetStreams()) {
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
    for (const auto& [number, row] : *planned.stream->GetRows()) {
      CMergeDataRow_2M pair;
      if (const auto found = merged.find(number); found != merged.end()) pair = found->second;
      use(*row, encoder_.Encode(*row, planned.is_dual ? &pair : nullptr, tell));
    }
  }

  void WriteHeader(MappedOutput& out) {
    ByteWriter& bytes = out.Bytes();
    for (const std::uint8_t byte : layout::kMagic) bytes.U8(byte);
    WriteFileHeaderBlock({.log_version = logfile_.GetVersion(),
                          .handset_type = logfile_.GetHandsetType(),
                          .is_indoor = logfile_.IsIndoor(),
                          .bounds = BoundsOf(logfile_)},
                         bytes);
    out.PadTo(layout::kEntryOffsetsAt);
    for (const PlannedStream& planned : streams_) bytes.U32(static_cast<std::uint32_t>(planned.entry_at));
    out.PadTo(layout::kEntryCountAt);
    bytes.U16(static_cast<std::uint16_t>(streams_.size()));
    out.PadTo(layout::kHeaderBytes);
  }

  void WriteEntry(const PlannedStream& planned, MappedOutput& out) {
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

  void WriteRows(const PlannedStream& planned, MappedOutput& out) {
    out.PadTo(planned.base_at + layout::kBaseGapBytes);
    const auto tell = [this](std::string_view kind, const std::string& what) { Note(kind, what, at_); };
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

  template <class Source>
  static PositionBounds BoundsOf(const Source& source) {
    return {.longitude_maximum = source.GetLongitudeMaximum(),
            .longitude_minimum = source.GetLongitudeMinimum(),
            .latitude_maximum = source.GetLatitudeMaximum(),
            .latitude_minimum = source.GetLatitudeMinimum()};
  }

  void NoteName(const std::string& what, const CString& name) const {
    Note(kNameLeftOut, "the catalogue has no " + what + " \"" + GbkToUtf8(name) + "\"");
  }
  void Note(std::string_view kind, const std::string& what, std::uint64_t at = 0) const {
    CurrentNotes().Add(kind, path_, at, what);
  }

  const ILogfile& logfile_;
  CString path_;
  std::map<CString, std::int32_t> event_ids_;
  std::vector<PlannedStream> streams_;
  IntermediateRowEncoder encoder_;
  std::uint64_t at_ = 0;  // where the row that is being written begins
};

}  // namespace

IntermediateSummary WriteIntermediateFile(CIOManager& manager, const IECatalogue& catalogue, const ILogfile& logfile,
                                          const CString& path) {
  return Writer(catalogue, logfile, TargetOf(path)).Write(manager);
}

}  // namespace loom
