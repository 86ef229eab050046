#include "platform/notes.h"

#include <utility>

namespace loom {
namespace {

Notes*& CurrentNotesPointer() {
  static Notes standing;
  static Notes* current = &standing;
  return current;
}

}  // namespace

Notes::Kind& Notes::KindOf(const NoteKind& kind) {
  const auto [found, is_new] = index_.emplace(kind.name, kinds_.size());
  if (is_new) kinds_.push_back({.declared = &kind, .count = 0, .places = {}});
  return kinds_[found->second];
}

Note* Notes::NextPlace(const NoteKind& kind) {
  Kind& entry = KindOf(kind);
  ++entry.count;
  return entry.places.size() < kPlacesKept ? &entry.places.emplace_back() : nullptr;
}

void Notes::Add(const NoteKind& kind, const CString& file, std::uint64_t position_bytes, std::string_view what) {
  if (Note* place = NextPlace(kind)) *place = {file, "byte " + std::to_string(position_bytes), std::string(what)};
}

void Notes::Add(const NoteKind& kind, const CString& file, std::string_view at, std::string_view what) {
  if (Note* place = NextPlace(kind)) *place = {file, std::string(at), std::string(what)};
}

std::uint64_t Notes::Count(std::string_view name) const {
  const auto found = index_.find(name);
  return found == index_.end() ? 0 : kinds_[found->second].count;
}

void Notes::Clear() {
  kinds_.clear();
  index_.clear();
}

Notes& CurrentNotes() { return *CurrentNotesPointer(); }

NotesScope::NotesScope(Notes& notes) : previous_(std::exchange(CurrentNotesPointer(), &notes)) {}
NotesScope::~NotesScope() { CurrentNotesPointer() = previous_; }

}  // namespace loom
