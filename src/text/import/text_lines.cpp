#include "text/import/text_lines.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace loom {
namespace {

constexpr std::size_t kReadBlockBytes = 256 * 1024;

}  // namespace

TextLines::TextLines(const CString& path) : file_(path) { file_.ExpectSequentialReading(); }

bool TextLines::Next(std::string_view& line) {
  std::size_t searched = at_;
  for (;;) {
    const char* const bytes = buffer_.get();
    const void* const found = searched < end_ ? std::memchr(bytes + searched, '\n', end_ - searched) : nullptr;
    if (found != nullptr) {
      const auto line_feed = static_cast<std::size_t>(static_cast<const char*>(found) - bytes);
      const std::size_t length = line_feed - at_;
      line = {bytes + at_, length > 0 && bytes[line_feed - 1] == '\r' ? length - 1 : length};
      at_ = line_feed + 1;
      return true;
    }
    const std::size_t begun = end_ - at_;
    if (!Fill()) break;
    searched = at_ + begun;
  }
  if (at_ == end_) return false;
  line = {buffer_.get() + at_, end_ - at_};
  at_ = end_;
  return true;
}

// Moves the line that has begun to the front and reads on behind it; false at the end of the file.
bool TextLines::Fill() {
  const std::uint64_t left = file_.Size() - read_;
  if (left == 0) return false;
  const std::size_t begun = end_ - at_;
  if (capacity_ < begun + kReadBlockBytes) {
    capacity_ = std::max(2 * capacity_, begun + kReadBlockBytes);
    auto larger = std::make_unique<char[]>(capacity_ + kReadableBehind);
    if (begun > 0) std::memcpy(larger.get(), buffer_.get() + at_, begun);
    buffer_ = std::move(larger);
  } else if (begun > 0) {
    std::memmove(buffer_.get(), buffer_.get() + at_, begun);
  }
  at_ = 0;
  end_ = begun;
  const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(left, capacity_ - begun));
  file_.ReadAt(read_, std::as_writable_bytes(std::span(buffer_.get() + begun, count)));
  end_ += count;
  read_ += count;
  return true;
}

}  // namespace loom
