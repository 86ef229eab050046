#include "platform/encoding.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <optional>

#include "platform/code_page.h"
#include "platform/hexadecimal.h"

namespace loom {
namespace {

// One direction of conversion; descriptors are per thread and live as long as the thread.
class Converter {
 public:
  Converter(const char* to, const char* from) : descriptor_(iconv_open(to, from)) {
    if (descriptor_ == reinterpret_cast<iconv_t>(-1))
      throw Error(std::string("this system cannot convert text from ") + from + " to " + to);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;
  ~Converter() { iconv_close(descriptor_); }

  // Converts `input`; what cannot be converted is handed to `on_bad` (input, position, output), which appends what
  // stands for it and returns the number of bytes to pass over, or throws.
  template <class OnBad>
  std::string Convert(std::string_view input, OnBad on_bad) {
    std::string output;
    iconv(descriptor_, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(input.data());  // iconv does not write through it
    std::size_t in_left = input.size();
    while (in_left > 0) {
      const bool whole = ConvertRun(&in, &in_left, &output);
      if (whole || in_left == 0) continue;
      const std::size_t skip = std::min(on_bad(input, input.size() - in_left, &output), in_left);
      in += skip;
      in_left -= skip;
    }
    return output;
  }

 private:
  // False when it stopped at input that is invalid, cut off or has no counterpart.
  bool ConvertRun(char** in, std::size_t* in_left, std::string* output) {
    char block[4096];
    char* out = block;
    std::size_t out_left = sizeof(block);
    const std::size_t result = iconv(descriptor_, in, in_left, &out, &out_left);
    const int error = errno;
    output->append(block, sizeof(block) - out_left);
    return result != static_cast<std::size_t>(-1) || error == E2BIG;
  }

  iconv_t descriptor_;
};

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string Hex(char byte) {
  std::string text = "\\x";
  AppendHex(text, static_cast<std::uint8_t>(byte));
  return text;
}

// Bytes of the UTF-8 character at `at`; 1 where there is none.
std::size_t Utf8CharLength(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  std::size_t length = lead < 0xC2 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 1;
  if (at + length > text.size()) return 1;
  for (std::size_t i = 1; i < length; ++i) {
    if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return 1;
  }
  return length;
}

std::size_t ThrowBadUtf8(std::string_view input, std::size_t at, std::string*) {
  const std::size_t length = Utf8CharLength(input, at);
  if (length == 1) throw EncodingError(at, "invalid UTF-8 byte " + Hex(input[at]));
  throw EncodingError(at, "the character '" + std::string(input.substr(at, length)) + "' has no place in GBK");
}

std::size_t ThrowBadUtf16(std::string_view input, std::size_t at, std::string*) {
  throw EncodingError(at, input.size() - at < 2 ? "half a UTF-16 unit" : "a UTF-16 unit that cannot be converted");
}

Converter& Utf8ToGbkConverter() {
  thread_local Converter converter("GBK", "UTF-8");
  return converter;
}

Converter& GbkToUtf8Converter() {
  thread_local Converter converter("UTF-8", "GBK");
  return converter;
}

// A byte of a native name that GBK cannot express travels as one character of the code page's user-defined area,
// which converts to nothing else: 0x80-0xBF under lead 0xFD, 0xC0-0xFF under lead 0xFE, trails from 0xA1.
constexpr unsigned char kLowByteLead = 0xFD;
constexpr unsigned char kHighByteLead = 0xFE;
constexpr unsigned char kFirstTrail = 0xA1;

void AppendRawByte(unsigned char byte, std::string* gbk) {
  *gbk += static_cast<char>(byte < 0xC0 ? kLowByteLead : kHighByteLead);
  *gbk += static_cast<char>(kFirstTrail + (byte & 0x3F));
}

// The byte that a double-byte character carries.
std::optional<char> CarriedByte(std::string_view gbk) {
  const auto lead = static_cast<unsigned char>(gbk[0]);
  const int low_bits = static_cast<unsigned char>(gbk[1]) - kFirstTrail;
  if ((lead != kLowByteLead && lead != kHighByteLead) || low_bits < 0 || low_bits >= 0x40) return std::nullopt;
  return static_cast<char>((lead == kLowByteLead ? 0x80 : 0xC0) + low_bits);
}

// Converts a name character by character; `carried` gives what stands for a carried byte, `bad` for one that is no GBK.
template <class Carried, class Bad>
std::string ConvertName(std::string_view gbk, Carried carried, Bad bad) {
  if (IsAscii(gbk)) return std::string(gbk);
  if (gbk.find_first_of("\xFD\xFE") == std::string_view::npos) return GbkToUtf8Converter().Convert(gbk, bad);
  std::string text;
  for (std::size_t at = 0; at < gbk.size();) {
    const std::string_view character = gbk.substr(at, GbkCharLength(gbk, at));
    const std::optional<char> byte = character.size() == 2 ? CarriedByte(character) : std::nullopt;
    text += byte ? carried(*byte) : GbkToUtf8Converter().Convert(character, bad);
    at += character.size();
  }
  return text;
}

std::size_t KeepByte(std::string_view input, std::size_t at, std::string* output) {
  *output += input[at];
  return 1;
}

std::size_t HexByte(std::string_view input, std::size_t at, std::string* output) {
  *output += Hex(input[at]);
  return 1;
}

constexpr std::size_t kHexLength = 4;  // "\xHH"

// The byte from 0x80 on that `\xHH` at `at` spells.
std::optional<char> SpelledByte(std::string_view text, std::size_t at) {
  if (at + kHexLength > text.size() || text[at] != '\\' || text[at + 1] != 'x') return std::nullopt;
  const auto byte = HexByteAt(text, at + 2);
  return byte && *byte >= 0x80 ? std::optional(static_cast<char>(*byte)) : std::nullopt;
}

}  // namespace

std::string GbkToUtf8(std::string_view gbk) {
  if (IsAscii(gbk)) return std::string(gbk);
  return GbkToUtf8Converter().Convert(gbk, HexByte);
}

CString Utf8ToGbk(std::string_view utf8) {
  if (IsAscii(utf8)) return CString(utf8);
  return CString(Utf8ToGbkConverter().Convert(utf8, ThrowBadUtf8));
}

CString Utf8ToGbkOr(std::string_view utf8, char replacement) {
  return CString(Utf8ToGbkConverter().Convert(utf8, [&](std::string_view input, std::size_t at, std::string* output) {
    *output += replacement;
    return Utf8CharLength(input, at);
  }));
}

CString Utf16LeToGbk(std::string_view bytes) {
  thread_local Converter converter("GBK", "UTF-16LE");
  return CString(converter.Convert(bytes, ThrowBadUtf16));
}

std::string GbkToUtf16Le(std::string_view gbk) {
  thread_local Converter converter("UTF-16LE", "GBK");
  return converter.Convert(gbk, [](std::string_view input, std::size_t at, std::string*) -> std::size_t {
    throw EncodingError(at, "invalid GBK byte " + Hex(input[at]));
  });
}

std::string CodePageToUtf8(unsigned code_page, std::string_view bytes) {
  constexpr unsigned kMacRoman = 10000;
  const std::string name = code_page == kMacRoman ? "MACINTOSH" : "CP" + std::to_string(code_page);
  return Converter("UTF-8", name.c_str())
      .Convert(bytes, [&](std::string_view, std::size_t position, std::string*) -> std::size_t {
        throw EncodingError(position, "a byte that the code page " + name + " does not have");
      });
}

std::string Utf16ToUtf8(std::string_view bytes) {
  thread_local Converter little("UTF-8", "UTF-16LE");
  thread_local Converter big("UTF-8", "UTF-16BE");
  if (bytes.starts_with("\xFE\xFF")) return big.Convert(bytes.substr(2), ThrowBadUtf16);
  return little.Convert(bytes.starts_with("\xFF\xFE") ? bytes.substr(2) : bytes, ThrowBadUtf16);
}

std::string GbkPathToNative(const CString& path) {
  std::string slashed;  // no double-byte character is cut: the rear half of one may be a '\\', too
  const std::string_view text = path.view();
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t length = GbkCharLength(text, at);
    slashed += length == 1 && text[at] == '\\' ? std::string_view("/") : text.substr(at, length);
    at += length;
  }
  return GbkNameToNative(slashed);
}

std::string GbkNameToNative(std::string_view gbk) {
  return ConvertName(
      gbk, [](char byte) { return std::string(1, byte); }, KeepByte);
}

std::string GbkNameToUtf8(std::string_view gbk) { return ConvertName(gbk, Hex, HexByte); }

CString NativeNameToGbk(std::string_view name) { return NativePathToGbk(WithBytes(name)); }

std::string WithBytes(std::string_view name) {
  std::string bytes;
  for (std::size_t at = 0; at < name.size();) {
    const std::optional<char> byte = SpelledByte(name, at);
    bytes += byte.value_or(name[at]);
    at += byte ? kHexLength : 1;
  }
  return bytes;
}

std::string WithCharacters(std::string_view utf8) {
  std::string text;
  for (std::size_t at = 0; at < utf8.size();) {
    std::string run;
    for (std::size_t next = at; const auto byte = SpelledByte(utf8, next); next += kHexLength) run += *byte;
    if (run.empty()) {
      text += utf8[at++];
      continue;
    }
    for (std::size_t of_run = 0; of_run < run.size();) {
      const std::size_t length = Utf8CharLength(run, of_run);
      text += length > 1 ? run.substr(of_run, length) : Hex(run[of_run]);
      of_run += length;
    }
    at += run.size() * kHexLength;
  }
  return text;
}

CString NativePathToGbk(std::string_view native) {
  if (IsAscii(native)) return CString(native);
  return CString(Utf8ToGbkConverter().Convert(native, [](std::string_view input, std::size_t at, std::string* output) {
    const std::size_t length = Utf8CharLength(input, at);
    for (const char c : input.substr(at, length)) AppendRawByte(static_cast<unsigned char>(c), output);
    return length;
  }));
}

}  // namespace loom
