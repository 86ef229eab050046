#include "components/intermediate/file.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "platform/file_map.h"

namespace loom {
namespace {

namespace layout = intermediate;

// Index entries and ids are read in blocks of about this size.
constexpr std::size_t kBlockBytes = 4096 * layout::kIndexEntryBytes;

// Far behind the end of any file.
constexpr std::uint64_t kFarAway = std::uint64_t{1} << 60;

std::uint64_t LengthFrom(double length_bytes) {
  if (!(length_bytes > 0.0)) return 0;
  return length_bytes < static_cast<double>(kFarAway) ? static_cast<std::uint64_t>(length_bytes) : kFarAway;
}

template <std::size_t kSize>
ByteReader ReaderAt(const std::array<std::byte, kSize>& bytes, std::size_t at, std::uint64_t base_position) {
  return ByteReader(std::span(bytes).subspan(at), base_position + at);
}

}  // namespace

bool IntermediateHeader::HasMagic() const {
  return std::memcmp(bytes.data(), layout::kMagic.data(), layout::kMagic.size()) == 0;
}

std::uint32_t IntermediateHeader::Version() const { return ReaderAt(bytes, layout::kVersionAt, 0).U32(); }

std::uint16_t IntermediateHeader::EntryCount() const { return ReaderAt(bytes, layout::kEntryCountAt, 0).U16(); }

std::uint32_t IntermediateHeader::EntryOffset(std::size_t entry) const {
  return ReaderAt(bytes, layout::kEntryOffsetsAt + 4 * entry, 0).U32();
}

void IntermediateFile::Require(std::uint64_t position_bytes, std::uint64_t length_bytes, const char* what) const {
  if (position_bytes <= Size() && length_bytes <= Size() - position_bytes) return;
  throw FormatError(position_bytes, std::string(what) + " of " + std::to_string(length_bytes) +
                                        " bytes is not within the file of " + std::to_string(Size()) + " bytes");
}

void IntermediateFile::Read(std::uint64_t position_bytes, std::span<std::byte> out, const char* what) const {
  Require(position_bytes, out.size(), what);
  file_.ReadAt(position_bytes, out);
}

IntermediateHeader IntermediateFile::ReadHeader() const {
  IntermediateHeader header;
  Read(0, header.bytes, "the header");
  return header;
}

IntermediateEntry IntermediateFile::ReadEntry(std::uint64_t position_bytes) const {
  IntermediateEntry entry;
  entry.position = position_bytes;
  Read(position_bytes, entry.bytes, "a stream entry");
  const auto at = [&](std::size_t offset) { return ReaderAt(entry.bytes, offset, position_bytes); };
  entry.data_at = std::uint64_t{at(layout::kBaseAt).U32()} + layout::kBaseGapBytes;
  entry.data_end = entry.data_at + LengthFrom(at(layout::kDataLengthAt).F64());
  entry.index_at = entry.data_at + at(layout::kIndexOffsetAt).U32();
  entry.row_count = at(layout::kRowCountAt).U32();
  entry.ie_count = at(layout::kIeCountAt).U32();
  entry.skip_count = at(layout::kSkipCountAt).U32();
  entry.event_count = at(layout::kEventCountAt).U32();
  entry.stream_kind = at(layout::kStreamKindAt).I32();
  entry.is_imported = at(layout::kFlagAt).U8() == layout::kFlagImport;
  const auto field = [&](std::size_t offset, std::size_t size) { return std::span(entry.bytes).subspan(offset, size); };
  entry.device_name = layout::ReadName(field(layout::kDeviceNameAt, layout::kDeviceNameBytes));
  entry.protocol = layout::ReadName(field(layout::kProtocolNameAt, layout::kProtocolNameBytes));
  return entry;
}

void IntermediateFile::ReadIds(std::uint64_t position_bytes, std::uint32_t count,
                               std::vector<std::uint32_t>& ids) const {
  const std::uint64_t end = position_bytes + std::uint64_t{count} * 4;
  Require(position_bytes, end - position_bytes, "an id list");
  std::vector<std::byte> block;
  for (std::uint64_t at = position_bytes; at < end; at += block.size()) {
    block.resize(std::min<std::uint64_t>(kBlockBytes, end - at));
    Read(at, block, "an id list");
    for (ByteReader reader(block, at); !reader.AtEnd();) ids.push_back(reader.U32());
  }
}

RowIndexReader::RowIndexReader(const IntermediateFile& file, const IntermediateEntry& entry, std::uint64_t first_row,
                               std::uint64_t row_count)
    : file_(file),
      next_at_(entry.index_at + first_row * layout::kIndexEntryBytes),
      end_at_(next_at_ + row_count * layout::kIndexEntryBytes) {
  file.Require(next_at_, end_at_ - next_at_, "a chunk of the row index");
}

void RowIndexReader::ReadBlock() {
  block_.resize(std::min<std::uint64_t>(kBlockBytes, end_at_ - next_at_));
  file_.Read(next_at_, block_, "a part of the row index");
  next_at_ += block_.size();
  at_ = 0;
}

RowIndexEntry RowIndexReader::Next() {
  if (at_ == block_.size()) ReadBlock();
  ByteReader reader(std::span<const std::byte>(block_).subspan(at_), Position());
  RowIndexEntry row;
  row.time_s = reader.F64();
  row.number = reader.I32();
  row.data_offset = reader.U32();
  row.length_bytes = reader.U16();
  reader.Skip(layout::kIndexEntryUnusedBytes);
  at_ += layout::kIndexEntryBytes;
  return row;
}

void RowDataWindow::Open(std::uint64_t position_bytes) {
  const std::uint64_t granularity = AllocationGranularity();
  const std::uint64_t start = position_bytes / granularity * granularity;
  const std::uint64_t end = std::min(start + layout::WindowBytes(granularity), entry_.data_end);
  if (end < position_bytes)
    throw FormatError(position_bytes,
                      "a row begins behind the stream's data, which ends at byte " + std::to_string(entry_.data_end));
  Close();
  const std::size_t size = end - start;
  if (buffer_.size() < size) buffer_.resize(size);
  file_.Read(start, std::span(buffer_).first(size), "a window of row data");
  start_ = start;
  size_ = size;
  at_ = position_bytes - start;
}

ByteReader RowDataWindow::Take(const RowIndexEntry& row) {
  const std::size_t length = row.length_bytes;
  if (length > size_ - at_) {
    const std::uint64_t position = entry_.data_at + row.data_offset;
    Open(position);
    if (length > size_ - at_)
      throw FormatError(position, "a row of " + std::to_string(length) +
                                      " bytes reaches behind the stream's data, "
                                      "which ends at byte " +
                                      std::to_string(entry_.data_end));
  }
  const ByteReader reader(std::span<const std::byte>(buffer_).subspan(at_, length), Position());
  at_ += length;
  return reader;
}

}  // namespace loom
