#include "components/intermediate/header_blocks.h"

#include <algorithm>
#include <stdexcept>

#include "platform/error.h"

namespace loom {
namespace {

namespace layout = intermediate;

// Both blocks say with this that the host's fields are in them.
constexpr std::uint32_t kHostMark = 0x4D4F4F4C;  // "LOOM"

// The host's places, counted like their neighbours: from the start of the file and of the stream entry.
constexpr std::size_t kFileMarkAt = 16;
constexpr std::size_t kFileFieldsAt = 28;
constexpr std::size_t kStreamRangesAt = 8;
constexpr std::size_t kDeviceNumberAt = 76;
constexpr std::size_t kStreamClassAt = 84;
constexpr std::size_t kStreamMarkAt = 356;
constexpr std::size_t kFilterOperatorBytes = 64;

ByteReader FileReaderAt(std::span<const std::byte> block, std::size_t at) {
  return ByteReader(block.subspan(at - layout::kFileHeaderAt), at);
}

ByteReader StreamReaderAt(std::span<const std::byte> block, std::size_t at) {
  return ByteReader(block.subspan(at - layout::kStreamHeaderAt), at);
}

PositionBounds ReadBounds(ByteReader& reader) {
  PositionBounds bounds;
  for (ValueRange* range : {&bounds.longitude, &bounds.latitude}) {
    range->maximum = reader.F64();
    range->minimum = reader.F64();
  }
  return bounds;
}

void WriteBounds(const PositionBounds& bounds, ByteWriter& out) {
  for (const ValueRange& range : {bounds.longitude, bounds.latitude}) {
    out.F64(range.maximum);
    out.F64(range.minimum);
  }
}

// Appends fields one after the other to a block that begins at `block_at`, zeros between them.
class BlockWriter {
 public:
  BlockWriter(ByteWriter& out, std::size_t block_at) : out_(out), start_(out.Size()), block_at_(block_at) {}

  ByteWriter& At(std::size_t position) {
    const std::size_t here = out_.Size() - start_ + block_at_;
    if (position < here) throw std::logic_error("a block's fields overlap");
    out_.Zeros(position - here);
    return out_;
  }
  void Name(std::size_t position, std::size_t field_bytes, const CString& name) {
    const std::string utf16 = GbkToUtf16Le(name);
    if (utf16.size() + 2 > field_bytes)
      throw Error("the name \"" + GbkToUtf8(name) + "\" is too long for an intermediate file");
    At(position).Text(utf16);
  }

 private:
  ByteWriter& out_;
  std::size_t start_;
  std::size_t block_at_;
};

HostStreamFields ReadHostStreamFields(std::span<const std::byte> block) {
  HostStreamFields host;
  ByteReader ranges = StreamReaderAt(block, kStreamRangesAt);
  host.earliest_time_s = ranges.F64();
  host.latest_time_s = ranges.F64();
  host.bounds = ReadBounds(ranges);
  host.device_number = StreamReaderAt(block, kDeviceNumberAt).I32();
  ByteReader classes = StreamReaderAt(block, kStreamClassAt);
  host.stream_class = classes.I32();
  host.position_flag = classes.I32();
  ByteReader texts = StreamReaderAt(block, kStreamMarkAt + 4);
  const std::string_view text = texts.Text(kFilterOperatorBytes);
  host.filter_operator = CString(text.substr(0, text.find('\0')));
  return host;
}

}  // namespace

std::optional<HostFileFields> ReadFileHeaderBlock(std::span<const std::byte> block) {
  if (FileReaderAt(block, kFileMarkAt).U32() != kHostMark) return std::nullopt;
  HostFileFields fields;
  ByteReader reader = FileReaderAt(block, kFileFieldsAt);
  fields.log_version = reader.I32();
  fields.model_code = reader.I32();
  fields.is_indoor = reader.I32() != 0;
  fields.bounds = ReadBounds(reader);
  return fields;
}

StreamHeaderBlock ReadStreamHeaderBlock(std::span<const std::byte> block) {
  StreamHeaderBlock header;
  header.data_length_bytes = StreamReaderAt(block, layout::kDataLengthAt).F64();
  header.row_count = StreamReaderAt(block, layout::kRowCountAt).U32();
  header.index_offset = StreamReaderAt(block, layout::kIndexOffsetAt).U32();
  header.ie_count = StreamReaderAt(block, layout::kIeCountAt).U32();
  header.stream_kind = StreamReaderAt(block, layout::kStreamKindAt).I32();
  header.skip_count = StreamReaderAt(block, layout::kSkipCountAt).U32();
  header.event_count = StreamReaderAt(block, layout::kEventCountAt).U32();
  header.device_name =
      layout::ReadName(StreamReaderAt(block, layout::kDeviceNameAt).Bytes(layout::kDeviceNameBytes)).text;
  header.protocol =
      layout::ReadName(StreamReaderAt(block, layout::kProtocolNameAt).Bytes(layout::kProtocolNameBytes)).text;
  if (StreamReaderAt(block, kStreamMarkAt).U32() == kHostMark) header.host = ReadHostStreamFields(block);
  return header;
}

void WriteFileHeaderBlock(const HostFileFields& fields, ByteWriter& out) {
  BlockWriter block(out, layout::kFileHeaderAt);
  block.At(kFileMarkAt).U32(kHostMark);
  block.At(layout::kVersionAt).U32(layout::kFormatVersion);
  block.At(kFileFieldsAt).I32(fields.log_version);
  out.I32(fields.model_code);
  out.I32(fields.is_indoor ? 1 : 0);
  WriteBounds(fields.bounds, out);
  block.At(layout::kFileHeaderAt + layout::kFileHeaderBytes);
}

void WriteStreamHeaderBlock(const StreamHeaderBlock& header, ByteWriter& out) {
  const HostStreamFields host = header.host.value_or(HostStreamFields());
  BlockWriter block(out, layout::kStreamHeaderAt);
  block.At(kStreamRangesAt).F64(host.earliest_time_s);
  out.F64(host.latest_time_s);
  WriteBounds(host.bounds, out);
  block.At(layout::kDataLengthAt).F64(header.data_length_bytes);
  block.At(layout::kRowCountAt).U32(header.row_count);
  block.At(layout::kIndexOffsetAt).U32(header.index_offset);
  block.At(layout::kIeCountAt).U32(header.ie_count);
  block.At(kDeviceNumberAt).I32(host.device_number);
  block.At(layout::kStreamKindAt).I32(header.stream_kind);
  block.At(kStreamClassAt).I32(host.stream_class);
  out.I32(host.position_flag);
  block.At(layout::kSkipCountAt).U32(header.skip_count);
  block.At(layout::kEventCountAt).U32(header.event_count);
  block.Name(layout::kDeviceNameAt, layout::kDeviceNameBytes, header.device_name);
  block.At(kStreamMarkAt).U32(header.host ? kHostMark : 0);
  out.Text(host.filter_operator.view().substr(0, kFilterOperatorBytes - 1));
  block.Name(layout::kProtocolNameAt, layout::kProtocolNameBytes, header.protocol);
  block.At(layout::kEntryBytes);
}

}  // namespace loom
