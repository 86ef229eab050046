#include "text/import/byte_order_mark.h"

#include <algorithm>

#include "components/note_kinds.h"

namespace loom {
namespace {

constexpr std::string_view kMarks[] = {"\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"};
constexpr const NoteKind& kByteOrderMark = "byte-order mark"_note;

bool IsNoted(const CString& path) {
  return std::ranges::any_of(CurrentNotes().kinds(), [&](const Notes::Kind& kind) {
    return kind.name() == kByteOrderMark.name &&
           std::ranges::any_of(kind.places, [&](const Note& note) { return note.file == path; });
  });
}

}  // namespace

bool HasByteOrderMark(std::string_view first_line) {
  return std::ranges::any_of(kMarks, [&](std::string_view mark) { return first_line.starts_with(mark); });
}

void NoteByteOrderMark(const CString& path, std::string_view first_line) {
  if (!HasByteOrderMark(first_line) || IsNoted(path)) return;
  CurrentNotes().Add(kByteOrderMark, path, "line 1",
                     "the file is in Unicode but read in GBK; the mark belongs to the first cell");
}

}  // namespace loom
