#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace loom {

// A text under construction, byte by byte without checks: room is made first, filled through the raw pointer, and the
// end told.
class TextBuffer {
 public:
  // The end of the text, with at least `bytes` of room behind it, until the next call that makes room or appends.
  char* Room(std::size_t bytes) {
    if (capacity_ - size_ < bytes) Grow(bytes);
    return text_.get() + size_;
  }
  // The text now ends there: in the room made, or before it.
  void SetEnd(const char* end) { size_ = static_cast<std::size_t>(end - text_.get()); }

  void Append(std::string_view text) {
    if (text.empty()) return;
    std::memcpy(Room(text.size()), text.data(), text.size());
    size_ += text.size();
  }
  void Append(char c) {
    *Room(1) = c;
    ++size_;
  }
  void Truncate(std::size_t size) { size_ = size; }
  void Clear() { size_ = 0; }

  std::size_t size() const { return size_; }
  std::string_view view() const { return {text_.get(), size_}; }

 private:
  void Grow(std::size_t bytes) {
    const std::size_t capacity = std::max(size_ + bytes, 2 * capacity_);
    auto text = std::make_unique_for_overwrite<char[]>(capacity);
    if (size_ > 0) std::memcpy(text.get(), text_.get(), size_);
    text_ = std::move(text);
    capacity_ = capacity;
  }

  std::unique_ptr<char[]> text_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace loom
