#include "text/import/text_row_notes.h"

#include "platform/encoding.h"

namespace loom {
namespace {

// clang-format off
constexpr const char* kNames[] = {
    "row without a valid time",
    "columns missing in the line",
    "no number",
    "number cut",
    "no truth value",
    "text cut",
    "more cells than titles",
    "quoted cell",
    "cell in UTF-8",
    "text behind the time",
    "colons in the time",
    "time of day out of range",
    "no such date",
    "time beyond the year 9999",
};
// clang-format on
static_assert(std::size(kNames) == static_cast<std::size_t>(RowFlaw::kCount));

}  // namespace

void RowNotes::HandOver(Notes& notes) const {
  for (std::size_t at = 0; at < kinds_.size(); ++at) {
    const Kind& kind = kinds_[at];
    for (const Note& place : kind.places) notes.Add(kNames[at], place.file, place.at, place.what);
    if (kind.count > kind.places.size()) notes.AddMore(kNames[at], kind.count - kind.places.size());
  }
}

std::string QuotedCell(std::string_view gbk) {
  const std::string text = GbkToUtf8(gbk.substr(0, kQuotedBytes));
  return "'" + text + (gbk.size() > kQuotedBytes ? "...'" : "'");
}

}  // namespace loom
