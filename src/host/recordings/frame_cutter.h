#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/file.h"

namespace loom::recordings {

inline constexpr std::byte kEscape{0x7D};
inline constexpr std::byte kEscapedBit{0x20};

// What stands between two flags (0x7E) of a stream of HDLC frames, escapes and checksum still in it.
struct CutFrame {
  std::span<const std::byte> bytes;
  std::uint64_t position_bytes = 0;
  bool is_ended = true;      // false: the file ends before a flag
  bool is_too_long = false;  // longer than any frame; `bytes` is empty
};

// Cuts a range of a file at its flags. Empty frames are passed over.
class FrameCutter {
 public:
  static constexpr std::size_t kMostBytes = 256U << 10;  // of a frame

  FrameCutter(const InputFile& file, std::uint64_t begin_bytes, std::uint64_t end_bytes);

  bool Next(CutFrame& frame);  // false at the end; the bytes are valid until the next call
  std::uint64_t PositionBytes() const { return begin_ + at_; }

 private:
  bool ReadMore();
  bool CutLong(CutFrame& frame);

  const InputFile& file_;
  std::uint64_t begin_;  // of the buffer in the file
  std::uint64_t end_;    // of the range
  std::vector<std::byte> buffer_;
  std::size_t filled_ = 0;
  std::size_t at_ = 0;  // in the buffer
};

// Takes the escapes out: 0x7D x stands for x xor 0x20. A frame without any comes back as it is, others in `scratch`.
std::span<const std::byte> Unescape(std::span<const std::byte> frame, std::vector<std::byte>& scratch);

}  // namespace loom::recordings
