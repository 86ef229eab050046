#include "apps/text_files/dialect_notes.h"

#include "platform/notes.h"

namespace loom {

void NoteRemarks(const dialect::Remarks& remarks, const CString& path) {
  for (const dialect::Remark& remark : remarks.all()) {
    for (const dialect::Place& place : remark.places) {
      const std::string at = "line " + std::to_string(place.line) +
                             (place.column >= 0 ? ", column " + std::to_string(place.column) : std::string());
      CurrentNotes().Add(*remark.kind, path, at, "\"" + place.text + "\"");
    }
    if (remark.count > remark.places.size()) CurrentNotes().AddMore(*remark.kind, remark.count - remark.places.size());
  }
}

}  // namespace loom
