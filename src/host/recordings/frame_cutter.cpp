#include "host/recordings/frame_cutter.h"

#include <algorithm>
#include <cstring>

namespace loom::recordings {
namespace {

constexpr std::byte kFlag{0x7E};

const std::byte* Find(const std::byte* from, std::size_t count, std::byte byte) {
  if (count == 0) return nullptr;
  return static_cast<const std::byte*>(std::memchr(from, static_cast<int>(byte), count));
}

}  // namespace

FrameCutter::FrameCutter(const InputFile& file, std::uint64_t begin_bytes, std::uint64_t end_bytes)
    : file_(file), begin_(begin_bytes), end_(end_bytes) {
  buffer_.resize(static_cast<std::size_t>(std::min<std::uint64_t>(2 * kMostBytes, end_ - begin_)));
}

// Makes room by moving what is not cut yet to the front. False when nothing is left to read.
bool FrameCutter::ReadMore() {
  const std::uint64_t position = begin_ + filled_;
  if (position >= end_) return false;
  if (at_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + at_, filled_ - at_);
    filled_ -= at_;
    begin_ += at_;
    at_ = 0;
  }
  const std::size_t count =
      static_cast<std::size_t>(std::min<std::uint64_t>(buffer_.size() - filled_, end_ - position));
  if (count == 0) return false;
  const std::size_t read = file_.ReadUpTo(position, std::span(buffer_).subspan(filled_, count));
  if (read < count) end_ = position + read;  // the file was cut meanwhile
  filled_ += read;
  return read > 0;
}

bool FrameCutter::Next(CutFrame& frame) {
  frame.is_ended = true;
  frame.is_too_long = false;
  for (std::size_t searched = 0;;) {
    const std::byte* const from = buffer_.data() + at_;
    const std::byte* const flag = Find(from + searched, filled_ - at_ - searched, kFlag);
    if (flag != nullptr) {
      const auto length = static_cast<std::size_t>(flag - from);
      frame.position_bytes = begin_ + at_;
      at_ += length + 1;
      searched = 0;
      if (length == 0) continue;
      frame.bytes = {from, length};
      return true;
    }
    searched = filled_ - at_;
    if (searched > kMostBytes) return CutLong(frame);
    if (ReadMore()) continue;
    if (searched == 0) return false;
    frame.position_bytes = begin_ + at_;
    frame.bytes = {buffer_.data() + at_, searched};
    frame.is_ended = false;
    at_ = filled_;
    return true;
  }
}

// Passes over everything up to the next flag.
bool FrameCutter::CutLong(CutFrame& frame) {
  frame.position_bytes = begin_ + at_;
  frame.bytes = {};
  frame.is_too_long = true;
  do {
    const std::byte* const from = buffer_.data() + at_;
    const std::byte* const flag = Find(from, filled_ - at_, kFlag);
    at_ = flag != nullptr ? at_ + static_cast<std::size_t>(flag - from) + 1 : filled_;
    if (flag != nullptr) break;
  } while (ReadMore());
  return true;
}

std::span<const std::byte> Unescape(std::span<const std::byte> frame, std::vector<std::byte>& scratch) {
  const std::byte* from = frame.data();
  const std::byte* const end = from + frame.size();
  const std::byte* escape = Find(from, frame.size(), kEscape);
  if (escape == nullptr) return frame;
  if (scratch.size() < frame.size()) scratch.resize(frame.size());
  std::byte* out = scratch.data();
  while (escape != nullptr) {
    const auto run = static_cast<std::size_t>(escape - from);
    std::memcpy(out, from, run);
    out += run;
    from = escape + 1;
    if (from == end) break;
    *out++ = *from++ ^ kEscapedBit;
    escape = from == end ? nullptr : Find(from, static_cast<std::size_t>(end - from), kEscape);
  }
  std::memcpy(out, from, static_cast<std::size_t>(end - from));
  out += end - from;
  return {scratch.data(), static_cast<std::size_t>(out - scratch.data())};
}

}  // namespace loom::recordings
