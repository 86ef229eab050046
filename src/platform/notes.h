#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"

namespace loom {

// One place where input was skipped, defaulted or mended. Texts but the path are UTF-8.
struct Note {
  CString file;
  std::string at;    // "byte 1234", "line 7", "Sheet1 row 3"
  std::string what;  // value found and what was expected
};

enum class NoteSeverity {
  kTold,    // nothing is lost or changed
  kMended,  // something was changed, or taken by default
  kLost,    // something was left out
};

// A kind of note, as the program declares it. All texts are UTF-8 and live as long as the program.
struct NoteKind {
  std::string_view name;  // short, English; machines know the kind by it
  NoteSeverity severity;
  std::string_view chinese_name;
  std::string_view meaning;
  std::string_view advice;  // what a person can do
};

// Collects notes by kind: the first places of a kind are kept, the rest is counted.
class Notes {
 public:
  static constexpr std::size_t kPlacesKept = 10;

  struct Kind {
    const NoteKind* declared = nullptr;
    std::uint64_t count = 0;
    std::vector<Note> places;

    std::string_view name() const { return declared->name; }
  };

  void Add(const NoteKind& kind, const CString& file, std::uint64_t position_bytes, std::string_view what);
  void Add(const NoteKind& kind, const CString& file, std::string_view at, std::string_view what);

  // Counts places that are not told one by one.
  void AddMore(const NoteKind& kind, std::uint64_t count) { KindOf(kind).count += count; }

  const std::vector<Kind>& kinds() const { return kinds_; }  // in order of first appearance
  std::uint64_t Count(std::string_view name) const;
  bool IsEmpty() const { return kinds_.empty(); }
  void Clear();

 private:
  Kind& KindOf(const NoteKind& kind);
  Note* NextPlace(const NoteKind& kind);  // null when enough places are kept

  std::vector<Kind> kinds_;
  std::map<std::string_view, std::size_t> index_;  // by name
};

// Where the module and the host put their notes.
Notes& CurrentNotes();

// Makes `notes` the current collector for its lifetime.
class NotesScope {
 public:
  explicit NotesScope(Notes& notes);
  NotesScope(const NotesScope&) = delete;
  NotesScope& operator=(const NotesScope&) = delete;
  ~NotesScope();

 private:
  Notes* previous_;
};

}  // namespace loom
