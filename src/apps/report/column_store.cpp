#include "apps/report/column_store.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "host/workbook/deflate_writer.h"

namespace loom::report {
namespace {

constexpr double kSteps[] = {1.0, 0.1, 0.01, 0.001};
constexpr double kMostSteps = 1e9;  // differences of such numbers have 32 bits

template <class Number>
std::string_view RawBytes(const std::vector<Number>& numbers) {
  return {reinterpret_cast<const char*>(numbers.data()), numbers.size() * sizeof(Number)};
}

template <class To>
std::vector<To> Narrowed(const std::vector<std::int32_t>& differences) {
  std::vector<To> narrow;
  narrow.reserve(differences.size());
  for (const std::int32_t difference : differences)
    narrow.push_back(difference == std::numeric_limits<std::int32_t>::min() ? std::numeric_limits<To>::min()
                                                                            : static_cast<To>(difference));
  return narrow;
}

bool AreWholeSteps(std::span<const double> numbers, double step) {
  const double per_unit = std::round(1.0 / step);
  return std::ranges::all_of(numbers, [&](double number) {
    if (std::isnan(number)) return true;
    const double steps = std::round(number * per_unit);
    return std::abs(steps) < kMostSteps && static_cast<float>(steps / per_unit) == static_cast<float>(number);
  });
}

struct Stepped {
  std::int64_t base = 0;
  std::vector<std::int32_t> differences;
};

// Nothing where a difference needs more than 32 bits.
std::optional<Stepped> Differences(std::span<const double> numbers, double step) {
  const double per_unit = std::round(1.0 / step);
  Stepped result;
  result.differences.reserve(numbers.size());
  std::optional<std::int64_t> last;
  for (const double number : numbers) {
    if (std::isnan(number)) {
      result.differences.push_back(std::numeric_limits<std::int32_t>::min());
      continue;
    }
    if (!(std::abs(number * per_unit) < 1e15)) return std::nullopt;
    const std::int64_t steps = std::llround(number * per_unit);
    if (!last) last = result.base = steps;
    if (std::abs(steps - *last) > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
    result.differences.push_back(static_cast<std::int32_t>(steps - *last));
    last = steps;
  }
  return result;
}

std::int32_t Widest(const std::vector<std::int32_t>& differences) {
  std::int32_t widest = 0;
  for (const std::int32_t difference : differences) {
    if (difference != std::numeric_limits<std::int32_t>::min()) widest = std::max(widest, std::abs(difference));
  }
  return widest;
}

std::string Base64(std::string_view bytes) {
  static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    std::uint32_t three = 0;
    for (std::size_t i = 0; i < 3; ++i)
      three = three << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0u);
    for (std::size_t i = 0; i < 4; ++i) text += at + i > bytes.size() ? '=' : kDigits[three >> (18 - 6 * i) & 63];
  }
  return text;
}

}  // namespace

Json ColumnStore::Append(const char* type, std::string_view raw, std::size_t count) {
  bytes_.resize((bytes_.size() + 7) / 8 * 8);
  Json json{{"at", bytes_.size()}, {"count", count}, {"type", type}};
  bytes_ += raw;
  return json;
}

Json ColumnStore::AddStepped(std::span<const double> numbers, double step) {
  const auto stepped = Differences(numbers, step);
  if (!stepped)
    return Append("f64", {reinterpret_cast<const char*>(numbers.data()), numbers.size_bytes()}, numbers.size());
  const std::int32_t widest = Widest(stepped->differences);
  Json json = widest <= std::numeric_limits<std::int8_t>::max()
                  ? Append("i8", RawBytes(Narrowed<std::int8_t>(stepped->differences)), numbers.size())
              : widest <= std::numeric_limits<std::int16_t>::max()
                  ? Append("i16", RawBytes(Narrowed<std::int16_t>(stepped->differences)), numbers.size())
                  : Append("i32", RawBytes(stepped->differences), numbers.size());
  json["step"] = step;
  json["base"] = stepped->base;
  return json;
}

Json ColumnStore::AddNumbers(std::span<const double> numbers) {
  for (const double step : kSteps) {
    if (AreWholeSteps(numbers, step)) return AddStepped(numbers, step);
  }
  const std::vector<float> floats(numbers.begin(), numbers.end());
  return Append("f32", RawBytes(floats), numbers.size());
}

Json ColumnStore::AddBytes(std::string_view bytes) { return Append("u8", bytes, bytes.size()); }

std::string Packed(const std::string& bytes) {
  std::string packed;
  DeflateWriter writer([&](std::span<const std::byte> piece) {
    packed.append(reinterpret_cast<const char*>(piece.data()), piece.size());
  });
  writer.Write(bytes);
  writer.Finish();
  return Base64(packed);
}

}  // namespace loom::report
