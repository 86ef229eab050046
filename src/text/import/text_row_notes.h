#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"
#include "platform/notes.h"

namespace loom {

// What the rows of a text file lost, mended or took by default.
enum class RowFlaw {
  kTime,
  kColumns,
  kNoNumber,
  kNumberCut,
  kNoTruth,
  kTextCut,
  kMoreCells,
  kQuoted,
  kUtf8,
  kTimeRest,
  kTimeColons,
  kTimeRange,
  kNoSuchDate,
  kTimeTooLate,
  kCount
};

// Counts flaws of rows and keeps the first places of each kind. Nothing is told before the import has kept its rows.
class RowNotes {
 public:
  explicit RowNotes(const CString& path) : path_(path) {}

  void SetLine(std::uint64_t number) { line_ = number; }  // of the file, from 1
  // `what` is asked for the place only while places are kept; UTF-8.
  template <class What>
  void Add(RowFlaw flaw, What what) {
    Kind& kind = kinds_[static_cast<std::size_t>(flaw)];
    if (++kind.count <= Notes::kPlacesKept) kind.places.push_back({path_, "line " + std::to_string(line_), what()});
  }

  void HandOver(Notes& notes) const;

 private:
  struct Kind {
    std::uint64_t count = 0;
    std::vector<Note> places;
  };

  CString path_;
  std::uint64_t line_ = 0;
  std::array<Kind, static_cast<std::size_t>(RowFlaw::kCount)> kinds_;
};

inline constexpr std::size_t kQuotedBytes = 60;

// The cell in quotes, UTF-8, shortened when it is long.
std::string QuotedCell(std::string_view gbk);

}  // namespace loom
