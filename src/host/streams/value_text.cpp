#include "host/streams/value_text.h"

#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

#include "platform/digits.h"

namespace loom {
namespace {

// Within these limits a number is written without an exponent.
constexpr double kLowestFixed = 1e-7;
constexpr double kHighestFixed = 1e15;
constexpr std::string_view kNotFinite = "-255";

template <class Number>
char* PutShortest(Number value, char* out) {
  if (!std::isfinite(value)) return out + kNotFinite.copy(out, kNotFinite.size());
  const double magnitude = std::abs(static_cast<double>(value));
  const bool is_fixed = magnitude == 0 || (magnitude >= kLowestFixed && magnitude < kHighestFixed);
  char* end =
      std::to_chars(out, out + kNumberRoom, value, is_fixed ? std::chars_format::fixed : std::chars_format::scientific)
          .ptr;
  if (!is_fixed) {
    if (auto* const plus = static_cast<char*>(std::memchr(out, '+', static_cast<std::size_t>(end - out)))) {
      std::memmove(plus, plus + 1, static_cast<std::size_t>(end - plus - 1));
      --end;
    }
  }
  return end;
}

constexpr int kMostDecimals = 9;
constexpr std::array<std::uint32_t, kMostDecimals + 1> kPowersOfTen = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

// Point and digits behind it: `fraction` is what is behind the point times 10 to the power of `decimals`.
char* PutFraction(std::uint32_t fraction, std::size_t decimals, char* out) {
  const std::uint32_t all = fraction * kPowersOfTen[kMostDecimals - decimals];
  const std::uint32_t thousands = all / 1000;
  *out = '.';
  char* at = PutThreeDigits(thousands / 1000, out + 1);
  at = PutThreeDigits(thousands % 1000, at);
  PutThreeDigits(all - thousands * 1000, at);
  return out + 1 + decimals;
}

// Most measured values have a few decimals: the first count of decimals at which the nearest decimal number lies inside
// the interval that rounds to the value gives the shortest text. Null where the general way is needed.
char* PutFewDecimals(float value, char* out) {
  constexpr std::uint32_t kMantissaBits = (1u << 23) - 1;
  constexpr double kHighest = 1 << 24;
  // Added to a number and taken away again it leaves the nearest whole number, of two that are as near the even one.
  constexpr double kToWhole = 1ll << 52;
  const auto bits = std::bit_cast<std::uint32_t>(value);
  const std::uint32_t exponent = (bits >> 23) & 0xFF;
  const double magnitude = std::abs(static_cast<double>(value));
  if (!(magnitude < kHighest)) return nullptr;
  const auto whole = static_cast<std::int32_t>(magnitude);
  const double rest = magnitude - whole;
  *out = '-';
  char* const start = out + (bits >> 31);
  if (rest == 0) return PutInteger(static_cast<std::uint32_t>(whole), start);
  // Powers of two, whose interval is lopsided, and whatever is very small.
  if ((bits & kMantissaBits) == 0 || exponent < 127 - 14) return nullptr;
  // Half the distance between neighbouring floats: 2^(exponent - 127 - 24).
  const double half_step = std::bit_cast<double>(static_cast<std::uint64_t>(exponent - 127 - 24 + 1023) << 52);
  for (std::size_t decimals = 1; decimals <= kMostDecimals; ++decimals) {
    const double power = kPowersOfTen[decimals];
    const double scaled = rest * power;  // exact: 24 and at most 21 significant bits
    const double nearest = scaled + kToWhole - kToWhole;
    if (std::abs(nearest - scaled) >= half_step * power) continue;
    return PutFraction(static_cast<std::uint32_t>(static_cast<std::int64_t>(nearest)), decimals,
                       PutInteger(static_cast<std::uint32_t>(whole), start));
  }
  return nullptr;
}

}  // namespace

char* PutNumber(float value, char* out) {
  char* const end = PutFewDecimals(value, out);
  return end != nullptr ? end : PutShortest(value, out);
}

char* PutNumber(double value, char* out) { return PutShortest(value, out); }

// The quotient of a whole number and a power of ten, both exact, is the double nearest to that decimal number.
double DecimalOf(float value) {
  constexpr double kMostExact = 1ll << 53;
  if (!std::isfinite(value)) return std::numeric_limits<double>::quiet_NaN();
  const double exact = value;
  for (double power = 1; power <= 1e9; power *= 10) {
    const double scaled = std::nearbyint(exact * power);
    if (std::abs(scaled) >= kMostExact) break;
    if (static_cast<float>(scaled / power) == value) return scaled / power;
  }
  char text[kNumberRoom];
  double decimal = 0;
  std::from_chars(text, PutNumber(value, text), decimal);
  return decimal;
}

char* PutNumber(std::int32_t value, char* out) {
  const auto bits = static_cast<std::uint32_t>(value);
  *out = '-';
  return PutInteger(value < 0 ? 0 - bits : bits, out + (value < 0 ? 1 : 0));
}

}  // namespace loom
