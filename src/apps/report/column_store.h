#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "apps/json.h"

namespace loom::report {

// The columns of the page one behind the other, each at a multiple of 8 bytes. Every Add gives the column's
// description:
//   at     position in bytes
//   count  of numbers
//   type   "i8", "i16", "i32", "f32", "f64" or "u8", little-endian
//   step   of integers: each one is the difference to the one before, in units of this; the type's lowest number stands
//          for a number that is absent, and the next difference counts from the last one that was not
//   base   what the first difference counts from, in the same units
class ColumnStore {
 public:
  // NaN: absent. Numbers that `step` (a power of ten) does not hit are rounded to it.
  Json AddStepped(std::span<const double> numbers, double step);
  // As whole steps where these give back the numbers as floats, otherwise as they are.
  Json AddNumbers(std::span<const double> numbers);
  Json AddBytes(std::string_view bytes);

  const std::string& bytes() const { return bytes_; }

 private:
  Json Append(const char* type, std::string_view raw, std::size_t count);

  std::string bytes_;
};

// Deflated without a head, in base64.
std::string Packed(const std::string& bytes);

}  // namespace loom::report
