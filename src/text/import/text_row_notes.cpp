#include "text/import/text_row_notes.h"

#include "components/note_kinds.h"
#include "platform/encoding.h"

namespace loom {
namespace {

// clang-format off
constexpr const NoteKind* kFlawNotes[] = {
    &"row without a valid time"_note,
    &"columns missing in the line"_note,
    &"no number"_note,
    &"number cut"_note,
    &"no truth value"_note,
    &"text cut"_note,
    &"more cells than titles"_note,
    &"quoted cell"_note,
    &"cell in UTF-8"_note,
    &"text behind the time"_note,
    &"colons in the time"_note,
    &"time of day out of range"_note,
    &"no such date"_note,
    &"time beyond the year 9999"_note,
};
// clang-format on
static_assert(std::size(kFlawNotes) == static_cast<std::size_t>(RowFlaw::kCount));

}  // namespace

void RowNotes::HandOver(Notes& notes) const {
  for (std::size_t at = 0; at < kinds_.size(); ++at) {
    const Kind& kind = kinds_[at];
    for (const Note& place : kind.places) notes.Add(*kFlawNotes[at], place.file, place.at, place.what);
    if (kind.count > kind.places.size()) notes.AddMore(*kFlawNotes[at], kind.count - kind.places.size());
  }
}

std::string QuotedCell(std::string_view gbk) {
  const std::string text = GbkToUtf8(gbk.substr(0, kQuotedBytes));
  return "'" + text + (gbk.size() > kQuotedBytes ? "...'" : "'");
}

}  // namespace loom
