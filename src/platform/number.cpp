#include "platform/number.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/characters.h"

namespace loom {
namespace {

bool TakeSign(std::string_view* text) {
  if (text->empty() || (text->front() != '-' && text->front() != '+')) return false;
  const bool minus = text->front() == '-';
  text->remove_prefix(1);
  return minus;
}

// What a decimal number without sign becomes that from_chars finds out of range: the power of ten of its first digit
// tells which way it left.
double OutOfRange(std::string_view digits) {
  const std::size_t mantissa_end = std::min(digits.find_first_of("eE"), digits.size());
  const std::string_view mantissa = digits.substr(0, mantissa_end);
  const std::int64_t exponent = mantissa_end < digits.size() ? PrefixInt(digits.substr(mantissa_end + 1)) : 0;
  const auto first = static_cast<std::int64_t>(mantissa.find_first_of("123456789"));
  const auto point = static_cast<std::int64_t>(std::min(mantissa.find('.'), mantissa.size()));
  return point - first + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

template <class T>
std::string ShortestText(T value) {
  if (std::isnan(value)) return "nan";  // whatever its sign bit
  char text[64];
  return std::string(text, std::to_chars(text, text + sizeof(text), value).ptr);
}

}  // namespace

std::string NumberText(float value) { return ShortestText(value); }
std::string NumberText(double value) { return ShortestText(value); }

std::string NumberText(double value, int decimals) {
  if (!std::isfinite(value)) return ShortestText(value);
  std::string text(static_cast<std::size_t>(std::numeric_limits<double>::max_exponent10 + 4 + std::max(decimals, 0)),
                   0);
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
  text.resize(static_cast<std::size_t>(end.ptr - text.data()));
  return text;
}

std::optional<double> ParseDouble(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

std::int32_t PrefixInt(std::string_view text) {
  text = TrimmedLeft(text);
  const bool minus = TakeSign(&text);
  if (text.empty() || !IsDigit(text.front())) return 0;
  std::int64_t value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) value = std::numeric_limits<std::int64_t>::max();
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(minus ? -value : value, Limits::min(), Limits::max()));
}

double PrefixDouble(std::string_view text) {
  text = TrimmedLeft(text);
  const bool minus = TakeSign(&text);
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) return 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range)
    value = OutOfRange({text.data(), static_cast<std::size_t>(end - text.data())});
  return minus ? -value : value;
}

}  // namespace loom
