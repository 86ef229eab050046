#pragma once

#include <charconv>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Numbers and their texts, the same under every locale.
namespace loom {

// The shortest text that reads back to the same value; "nan", "inf" and "-inf".
std::string NumberText(float value);
std::string NumberText(double value);
// With a fixed number of decimals.
std::string NumberText(double value, int decimals);

// The whole text is a decimal integer that fits, with an optional sign and nothing else.
template <std::integral T>
std::optional<T> ParseInt(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  T value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// The whole text is a number ("nan" and "inf" included) that a double can hold.
std::optional<double> ParseDouble(std::string_view text);

// The number that the text starts with, behind blanks; 0 without one. Too large values stop at the type's limits.
std::int32_t PrefixInt(std::string_view text);
// Likewise; decimal digits, point and exponent only. Too large values become infinite, too small ones 0.
double PrefixDouble(std::string_view text);

}  // namespace loom
