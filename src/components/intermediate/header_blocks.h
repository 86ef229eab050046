#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "components/field_value.h"
#include "components/intermediate/layout.h"
#include "components/value_range.h"
#include "platform/byte_reader.h"
#include "platform/cstring.h"

// The blocks of an intermediate file that are the host's: what it keeps in them beside the fields that every program
// knows. Blocks that another program wrote lack the host's mark, and its fields mean nothing in them.
namespace loom {

// What the host keeps in the file header block.
struct HostFileFields {
  std::int32_t log_version = 0;
  std::int32_t model_code = 0;
  bool is_indoor = false;
  PositionBounds bounds;
};

// What the host keeps in a stream header block.
struct HostStreamFields {
  double earliest_time_s = kInvalidDouble;
  double latest_time_s = kInvalidDouble;
  PositionBounds bounds;
  std::int32_t device_number = 0;
  std::int32_t stream_class = 0;
  std::int32_t position_flag = 0;
  CString filter_operator;  // at most 63 bytes are kept
};

// A stream header block.
struct StreamHeaderBlock {
  double data_length_bytes = 0.0;
  std::uint32_t row_count = 0;
  std::uint32_t index_offset = 0;
  std::uint32_t ie_count = 0;
  std::uint32_t skip_count = 0;
  std::uint32_t event_count = 0;
  std::int32_t stream_kind = 0;
  CString device_name;
  CString protocol;
  std::optional<HostStreamFields> host;  // none without the mark
};

// `block` has the size of the block.
std::optional<HostFileFields> ReadFileHeaderBlock(std::span<const std::byte> block);
StreamHeaderBlock ReadStreamHeaderBlock(std::span<const std::byte> block);

// Append a whole block. Throw Error when a name does not fit its field, EncodingError when it is not valid GBK.
void WriteFileHeaderBlock(const HostFileFields& fields, ByteWriter& out);
void WriteStreamHeaderBlock(const StreamHeaderBlock& header, ByteWriter& out);

}  // namespace loom
