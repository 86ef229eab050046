#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"

namespace loom {

enum class ByteOrder { kLittle, kBig };

// Bytes of a text as a span, for ByteReader and the file functions.
inline std::span<const std::byte> AsBytes(std::string_view text) { return std::as_bytes(std::span(text)); }
inline std::string_view AsText(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

namespace detail {
template <class T>
constexpr T SwapBytes(T value) {
  if constexpr (sizeof(T) == 1) return value;
  if constexpr (sizeof(T) == 2) return static_cast<T>(__builtin_bswap16(value));
  if constexpr (sizeof(T) == 4) return static_cast<T>(__builtin_bswap32(value));
  if constexpr (sizeof(T) == 8) return static_cast<T>(__builtin_bswap64(value));
}
}  // namespace detail

// Reads numbers and bytes out of a span that it does not own. Every read checks what is left and throws FormatError
// with the position in the file when it is too little.
class ByteReader {
 public:
  // `base_position` is where the span starts in its file.
  explicit ByteReader(std::span<const std::byte> bytes, std::uint64_t base_position = 0,
                      ByteOrder order = ByteOrder::kLittle)
      : bytes_(bytes), base_(base_position), order_(order) {}
  explicit ByteReader(std::string_view bytes, std::uint64_t base_position = 0, ByteOrder order = ByteOrder::kLittle)
      : ByteReader(AsBytes(bytes), base_position, order) {}

  std::uint8_t U8(const char* what = "byte") { return Number<std::uint8_t>(what); }
  std::uint16_t U16(const char* what = "16-bit number") { return Number<std::uint16_t>(what); }
  std::uint32_t U32(const char* what = "32-bit number") { return Number<std::uint32_t>(what); }
  std::uint64_t U64(const char* what = "64-bit number") { return Number<std::uint64_t>(what); }
  std::int8_t I8(const char* what = "byte") { return static_cast<std::int8_t>(U8(what)); }
  std::int16_t I16(const char* what = "16-bit number") { return static_cast<std::int16_t>(U16(what)); }
  std::int32_t I32(const char* what = "32-bit number") { return static_cast<std::int32_t>(U32(what)); }
  std::int64_t I64(const char* what = "64-bit number") { return static_cast<std::int64_t>(U64(what)); }
  float F32(const char* what = "float") { return std::bit_cast<float>(U32(what)); }
  double F64(const char* what = "double") { return std::bit_cast<double>(U64(what)); }

  // The next `count` bytes, borrowed from the span.
  std::span<const std::byte> Bytes(std::size_t count, const char* what = "bytes") {
    Require(count, what);
    const auto part = bytes_.subspan(at_, count);
    at_ += count;
    return part;
  }
  std::string_view Text(std::size_t count, const char* what = "text") { return AsText(Bytes(count, what)); }
  // A reader over the next `count` bytes that keeps file position and byte order.
  ByteReader Part(std::size_t count, const char* what = "part") {
    const std::uint64_t start = Position();
    return ByteReader(Bytes(count, what), start, order_);
  }
  void Skip(std::size_t count, const char* what = "bytes to skip") {
    Require(count, what);
    at_ += count;
  }

  bool Has(std::size_t count) const { return count <= bytes_.size() - at_; }
  bool AtEnd() const { return at_ == bytes_.size(); }
  std::size_t Remaining() const { return bytes_.size() - at_; }
  std::size_t Offset() const { return at_; }              // from the start of the span
  std::uint64_t Position() const { return base_ + at_; }  // from the start of the file
  ByteOrder order() const { return order_; }
  void SetOrder(ByteOrder order) { order_ = order; }

 private:
  template <class T>
  T Number(const char* what) {
    Require(sizeof(T), what);
    T value;
    std::memcpy(&value, bytes_.data() + at_, sizeof(T));
    at_ += sizeof(T);
    return (order_ == ByteOrder::kBig) == (std::endian::native == std::endian::big) ? value : detail::SwapBytes(value);
  }
  void Require(std::size_t count, const char* what) const {
    if (!Has(count)) [[unlikely]]
      RanOut(count, what);
  }
  [[noreturn, gnu::cold, gnu::noinline]] void RanOut(std::size_t count, const char* what) const {
    throw FormatError(Position(), std::string(what) + " needs " + std::to_string(count) + " bytes, " +
                                      std::to_string(Remaining()) + " are left");
  }

  std::span<const std::byte> bytes_;
  std::size_t at_ = 0;
  std::uint64_t base_;
  ByteOrder order_;
};

// Appends little-endian numbers and bytes to a buffer that it does not own.
class ByteWriter {
 public:
  explicit ByteWriter(std::vector<std::byte>& out) : out_(out) {}

  void U8(std::uint8_t value) { Number(value); }
  void U16(std::uint16_t value) { Number(value); }
  void U32(std::uint32_t value) { Number(value); }
  void U64(std::uint64_t value) { Number(value); }
  void I8(std::int8_t value) { U8(static_cast<std::uint8_t>(value)); }
  void I16(std::int16_t value) { U16(static_cast<std::uint16_t>(value)); }
  void I32(std::int32_t value) { U32(static_cast<std::uint32_t>(value)); }
  void I64(std::int64_t value) { U64(static_cast<std::uint64_t>(value)); }
  void F32(float value) { U32(std::bit_cast<std::uint32_t>(value)); }
  void F64(double value) { U64(std::bit_cast<std::uint64_t>(value)); }
  void Bytes(std::span<const std::byte> bytes) { out_.insert(out_.end(), bytes.begin(), bytes.end()); }
  void Text(std::string_view text) { Bytes(AsBytes(text)); }
  void Zeros(std::size_t count) { out_.resize(out_.size() + count); }
  // Zeros up to the next multiple of `alignment` of the buffer's size.
  void Align(std::size_t alignment) { Zeros((alignment - out_.size() % alignment) % alignment); }

  std::size_t Size() const { return out_.size(); }
  // Overwrites what was written at `at`: lengths that are known later. at + 4 <= Size().
  void PatchU32(std::size_t at, std::uint32_t value) { Store(at, value); }

 private:
  template <class T>
  void Number(T value) {
    const std::size_t at = out_.size();
    out_.resize(at + sizeof(T));
    Store(at, value);
  }
  template <class T>
  void Store(std::size_t at, T value) {
    if constexpr (std::endian::native == std::endian::big) value = detail::SwapBytes(value);
    std::memcpy(out_.data() + at, &value, sizeof(T));
  }

  std::vector<std::byte>& out_;
};

}  // namespace loom
