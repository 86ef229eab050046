#include "host/logstore/block_cursor.h"

#include <algorithm>
#include <string>

#include "host/logstore/pcapng.h"
#include "platform/byte_reader.h"

namespace loom {
namespace {

using namespace pcapng;

std::uint32_t NumberAt(const std::byte* bytes) { return ByteReader(std::span(bytes, 4)).U32(); }

}  // namespace

// The next `count` bytes, which the file has.
inline const std::byte* BlockCursor::Need(std::uint32_t count) {
  if (at_ + count <= buffer_end_) return buffer_.data() + (at_ - buffer_position_);
  return Fill(count);
}

const std::byte* BlockCursor::Fill(std::uint32_t count) {
  const std::uint64_t size = std::min(std::max<std::uint64_t>(count, piece_bytes_), file_.Size() - at_);
  if (buffer_.size() < size) buffer_.resize(size);
  buffer_end_ = buffer_position_ = at_;
  file_.ReadAt(at_, std::span(buffer_.data(), size));
  buffer_end_ = at_ + size;
  return buffer_.data();
}

void BlockCursor::ContinueAt(std::uint64_t position_bytes) {
  at_ = position_bytes;
  damage_.reset();
  if (at_ < buffer_position_ || at_ > buffer_end_) buffer_position_ = buffer_end_ = at_;
}

bool BlockCursor::Damaged(const std::string& reason) {
  damage_.emplace(at_, reason);
  return false;
}

bool BlockCursor::Next(Block& block) {
  const std::uint64_t left = file_.Size() - at_;
  if (left == 0 || damage_) return false;
  if (left < kBlockOverhead)
    return Damaged("a block needs " + std::to_string(kBlockOverhead) + " bytes, " + std::to_string(left) + " are left");
  const std::byte* bytes = Need(kBlockOverhead);
  const std::uint32_t type = NumberAt(bytes);
  const std::uint32_t length = NumberAt(bytes + 4);
  if (type == kSectionHeader && NumberAt(bytes + 8) == kSwappedMagic)
    return Damaged("a big-endian section; logs are little-endian");
  if (length % 4 != 0 || length < kBlockOverhead || length > kMaxBlockBytes)
    return Damaged("block length " + std::to_string(length) + " is impossible");
  if (length > left)
    return Damaged("a block of " + std::to_string(length) + " bytes, " + std::to_string(left) + " are left");
  bytes = Need(length);
  const std::uint32_t closing = NumberAt(bytes + length - 4);
  if (closing != length)
    return Damaged("a block's lengths disagree: " + std::to_string(length) + " and " + std::to_string(closing));
  block = {type, at_, std::span(bytes + 8, length - kBlockOverhead)};
  at_ += length;
  return true;
}

}  // namespace loom
