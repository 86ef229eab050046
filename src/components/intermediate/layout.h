#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "components/dual_protocol.h"
#include "platform/byte_reader.h"
#include "platform/cstring.h"
#include "platform/encoding.h"

// Where everything stands in an intermediate log file (docs/intermediate-format.md). Numbers are little-endian, offsets
// and sizes in bytes.
namespace loom::intermediate {

inline constexpr std::array<std::uint8_t, 16> kMagic = {0x00, 0x08, 0x43, 0xD0, 0x27, 0x74, 0xC9, 0x46,
                                                        0x92, 0x7E, 0xB3, 0xA0, 0xEE, 0x47, 0xD0, 0x63};
inline constexpr std::uint32_t kFormatVersion = 750;
using loom::kDualProtocol;

// From the start of the file.
inline constexpr std::size_t kFileHeaderAt = 16;
inline constexpr std::size_t kFileHeaderBytes = 528;
inline constexpr std::size_t kVersionAt = 24;
inline constexpr std::size_t kStreamTableAt = 544;
inline constexpr std::size_t kStreamTableBytes = 136;
inline constexpr std::size_t kEntryOffsetsAt = 588;
inline constexpr std::size_t kEntryCountAt = 676;
inline constexpr std::size_t kMostEntries = 22;
inline constexpr std::size_t kHeaderBytes = 680;
static_assert(kFileHeaderAt + kFileHeaderBytes == kStreamTableAt && kStreamTableAt + kStreamTableBytes == kHeaderBytes);
static_assert(kEntryOffsetsAt + 4 * kMostEntries == kEntryCountAt);

// From the start of a stream entry.
inline constexpr std::size_t kBaseAt = 0;
inline constexpr std::size_t kFlagAt = 4;
inline constexpr std::uint8_t kFlagImport = 1;
inline constexpr std::size_t kStreamHeaderAt = 8;
inline constexpr std::size_t kStreamHeaderBytes = 664;
inline constexpr std::size_t kDataLengthAt = 56;
inline constexpr std::size_t kRowCountAt = 64;
inline constexpr std::size_t kIndexOffsetAt = 68;
inline constexpr std::size_t kIeCountAt = 72;
inline constexpr std::size_t kStreamKindAt = 80;
inline constexpr std::size_t kSkipCountAt = 92;
inline constexpr std::size_t kEventCountAt = 96;
inline constexpr std::size_t kDeviceNameAt = 100;
inline constexpr std::size_t kDeviceNameBytes = 256;
inline constexpr std::size_t kProtocolNameAt = 612;
inline constexpr std::size_t kProtocolNameBytes = 60;
inline constexpr std::size_t kEntryBytes = 672;  // the id lists follow
static_assert(kStreamHeaderAt + kStreamHeaderBytes == kEntryBytes);
static_assert(kProtocolNameAt + kProtocolNameBytes == kEntryBytes);

// A stream's row index and row data are addressed from its base offset plus this.
inline constexpr std::size_t kBaseGapBytes = 8;

// Row index entry: time (f64), sequence number (i32), data offset (u32), data length (u16), 6 bytes that are not read.
inline constexpr std::size_t kIndexEntryBytes = 24;
inline constexpr std::size_t kIndexEntryUnusedBytes = 6;
inline constexpr std::size_t kMostRowBytes = 65535;

// A field's first four bytes. Bit 0 is not used.
struct FieldDescriptor {
  static constexpr std::size_t kTypes = 8;  // that the bits have room for

  std::uint32_t length_bytes = 0;  // of the value, at most kMostFieldBytes
  std::uint32_t type = 0;          // a MemTableFieldTypeEnum; 0, 6 and 7 are not written
  std::uint32_t ie_id = 0;         // at most kHighestIeId

  static constexpr FieldDescriptor FromBits(std::uint32_t bits) {
    return {.length_bytes = bits >> 1 & 0x3FF, .type = bits >> 11 & 7, .ie_id = bits >> 14};
  }
  constexpr std::uint32_t Bits() const { return length_bytes << 1 | type << 11 | ie_id << 14; }
};
inline constexpr std::size_t kDescriptorBytes = 4;
inline constexpr std::size_t kMostFieldBytes = 1023;
inline constexpr std::int32_t kHighestIeId = (1 << 18) - 1;

// Row data is read through windows of this size that begin at a multiple of the granularity; rows are handed over in
// batches whose index entries fill one window less its first unit.
constexpr std::uint64_t WindowBytes(std::uint64_t granularity) { return granularity * 1024; }
constexpr std::uint64_t RowsPerChunk(std::uint64_t granularity) {
  return (granularity * 1024 - granularity) / kIndexEntryBytes;
}

// A zero-terminated UTF-16 name in a field of fixed size.
struct Name {
  CString text;
  bool is_terminated = true;  // else all of the field is the name
  bool is_exact = true;       // else '?' stands for what GBK cannot express
};

inline Name ReadName(std::span<const std::byte> field) {
  const std::string_view bytes = AsText(field);
  std::size_t length = 0;
  while (length + 1 < bytes.size() && (bytes[length] != 0 || bytes[length + 1] != 0)) length += 2;
  Name name{.text = {}, .is_terminated = length + 1 < bytes.size(), .is_exact = true};
  try {
    name.text = Utf16LeToGbk(bytes.substr(0, length));
    return name;
  } catch (const EncodingError&) {
    name.is_exact = false;
  }
  for (std::size_t at = 0; at < length; at += 2) {
    try {
      name.text += Utf16LeToGbk(bytes.substr(at, 2));
    } catch (const EncodingError&) {
      name.text += '?';
    }
  }
  return name;
}

}  // namespace loom::intermediate
