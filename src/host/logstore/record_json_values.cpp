#include <charconv>
#include <cmath>

#include "host/logstore/record_value_json.h"
#include "platform/byte_reader.h"
#include "platform/encoding.h"
#include "platform/hexadecimal.h"

namespace loom::records {
namespace {

// Whether `\xHH` stands at `at`.
bool IsByteEscape(std::string_view text, std::size_t at) {
  return text.substr(at, 2) == "\\x" && HexByteAt(text, at + 2);
}

void AppendByteEscape(std::string& out, char byte) {
  out += "\\x";
  AppendHex(out, static_cast<std::uint8_t>(byte), kSmallHex);
}

std::string EscapedToGbk(std::string_view utf8) {
  std::string gbk;
  std::size_t start = 0;
  for (std::size_t at = 0; at < utf8.size();) {
    if (!IsByteEscape(utf8, at)) {
      ++at;
      continue;
    }
    gbk += Utf8ToGbk(utf8.substr(start, at - start)).str();
    gbk += static_cast<char>(*HexByteAt(utf8, at + 2));
    start = at += 4;
  }
  return gbk += Utf8ToGbk(utf8.substr(start)).str();
}

// A backslash that would read as the start of `\xHH` is written as such itself.
std::string GbkToEscaped(std::string_view gbk) {
  std::string utf8;
  std::size_t start = 0;
  for (std::size_t at = 0; at < gbk.size();) {
    if (!IsByteEscape(gbk, at)) {
      at += GbkCharLength(gbk, at);
      continue;
    }
    utf8 += GbkToUtf8(gbk.substr(start, at - start));
    AppendByteEscape(utf8, '\\');
    start = ++at;
  }
  return utf8 += GbkToUtf8(gbk.substr(start));
}

// For texts in which valid and invalid bytes mix in a way that GbkToEscaped cannot tell apart.
std::string GbkToPlainEscapes(std::string_view gbk) {
  std::string utf8;
  for (const char c : gbk) {
    if (static_cast<unsigned char>(c) >= 0x80 || c == '\\') {
      AppendByteEscape(utf8, c);
    } else {
      utf8 += c;
    }
  }
  return utf8;
}

bool ReadsBackAs(std::string_view utf8, std::string_view gbk) {
  try {
    return EscapedToGbk(utf8) == gbk;
  } catch (const EncodingError&) {
    return false;  // not a text that Utf8ToGbk takes: the caller has another form for it
  }
}

template <class Number>
double ParsedShortest(Number value) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof(text), value).ptr;
  double parsed = 0.0;
  std::from_chars(text, end, parsed);
  return parsed;
}

// "nan", "inf" and "-inf"; false for anything else.
bool SpecialFromJson(const Json& value, double& number) {
  const auto* text = value.get_ptr<const std::string*>();
  if (!text) return false;
  if (*text == "nan") return number = std::numeric_limits<double>::quiet_NaN(), true;
  if (*text == "inf") return number = std::numeric_limits<double>::infinity(), true;
  if (*text == "-inf") return number = -std::numeric_limits<double>::infinity(), true;
  return false;
}

Json SpecialToJson(double value) { return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf"; }

std::byte* Keep(std::string_view bytes, std::pmr::memory_resource& arena) {
  auto* kept = static_cast<std::byte*>(arena.allocate(bytes.size(), 1));
  std::memcpy(kept, bytes.data(), bytes.size());
  return kept;
}

}  // namespace

std::int64_t SignedFromJson(const Json& value, const JsonPlace& place, std::int64_t least, std::int64_t greatest) {
  if (!value.is_number_integer()) place.Fail("a whole number is expected");
  const bool too_large =
      value.is_number_unsigned() && value.get<std::uint64_t>() > static_cast<std::uint64_t>(greatest);
  const std::int64_t number = too_large ? 0 : value.get<std::int64_t>();
  if (too_large || number < least || number > greatest) {
    place.Fail(value.dump() + " is outside " + std::to_string(least) + " to " + std::to_string(greatest));
  }
  return number;
}

std::uint64_t UnsignedFromJson(const Json& value, const JsonPlace& place, std::uint64_t greatest) {
  if (!value.is_number_integer()) place.Fail("a whole number is expected");
  if (!value.is_number_unsigned() || value.get<std::uint64_t>() > greatest) {
    place.Fail(value.dump() + " is outside 0 to " + std::to_string(greatest));
  }
  return value.get<std::uint64_t>();
}

double DoubleFromJson(const Json& value, const JsonPlace& place) {
  double number = 0.0;
  if (value.is_number()) return value.get<double>();
  if (!SpecialFromJson(value, number)) place.Fail("a number, \"nan\", \"inf\" or \"-inf\" is expected");
  return number;
}

float FloatFromJson(const Json& value, const JsonPlace& place) {
  const double number = DoubleFromJson(value, place);
  const auto narrow = static_cast<float>(number);
  if (std::isinf(narrow) && !std::isinf(number)) place.Fail(value.dump() + " is outside the range of a float");
  return narrow;
}

RecordText TextFromJson(const Json& value, const JsonPlace& place, std::pmr::memory_resource& arena) {
  const auto* utf8 = value.get_ptr<const std::string*>();
  if (!utf8) place.Fail("a text is expected");
  std::string gbk;
  try {
    gbk = EscapedToGbk(*utf8);
  } catch (const EncodingError& error) {
    place.Fail(error.reason());
  }
  if (gbk.empty()) return {};
  return {reinterpret_cast<const char*>(Keep(gbk, arena)), gbk.size()};
}

std::span<const std::byte> BytesFromJson(const Json& value, const JsonPlace& place, std::pmr::memory_resource& arena) {
  const auto* hex = value.get_ptr<const std::string*>();
  if (!hex || hex->size() % 2 != 0) place.Fail("a text of two hexadecimal digits per byte is expected");
  std::string bytes;
  for (std::size_t at = 0; at < hex->size(); at += 2) {
    const auto byte = HexByteAt(*hex, at);
    if (!byte) place.Fail("\"" + hex->substr(at, 2) + "\" is no hexadecimal byte");
    bytes += static_cast<char>(*byte);
  }
  if (bytes.empty()) return {};
  return {Keep(bytes, arena), bytes.size()};
}

Json DoubleToJson(double value) { return std::isfinite(value) ? Json(value) : SpecialToJson(value); }

// The double whose shortest text is the shortest text of the float, as long as it reads back to the float.
Json FloatToJson(float value) {
  if (!std::isfinite(value)) return SpecialToJson(value);
  const double shortest = ParsedShortest(value);
  return static_cast<float>(shortest) == value ? shortest : static_cast<double>(value);
}

Json TextToJson(RecordText gbk) {
  std::string utf8 = GbkToEscaped(gbk);
  return ReadsBackAs(utf8, gbk) ? utf8 : GbkToPlainEscapes(gbk);
}

Json BytesToJson(std::span<const std::byte> bytes) { return HexText(bytes, kSmallHex); }

}  // namespace loom::records
