#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace loom {

// Size and check value of what went through a compressor.
struct DeflateTotals {
  std::uint64_t raw_bytes = 0;
  std::uint64_t packed_bytes = 0;
  std::uint32_t crc = 0;  // of the raw bytes
};

// Compresses a stream of bytes (raw deflate) piece by piece.
class DeflateWriter {
 public:
  using Sink = std::function<void(std::span<const std::byte>)>;
  explicit DeflateWriter(Sink sink);
  DeflateWriter(const DeflateWriter&) = delete;
  DeflateWriter& operator=(const DeflateWriter&) = delete;
  ~DeflateWriter();

  void Write(std::string_view bytes);
  // Ends the stream; nothing may be written behind it.
  DeflateTotals Finish();

 private:
  struct State;
  void Run();

  Sink sink_;
  std::unique_ptr<State> state_;
  DeflateTotals totals_;
};

// A stretch of a deflate stream that holds the bytes as they are and leaves the stream open on a byte border: streams
// that follow it are read as its continuation.
std::string StoredDeflateBlocks(std::string_view bytes);

std::uint32_t Crc32(std::string_view bytes);
// Check value of two stretches one after the other, of which the second has the given length.
std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, std::uint64_t second_bytes);

}  // namespace loom
