#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <vector>

#include "components/records/block_table.h"
#include "components/records/testdata.h"

// Records as the payloads of a log; docs/records.md has the grammar. All functions that read throw FormatError with
// the position in the file for bytes that are no record.
namespace loom {

namespace records {
struct BlockCodec;
}

// Reads the header, the marks and the blocks of the routes that are never decoded; the other blocks stay coded
// (`encoded_blocks`) until DecodeBlocks. The record must be a fresh one. Its texts and coded blocks are borrowed from
// `payload`, which must live as long as the record does; blocks are made in `arena`, which the record remembers.
// A record marked as unreadable is read all the same: what the mark means is up to the reader of the log.
void DecodeHeader(std::span<const std::byte> payload, std::uint64_t position_bytes, CTestdataBase& record,
                  std::pmr::memory_resource& arena);

// Makes the blocks that are still coded. False, with the blocks as they were, when the record is marked as one that
// fails to decode. A second call does nothing.
bool DecodeBlocks(CTestdataBase& record, std::pmr::memory_resource& arena);

// Reads the whole record, whatever its marks say.
void DecodeRecord(std::span<const std::byte> payload, std::uint64_t position_bytes, CTestdataBase& record,
                  std::pmr::memory_resource& arena);

// Adds to a record's time of day, in place. A time that is none (below 0, not a number) stays as it is. Throws
// FormatError also when the sum is no time of day any more.
void ShiftRecordTime(std::span<std::byte> payload, std::uint64_t position_bytes, double shift_s);

// Gives a record another id, in place.
void NumberRecord(std::span<std::byte> payload, std::uint64_t position_bytes, std::int32_t record_id);

// The one payload of a record with its marks, as long as the record does not change. All blocks must have been decoded.
class RecordEncoder {
 public:
  explicit RecordEncoder(const CTestdataBase& record);
  std::size_t Bytes() const { return bytes_; }
  void Store(std::byte* at) const;  // all of them

 private:
  struct Block {
    const records::BlockCodec* codec;
    std::uint32_t fields;
    std::uint32_t bytes;
  };

  const CTestdataBase& record_;
  std::size_t bytes_ = 0;
  std::size_t header_fields_ = 0;
  std::uint32_t header_bytes_ = 0;
  std::size_t block_count_ = 0;
  std::array<Block, kRecordBlockCount> blocks_;
};

// The payload by itself, and behind what `out` holds.
std::vector<std::byte> EncodeRecord(const CTestdataBase& record);
void AppendRecord(const CTestdataBase& record, std::vector<std::byte>& out);

}  // namespace loom
