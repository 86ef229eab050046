#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace loom {

// Turns a stream of bytes in one encoding into another, block by block; a character may be cut by the end of a block.
class Transcoder {
 public:
  // Names as iconv knows them. Throws Error for an encoding that this system does not have.
  Transcoder(const std::string& to, const std::string& from);
  Transcoder(const Transcoder&) = delete;
  Transcoder& operator=(const Transcoder&) = delete;
  ~Transcoder();

  static bool Knows(const std::string& encoding);

  // Appends what `bytes` become. A sequence that cannot be converted becomes `replacement`, which is in the target's
  // encoding, and is counted. `is_last`: what is cut off now is bad, too.
  void Append(std::string_view bytes, bool is_last, std::string_view replacement, std::string& out);
  std::uint64_t BadCount() const { return bad_count_; }

 private:
  void* descriptor_;
  std::size_t unit_bytes_;  // passed over where a sequence is bad
  std::string carried_;     // start of a character whose rest is in the next block
  std::uint64_t bad_count_ = 0;
};

}  // namespace loom
