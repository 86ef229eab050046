#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/file.h"
#include "platform/transcoder.h"

namespace loom::dialect {

// Gives a text as UTF-8, block by block, without byte-order mark and zero bytes.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // Appends the next block; false at the end.
  virtual bool Append(std::string& out) = 0;
  // "PATH: " for messages, in the system's encoding; empty for what is no file.
  virtual std::string Place() const { return {}; }
};

class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::string_view utf8) : text_(utf8) {}
  bool Append(std::string& out) override;

 private:
  std::string_view text_;
};

// A file in any encoding. A byte sequence that is none of it becomes U+FFFD and is counted.
class FileSource final : public ByteSource {
 public:
  // `encoding` as iconv names it, or "ASCII" (read as UTF-8). `limit_bytes`: no more of the file than that.
  FileSource(const InputFile& file, const std::string& encoding, std::uint64_t limit_bytes = UINT64_MAX);
  bool Append(std::string& out) override;
  std::string Place() const override;

  std::uint64_t BadCount() const { return transcoder_ ? transcoder_->BadCount() : bad_count_; }
  std::uint64_t ZeroBytes() const { return zero_bytes_; }
  // Position of the first byte that is no ASCII; UINT64_MAX while there was none.
  std::uint64_t FirstHighByte() const { return first_high_; }

 private:
  void AppendUtf8(std::string_view block, bool is_last, std::string& out);
  void DropZeroBytes(std::string& out, std::size_t from);

  const InputFile& file_;
  std::uint64_t end_;
  std::uint64_t position_ = 0;
  std::unique_ptr<Transcoder> transcoder_;  // null: the file is UTF-8
  std::string block_;
  std::string carried_;  // start of a UTF-8 character
  std::uint64_t bad_count_ = 0;
  std::uint64_t zero_bytes_ = 0;
  std::uint64_t first_high_ = UINT64_MAX;
};

// Length of the valid UTF-8 character at `at`; 0: none, -1: cut off by the end.
int Utf8LengthAt(std::string_view text, std::size_t at);

inline constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

}  // namespace loom::dialect
