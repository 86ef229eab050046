#include "text/dialect/text_dialect.h"

#include <algorithm>

namespace loom::dialect {
namespace {

constexpr std::size_t kTextShown = 80;

}  // namespace

const char* KindName(Kind kind) {
  constexpr const char* kNames[] = {"empty", "integer", "number", "text", "time", "latitude", "longitude"};
  return kNames[static_cast<std::size_t>(kind)];
}

void Remark::Add(std::uint64_t line, std::int64_t column, std::string_view text) {
  ++count;
  if (places.size() >= kPlacesKept) return;
  std::size_t length = std::min(text.size(), kTextShown);
  while (length < text.size() && length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) --length;
  places.push_back({line, column, std::string(text.substr(0, length)) + (length < text.size() ? "..." : "")});
}

Remark& Remarks::operator[](const NoteKind& kind) {
  const auto found = std::ranges::find(all_, &kind, &Remark::kind);
  if (found != all_.end()) return *found;
  return all_.emplace_back(Remark{.kind = &kind});
}

}  // namespace loom::dialect
