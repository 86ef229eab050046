#include "importers/intermediate_file_importer.h"

#include <algorithm>
#include <limits>
#include <memory_resource>
#include <new>
#include <optional>
#include <string>

#include "components/intermediate/row_decoder.h"
#include "components/note_kinds.h"
#include "components/progress_wnd.h"
#include "components/project.h"
#include "platform/file_map.h"
#include "platform/path.h"
#include "platform/ui/message_box.h"

namespace loom {
namespace {

namespace layout = intermediate;

constexpr int kSourceExtensionLength = 4;  // ".log"
constexpr const NoteKind& kStreamEndsEarly = "stream of an intermediate file ends early"_note;
constexpr const NoteKind& kEntrySkipped = "stream entry skipped"_note;
constexpr const NoteKind& kIdNotHandedOver = "id of a stream not handed over"_note;

// Opened for reading and writing; an empty file cannot be mapped. None with a note.
std::optional<IntermediateFile> OpenFile(const CString& path) {
  try {
    MakeMappable(path);
    std::optional<IntermediateFile> file(path);
    if (file->Size() > 0) return file;
    CurrentNotes().Add("not imported"_note, path, std::uint64_t{0}, "the file is empty");
  } catch (const FileError& error) {
    CurrentNotes().Add("not imported"_note, path, error.position_bytes(), error.reason());
  }
  return std::nullopt;
}

// Runs work on the file; what is wrong with the file becomes a note and ends the work.
template <class Work>
bool ReadsOrNotes(const IntermediateFile& file, const NoteKind& kind, Work work) {
  try {
    work();
    return true;
  } catch (const FormatError& error) {
    CurrentNotes().Add(kind, file.path(), error.position_bytes(), error.reason());
  } catch (const FileError& error) {
    CurrentNotes().Add(kind, file.path(), error.position_bytes(), error.reason());
  }
  return false;
}

CString StreamName(const CString& path, const CString& device_name) {
  const CString file_name = NameOf(path);
  return file_name.Left(file_name.GetLength() - kSourceExtensionLength) + '_' + device_name;
}

void NoteName(const IntermediateFile& file, std::uint64_t position, const layout::Name& name) {
  if (!name.is_terminated) {
    CurrentNotes().Add("name without terminator"_note, file.path(), position, "all of its field was taken");
  }
  if (!name.is_exact) {
    CurrentNotes().Add("name changed"_note, file.path(), position, "'?' stands for what the code page lacks");
  }
}

// Gives the name of each id to add(name); an id without a name has none to give.
template <class NameOfId, class Add>
void HandOverNames(const IntermediateFile& file, std::uint64_t position, std::span<const std::uint32_t> ids,
                   NameOfId name_of, Add add) {
  for (const std::uint32_t id : ids) {
    const CString name = id <= INT32_MAX ? name_of(static_cast<std::int32_t>(id)) : CString();
    if (name.IsEmpty()) {
      CurrentNotes().Add(kIdNotHandedOver, file.path(), position, "no name is known for " + std::to_string(id));
    } else {
      add(name);
    }
    position += 4;
  }
}

void ReadIdLists(const IntermediateFile& file, const IntermediateEntry& entry, IDataStream& stream) {
  std::uint64_t position = entry.position + layout::kEntryBytes;
  for (const std::uint32_t count : {entry.ie_count, entry.skip_count, entry.event_count}) {
    if (count <= static_cast<std::uint32_t>(layout::kHighestIeId)) continue;
    throw FormatError(position, std::to_string(count) + " ids are more than there can be");
  }
  const std::uint64_t events_at = position + 4 * (std::uint64_t{entry.ie_count} + entry.skip_count);
  file.Require(position, events_at - position + 4 * std::uint64_t{entry.event_count}, "the id lists");
  std::vector<std::uint32_t> ids;
  file.ReadIds(position, entry.ie_count, ids);
  HandOverNames(
      file, position, ids, [](std::int32_t id) { return g_project->GetIEName(id); },
      [&](const CString& name) { stream.AddIEName(name); });
  ids.clear();
  file.ReadIds(events_at, entry.event_count, ids);
  HandOverNames(
      file, events_at, ids, [](std::int32_t id) { return g_project->GetEventName(id); },
      [&](const CString& name) { stream.AddEventName(name); });
}

// Reads rows of one stream. A row is built in a buffer and moved, exactly sized, into the memory of its stream, where
// the host keeps it.
class RowReader {
 public:
  RowReader(const IntermediateFile& file, const IntermediateEntry& entry, IDataStream& stream)
      : file_(file),
        entry_(entry),
        window_(file, entry),
        fields_(file.path()),
        memory_(stream.GetRows()->get_allocator().resource()) {}

  CMergeDataRow_2M Read(const RowIndexEntry& index) {
    const bool follows = window_.IsOpen();
    ByteReader data = window_.Take(index);
    if (follows && data.Position() != entry_.data_at + index.data_offset) NoteOffset(data.Position(), index);
    CMergeDataRow_2M merged;
    if (entry_.IsDual()) {
      merged.td_row_number = data.U32("row number of the TD-SCDMA stream");
      merged.gsm_row_number = data.U32("row number of the GSM stream");
    }
    scratch_.Release();
    scratch_.SetRecordTime(index.time_s);
    scratch_.SetSynFieldValue(index.number);
    fields_.Read(data, scratch_);
    merged.row = new (memory_->allocate(sizeof(CMemDataRow), alignof(CMemDataRow))) CMemDataRow(scratch_, memory_);
    return merged;
  }
  void CloseWindow() { window_.Close(); }

 private:
  void NoteOffset(std::uint64_t position, const RowIndexEntry& index) const {
    if (index.length_bytes == 0) return;
    CurrentNotes().Add(
        "row of an intermediate file not where its index says"_note, file_.path(), position,
        "read behind the row before it; the index says byte " + std::to_string(entry_.data_at + index.data_offset));
  }

  const IntermediateFile& file_;
  const IntermediateEntry& entry_;
  RowDataWindow window_;
  RowFieldReader fields_;
  std::pmr::memory_resource* memory_;
  CMemDataRow scratch_;
};

// Shows how far the rows are. There is no cancelling.
class RowProgress {
 public:
  RowProgress(const CString& stream_name, std::uint32_t row_count) : window_(0) {
    constexpr std::uint32_t kHighest = std::numeric_limits<int>::max();
    window_.GoModal("导入数据流文件进度"_gbk, 0);
    window_.SetText(Format("导入数据流：%s"_gbk, stream_name));
    window_.SetRange(0, static_cast<int>(std::min(row_count, kHighest)), 1);
  }
  void Show(std::int32_t row_number) {
    window_.SetPos(row_number);
    window_.PeekAndPump(1);
  }

 private:
  CProgressWnd window_;
};

}  // namespace

int CIntermediateFileImporter::Import(const CString& path, ILogfile** logfile) {
  if (logfile) *logfile = nullptr;
  const std::optional<IntermediateFile> file = OpenFile(path);
  if (!file) return kImportDone;
  if (!IsAccepted(*file) || !communicator_) return kImportFailed;
  try {
    ILogfile* const made = ImportStreams(*file);
    if (!made) return kImportFailed;
    if (logfile) *logfile = made;
    return kImportDone;
  } catch (...) {
    stream_manager_->DropLogfile(path);
    throw;
  }
}

bool CIntermediateFileImporter::IsAccepted(const IntermediateFile& file) {
  std::optional<IntermediateHeader> header;
  ReadsOrNotes(file, "no intermediate file"_note, [&] { header = file.ReadHeader(); });
  if (!header || !header->HasMagic()) {
    ShowMessageBox("不是日志中间文件!"_gbk, MessageIcon::kWarning);
    return false;
  }
  file_version_ = static_cast<std::int32_t>(header->Version());
  if (header->Version() == layout::kFormatVersion) return true;
  ShowMessageBox("日志中间文件版本不支持!"_gbk, MessageIcon::kWarning);
  return false;
}

ILogfile* CIntermediateFileImporter::ImportStreams(const IntermediateFile& file) {
  const IntermediateHeader header = file.ReadHeader();
  ILogfile* const logfile = communicator_->MakeLogfile(file.path());
  if (!logfile) return nullptr;
  communicator_->TakeFileHeader(logfile, header.FileHeader(), header.StreamTable());
  const std::size_t count = header.EntryCount();
  if (count > layout::kMostEntries) {
    CurrentNotes().Add("stream table too short"_note, file.path(), layout::kEntryCountAt,
                       std::to_string(count) + " streams are announced; there is room for 22");
  }
  for (std::size_t entry = 0; entry < std::min(count, layout::kMostEntries); ++entry) {
    ImportStream(file, header.EntryOffset(entry), *logfile);
  }
  LinkDualStreams();
  return logfile;
}

void CIntermediateFileImporter::ImportStream(const IntermediateFile& file, std::uint64_t position, ILogfile& logfile) {
  IntermediateEntry entry;
  if (!ReadsOrNotes(file, kEntrySkipped, [&] { entry = file.ReadEntry(position); }) || !entry.is_imported) return;
  NoteName(file, position + layout::kDeviceNameAt, entry.device_name);
  NoteName(file, position + layout::kProtocolNameAt, entry.protocol);
  NoteOverlap(file, entry);
  IDataStream* const stream = MakeStream(file, entry);
  if (!stream) return;
  try {
    ReadsOrNotes(file, kIdNotHandedOver, [&] { ReadIdLists(file, entry, *stream); });
    ReadsOrNotes(file, kStreamEndsEarly, [&] { ReadRows(file, entry, *stream); });
  } catch (...) {
    logfile.AddStream(stream);  // goes with the log file object
    throw;
  }
  stream->FinishRows();
  streams_[stream->GetDeviceName()].push_back(stream);
  logfile.AddStream(stream);
}

IDataStream* CIntermediateFileImporter::MakeStream(const IntermediateFile& file, const IntermediateEntry& entry) {
  const CString name = StreamName(file.path(), entry.device_name.text);
  IDataStream* const stream = entry.IsDual() ? communicator_->MakeDualStream(file.path(), name)
                                             : communicator_->MakeStream(file.path(), name, entry.stream_kind);
  if (stream) {
    communicator_->TakeStreamHeader(stream, entry.Header());
  } else {
    CurrentNotes().Add(kEntrySkipped, file.path(), entry.position,
                       "the host makes no stream of kind " + std::to_string(entry.stream_kind));
  }
  return stream;
}

void CIntermediateFileImporter::ReadRows(const IntermediateFile& file, const IntermediateEntry& entry,
                                         IDataStream& stream) {
  RowProgress progress(stream.GetName(), entry.row_count);
  RowReader reader(file, entry, stream);
  const std::uint64_t rows_per_chunk = layout::RowsPerChunk(AllocationGranularity());
  std::vector<CMemDataRow*> rows;
  std::vector<CMergeDataRow_2M> dual_rows;
  for (std::uint64_t first = 0; first < entry.row_count; first += rows_per_chunk) {
    const std::uint64_t count = std::min<std::uint64_t>(rows_per_chunk, entry.row_count - first);
    RowIndexReader index(file, entry, first, count);
    rows.clear();
    dual_rows.clear();
    entry.IsDual() ? dual_rows.reserve(count) : rows.reserve(count);
    for (std::uint64_t row = 0; row < count; ++row) {
      const RowIndexEntry next = index.Next();
      progress.Show(next.number);
      const CMergeDataRow_2M made = reader.Read(next);
      entry.IsDual() ? dual_rows.push_back(made) : rows.push_back(made.row);
    }
    entry.IsDual() ? communicator_->AddDualRows(&stream, dual_rows) : communicator_->AddRows(&stream, rows);
    reader.CloseWindow();
  }
}

void CIntermediateFileImporter::NoteOverlap(const IntermediateFile& file, const IntermediateEntry& entry) {
  const Extent extent{entry.data_at, entry.data_end};
  const auto overlaps = [&](const Extent& other) { return extent.first < other.second && other.first < extent.second; };
  if (std::ranges::any_of(extents_, overlaps)) {
    CurrentNotes().Add("streams overlap"_note, file.path(), entry.position,
                       "its row data, from byte " + std::to_string(extent.first) + " to " +
                           std::to_string(extent.second) + ", is also that of another stream");
  }
  extents_.push_back(extent);
}

// A device with a stream for each of the two protocols and the merged one of both.
void CIntermediateFileImporter::LinkDualStreams() {
  std::map<std::int32_t, std::map<CString, IDataStream*>> devices;
  for (const auto& [device_name, streams] : streams_) {
    for (IDataStream* stream : streams) devices[stream->GetDeviceNumber()].emplace(stream->GetProtocol(), stream);
  }
  for (const auto& [device_number, protocols] : devices) {
    if (protocols.size() != 3) continue;
    const auto find = [&protocols](const char* protocol) {
      const auto found = protocols.find(protocol);
      return found == protocols.end() ? nullptr : found->second;
    };
    IDataStream* const dual = find(layout::kDualProtocol);
    IDataStream* const td_scdma = find("TD-SCDMA");
    IDataStream* const gsm = find("GSM");
    if (dual && td_scdma && gsm) communicator_->LinkDualStream(dual, td_scdma, gsm);
  }
}

}  // namespace loom
