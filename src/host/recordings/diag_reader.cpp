#include "host/recordings/diag_reader.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "host/recordings/frame_checksum.h"

namespace loom::recordings {
namespace {

constexpr std::size_t kChecksumBytes = 2;
constexpr std::size_t kBareBufferBytes = 256U << 10;

// Whether an escape stands in the first kPayloadHeadBytes.
bool HasEscape(const std::byte* at) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  std::uint64_t found = 0;
  for (std::size_t i = 0; i < kPayloadHeadBytes; i += sizeof(std::uint64_t)) {
    std::uint64_t eight;
    std::memcpy(&eight, at + i, sizeof eight);
    eight ^= kOnes * static_cast<std::uint64_t>(kEscape);  // a byte becomes 0
    found |= (eight - kOnes) & ~eight & kOnes << 7;
  }
  return found != 0;
}

}  // namespace

DiagReader::DiagReader(const InputFile& file, RecordingFormat format, std::uint64_t begin_bytes,
                       std::uint64_t end_bytes, Findings& findings)
    : file_(file), format_(format), end_(end_bytes), findings_(findings), buffer_begin_(begin_bytes) {
  if (format == RecordingFormat::kFrames)
    frames_ = std::make_unique<FrameCutter>(file, begin_bytes, end_bytes);
  else
    buffer_.resize(kBareBufferBytes);
}

std::uint64_t DiagReader::PositionBytes() const { return frames_ ? frames_->PositionBytes() : buffer_begin_ + at_; }

bool DiagReader::Next(DiagPacket& packet) {
  return format_ == RecordingFormat::kFrames ? NextFramed(packet) : NextBare(packet);
}

bool DiagReader::IsSoundFrame(const CutFrame& frame, std::span<const std::byte> bytes) {
  const auto tell = [&](Finding finding, std::size_t count) {
    findings_.Add(finding, file_.path(), frame.position_bytes, std::to_string(count) + " bytes");
    return false;
  };
  if (frame.is_too_long) [[unlikely]]
    return tell(Finding::kNoFrame, FrameCutter::kMostBytes);
  if (!frame.is_ended) [[unlikely]]
    return tell(Finding::kCutAtEnd, frame.bytes.size());
  if (!HasGoodChecksum(bytes)) [[unlikely]]
    return tell(frame.position_bytes == 0 ? Finding::kCutAtStart : Finding::kBadChecksum, frame.bytes.size());
  return true;
}

bool DiagReader::NextFramed(DiagPacket& packet) {
  for (CutFrame frame; frames_->Next(frame);) {
    const auto bytes = Unescape(frame.bytes, scratch_);
    if (!IsSoundFrame(frame, bytes)) continue;
    packet_position_ = frame.position_bytes;
    switch (ReadPayload(bytes.first(bytes.size() - kChecksumBytes), packet)) {
      case PayloadKind::kLogPacket:
        return true;
      case PayloadKind::kOtherCommand:
        findings_.Add(Finding::kOtherCommand);
        break;
      case PayloadKind::kContradictory:
        findings_.Add(Finding::kBadPacket, file_.path(), frame.position_bytes,
                      std::to_string(bytes.size() - kChecksumBytes) + " bytes");
    }
  }
  return false;
}

// At least one whole packet in the buffer, as far as the file goes.
bool DiagReader::FillBare() {
  if (filled_ - at_ >= kMostPacketBytes) return true;
  std::memmove(buffer_.data(), buffer_.data() + at_, filled_ - at_);
  filled_ -= at_;
  buffer_begin_ += at_;
  at_ = 0;
  const std::uint64_t position = buffer_begin_ + filled_;
  const auto count =
      static_cast<std::size_t>(std::min<std::uint64_t>(buffer_.size() - filled_, end_ - std::min(end_, position)));
  filled_ += file_.ReadUpTo(position, std::span(buffer_).subspan(filled_, count));
  return filled_ > 0;
}

bool DiagReader::NextBare(DiagPacket& packet) {
  if (!FillBare()) return false;
  const auto left = std::span<const std::byte>(buffer_).subspan(at_, filled_ - at_);
  packet_position_ = buffer_begin_ + at_;
  if (!ReadBarePacket(left, packet)) {
    // Without a sound length nothing behind it can be found.
    findings_.Add(left.size() < kMostPacketBytes ? Finding::kCutAtEnd : Finding::kBadPacket, file_.path(),
                  packet_position_, "the rest is not read");
    end_ = packet_position_;
    at_ = filled_;
    return false;
  }
  at_ += kBareHeaderBytes + packet.body.size();
  return true;
}

bool PeekFrame(std::span<const std::byte> frame, DiagPacket& packet) {
  if (frame.empty() || (frame[0] != std::byte{0x10} && frame[0] != std::byte{0x98})) return false;
  std::size_t length_bytes = 0;
  if (frame.size() >= kPayloadHeadBytes && !HasEscape(frame.data())) [[likely]]
    return ReadPayloadHead(frame.first(kPayloadHeadBytes), packet, length_bytes) == PayloadKind::kLogPacket;
  std::array<std::byte, kPayloadHeadBytes> head;
  std::size_t count = 0;
  for (std::size_t at = 0; at < frame.size() && count < head.size(); ++at) {
    const bool is_escape = frame[at] == kEscape && at + 1 < frame.size();
    head[count++] = is_escape ? frame[++at] ^ kEscapedBit : frame[at];
  }
  return ReadPayloadHead(std::span(head).first(count), packet, length_bytes) == PayloadKind::kLogPacket;
}

}  // namespace loom::recordings
