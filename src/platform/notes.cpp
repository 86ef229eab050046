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

Notes::Kind& Notes::KindOf(std::string_view kind) {
  auto found = index_.find(kind);
  if (found == index_.end()) {
    found = index_.emplace(kind, kinds_.size()).first;
    kinds_.push_back({.name = std::string(kind), .count = 0, .places = {}});
  }
  return kinds_[found->second];
}

Note* Notes::NextPlace(std::string_view kind) {
  Kind& entry = KindOf(kind);
  ++entry.count;
  return entry.places.size() < kPlacesKept ? &entry.places.emplace_back() : nullptr;
}

void Notes::Add(std::string_view kind, const CString& file, std::uint64_t position_bytes, std::string_view what) {
  if (Note* place = NextPlace(kind)) *place = {file, "byte " + std::to_string(position_bytes), std::string(what)};
}

void Notes::Add(std::string_view kind, const CString& file, std::string_view at, std::string_view what) {
  if (Note* place = NextPlace(kind)) *place = {file, std::string(at), std::string(what)};
}

std::uint64_t Notes::Count(std::string_view kind) const {
  const auto found = index_.find(kind);
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
