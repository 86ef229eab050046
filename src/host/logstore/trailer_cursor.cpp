#include "host/logstore/trailer_cursor.h"

#include <array>

#include "host/logstore/pcapng.h"
#include "platform/byte_reader.h"

namespace loom {
namespace {

using namespace pcapng;

constexpr int kTrailersSearched = 16;

}  // namespace

bool TrailerCursor::Next(Trailer& trailer) {
  if (seen_++ >= kTrailersSearched || at_ < kBlockOverhead) return false;
  std::array<std::byte, 8> head{};
  const auto closing = std::span(head).first<4>();
  file_.ReadAt(at_ - closing.size(), closing);
  const std::uint32_t length = ByteReader(closing).U32();
  if (length % 4 != 0 || length < kBlockOverhead || length > kMaxBlockBytes || length > at_) return false;
  at_ -= length;
  file_.ReadAt(at_, head);
  ByteReader opening(head, at_);
  const std::uint32_t type = opening.U32();
  trailer = {type, length, at_};
  return opening.U32() == length && type != kEnhancedPacket && type != kSectionHeader;
}

std::vector<std::byte> TrailerCursor::Body(const Trailer& trailer) const {
  std::vector<std::byte> body(trailer.length_bytes - kBlockOverhead);
  file_.ReadAt(trailer.BodyPosition(), body);
  return body;
}

}  // namespace loom
