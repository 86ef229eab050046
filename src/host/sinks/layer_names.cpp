#include "host/sinks/layer_names.h"

#include <algorithm>
#include <set>

#include "platform/encoding.h"

namespace loom {
namespace {

// More bytes than that a file system may not take.
constexpr std::size_t kMostNameBytes = 180;

bool IsAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsAsciiDigit(char c) { return c >= '0' && c <= '9'; }
bool IsContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::string Folded(std::string text) {
  std::ranges::transform(text, text.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return text;
}

// One '_' for every character that is no letter, digit or '_'.
std::string AsciiName(const std::string& name) {
  std::string ascii;
  for (const char c : name) {
    if (IsContinuation(c)) continue;
    ascii += IsAsciiLetter(c) || IsAsciiDigit(c) ? c : '_';
  }
  if (ascii.empty() || !IsAsciiLetter(ascii.front())) ascii.insert(0, "F");
  return ascii;
}

std::string WithTail(const std::string& name, const std::string& tail, std::size_t most_bytes) {
  const std::size_t room = most_bytes == 0 ? name.size() : most_bytes - std::min(most_bytes, tail.size());
  return HeadOfUtf8(name, room) + tail;
}

std::string NumberAtEnd(const std::string& name) {
  std::size_t at = name.size();
  while (at > 0 && IsAsciiDigit(name[at - 1])) --at;
  return name.substr(at);
}

std::string Cut(const std::string& name, std::size_t most_bytes) {
  if (most_bytes == 0 || name.size() <= most_bytes) return name;
  const std::string number = NumberAtEnd(name);
  return number.size() < most_bytes ? WithTail(name, number, most_bytes) : HeadOfUtf8(name, most_bytes);
}

class NamesTaken {
 public:
  explicit NamesTaken(std::span<const std::string_view> taken) {
    for (const std::string_view name : taken) names_.insert(Folded(std::string(name)));
  }
  // The name, or the first free one of "name_2", "name_3" ...
  std::string Take(const std::string& name, std::size_t most_bytes) {
    std::string free = Cut(name, most_bytes);
    for (int serial = 2; !names_.insert(Folded(free)).second; ++serial)
      free = WithTail(name, "_" + std::to_string(serial), most_bytes);
    return free;
  }

 private:
  std::set<std::string> names_;
};

bool IsBadInFileNames(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F ||
         std::string_view("/\\:*?\"<>|").find(c) != std::string::npos;
}

}  // namespace

std::string HeadOfUtf8(const std::string& text, std::size_t bytes) {
  if (text.size() <= bytes) return text;
  while (bytes > 0 && IsContinuation(text[bytes])) --bytes;
  return text.substr(0, bytes);
}

std::vector<std::string> UniqueNames(const std::vector<std::string>& names, const NameRules& rules) {
  NamesTaken taken(rules.taken);
  std::vector<std::string> unique;
  for (const std::string& name : names) {
    const std::string spelled = rules.ascii_only ? AsciiName(name) : name;
    unique.push_back(taken.Take(spelled.empty() ? "unnamed" : spelled, rules.most_bytes));
  }
  return unique;
}

std::vector<CString> FileNamesOf(const CString& title, const std::vector<std::string>& layers,
                                 const CString& extension) {
  std::vector<std::string> names;
  for (std::string layer : layers) {
    std::ranges::replace_if(layer, IsBadInFileNames, '_');
    names.push_back(HeadOfUtf8(layer, kMostNameBytes));
  }
  std::vector<CString> files;
  for (const std::string& name : UniqueNames(names, {.most_bytes = kMostNameBytes}))
    files.push_back(title + "_" + NativeNameToGbk(name) + "." + extension);
  return files;
}

}  // namespace loom
