#include "host/streams/value_text.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace loom {
namespace {

// Within these limits a number is written without an exponent.
constexpr double kLowestFixed = 1e-7;
constexpr double kHighestFixed = 1e15;

template <class Number>
void AppendShortest(Number value, std::string& out) {
  if (!std::isfinite(value)) {
    out += "-255";
    return;
  }
  const double magnitude = std::abs(static_cast<double>(value));
  const bool is_fixed = magnitude == 0 || (magnitude >= kLowestFixed && magnitude < kHighestFixed);
  char text[64];
  char* end = std::to_chars(text, text + sizeof text, value,
                            is_fixed ? std::chars_format::fixed : std::chars_format::scientific)
                  .ptr;
  if (!is_fixed) {
    if (auto* const plus = static_cast<char*>(std::memchr(text, '+', static_cast<std::size_t>(end - text)))) {
      std::memmove(plus, plus + 1, static_cast<std::size_t>(end - plus - 1));
      --end;
    }
  }
  out.append(text, static_cast<std::size_t>(end - text));
}

// `digits` is the value times 10 to the power of `decimals`.
void AppendDecimal(bool is_negative, std::uint32_t digits, int decimals, std::string& out) {
  char text[24];
  char* const point = text + 12;
  char* start = point;
  // Whole part leftwards, fraction behind the point.
  std::uint32_t power = 1;
  for (int i = 0; i < decimals; ++i) power *= 10;
  std::uint32_t whole = decimals == 0 ? digits : digits / power;
  std::uint32_t fraction = decimals == 0 ? 0 : digits - whole * power;
  do {
    *--start = static_cast<char>('0' + whole % 10);
    whole /= 10;
  } while (whole != 0);
  if (is_negative) *--start = '-';
  char* end = point;
  if (decimals > 0) {
    *point = '.';
    end = point + 1 + decimals;
    for (char* at = end; at-- > point + 1; fraction /= 10) *at = static_cast<char>('0' + fraction % 10);
  }
  out.append(start, static_cast<std::size_t>(end - start));
}

// Most measured values have a few decimals: the first count of decimals at which the nearest decimal number lies inside
// the interval that rounds to the value is the shortest text. False where the general way is needed.
bool AppendFewDecimals(float value, std::string& out) {
  constexpr double kPowers[] = {1, 10, 100, 1000, 10000, 100000};
  constexpr std::uint32_t kMantissaBits = (1u << 23) - 1;
  constexpr double kMostDigits = 4e9;
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t exponent = (bits >> 23) & 0xFF;
  // Zero, powers of two (whose interval is lopsided) and whatever is very small or large.
  if ((bits & kMantissaBits) == 0 || exponent < 127 - 14 || exponent > 127 + 23) return false;
  const double magnitude = std::abs(static_cast<double>(value));
  // Half the distance between neighbouring floats: 2^(exponent - 127 - 24).
  const double half_step = std::bit_cast<double>(static_cast<std::uint64_t>(exponent - 127 - 24 + 1023) << 52);
  for (int decimals = 0; decimals < static_cast<int>(std::size(kPowers)); ++decimals) {
    const double scaled = magnitude * kPowers[decimals];  // exact: 24 and at most 12 significant bits
    if (scaled > kMostDigits) return false;
    auto digits = static_cast<std::int64_t>(scaled + 0.5);
    if (static_cast<double>(digits) - scaled == 0.5)
      digits &= ~std::int64_t{1};  // of two that are as near, the even one
    if (std::abs(static_cast<double>(digits) - scaled) >= half_step * kPowers[decimals]) continue;
    AppendDecimal(value < 0, static_cast<std::uint32_t>(digits), decimals, out);
    return true;
  }
  return false;
}

}  // namespace

void AppendNumber(float value, std::string& out) {
  if (!AppendFewDecimals(value, out)) AppendShortest(value, out);
}

void AppendNumber(double value, std::string& out) { AppendShortest(value, out); }

void AppendNumber(std::int32_t value, std::string& out) {
  char text[16];
  const char* const end = std::to_chars(text, text + sizeof text, value).ptr;
  out.append(text, static_cast<std::size_t>(end - text));
}

}  // namespace loom
