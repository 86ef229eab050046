#include "text/dialect/byte_source.h"

#include <algorithm>
#include <cstring>
#include <span>

#include "platform/encoding.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kBlockBytes = std::size_t{1} << 20;

// Where the bytes from `at` on stop being ASCII.
std::size_t EndOfAscii(std::string_view text, std::size_t at) {
  constexpr std::uint64_t kHigh = 0x8080808080808080u;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + at, 8);
    if ((word & kHigh) != 0) break;
  }
  while (at < text.size() && static_cast<unsigned char>(text[at]) < 0x80) ++at;
  return at;
}

}  // namespace

int Utf8LengthAt(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80) return 1;
  const int length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  for (int i = 1; i < length; ++i) {
    if (at + static_cast<std::size_t>(i) >= text.size()) return -1;
    if ((static_cast<unsigned char>(text[at + static_cast<std::size_t>(i)]) & 0xC0) != 0x80) return 0;
  }
  return length;
}

bool MemorySource::Append(std::string& out) {
  if (text_.empty()) return false;
  const std::string_view block = text_.substr(0, kBlockBytes);
  out += block;
  text_.remove_prefix(block.size());
  return true;
}

FileSource::FileSource(const InputFile& file, const std::string& encoding, std::uint64_t limit_bytes)
    : file_(file), end_(std::min(file.Size(), limit_bytes)) {
  file.ExpectSequentialReading();
  unsigned char mark[3] = {};
  const std::size_t got = file.ReadUpTo(0, std::as_writable_bytes(std::span(mark)));
  const bool is_utf8 = encoding == "UTF-8" || encoding == "ASCII";
  if (is_utf8 && got == 3 && mark[0] == 0xEF && mark[1] == 0xBB && mark[2] == 0xBF) position_ = 3;
  if (encoding.starts_with("UTF-16") && got >= 2 &&
      ((mark[0] == 0xFF && mark[1] == 0xFE) || (mark[0] == 0xFE && mark[1] == 0xFF)))
    position_ = 2;
  if (!is_utf8) transcoder_ = std::make_unique<Transcoder>("UTF-8", encoding);
  position_ = std::min(position_, end_);
}

std::string FileSource::Place() const { return GbkPathToNative(file_.path()) + ": "; }

bool FileSource::Append(std::string& out) {
  if (position_ >= end_) return false;
  const auto size = static_cast<std::size_t>(std::min<std::uint64_t>(kBlockBytes, end_ - position_));
  const std::size_t start = out.size();
  if (transcoder_) {
    block_.resize(size);
    file_.ReadAt(position_, std::as_writable_bytes(std::span(block_)));
    position_ += size;
    transcoder_->Append(block_, position_ == end_, kReplacement, out);
  } else {
    out += carried_;
    const std::size_t read_at = out.size();
    carried_.clear();
    out.resize(read_at + size);
    file_.ReadAt(position_, std::as_writable_bytes(std::span(out).subspan(read_at)));
    const std::size_t high = EndOfAscii(out, start);
    if (high < out.size()) {
      first_high_ = std::min<std::uint64_t>(first_high_, position_ + (high - std::min(high, read_at)));
      block_.assign(out, high);
      out.resize(high);
      AppendUtf8(block_, position_ + size == end_, out);
    }
    position_ += size;
  }
  DropZeroBytes(out, start);
  return true;
}

void FileSource::AppendUtf8(std::string_view block, bool is_last, std::string& out) {
  std::size_t done = 0;
  for (std::size_t at = 0; at < block.size();) {
    at = EndOfAscii(block, at);
    if (at >= block.size()) break;
    const int length = Utf8LengthAt(block, at);
    if (length > 0) {
      at += static_cast<std::size_t>(length);
      continue;
    }
    out += block.substr(done, at - done);
    if (length < 0 && !is_last) {
      carried_ = block.substr(at);
      return;
    }
    out += kReplacement;
    ++bad_count_;
    done = ++at;
  }
  out += block.substr(done);
}

void FileSource::DropZeroBytes(std::string& out, std::size_t from) {
  if (std::memchr(out.data() + from, 0, out.size() - from) == nullptr) return;
  const auto removed = std::remove(out.begin() + static_cast<std::ptrdiff_t>(from), out.end(), '\0');
  zero_bytes_ += static_cast<std::uint64_t>(out.end() - removed);
  out.erase(removed, out.end());
}

}  // namespace loom::dialect
