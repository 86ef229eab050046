#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "components/note_kinds.h"

// How a text file of another tool is written. Texts are UTF-8; columns count from 0, lines from 1.
namespace loom::dialect {

inline constexpr const char* kBlanks = "blanks";  // separator: a run of blanks and tabs
inline constexpr std::size_t kMaxColumns = 4096;  // columns behind it are counted, not looked at

enum class LineEnd { kLf, kCrLf, kCr };

// How bytes become records of cells.
struct Form {
  std::string encoding = "UTF-8";  // a name of iconv
  bool has_bom = false;
  LineEnd line_end = LineEnd::kLf;
  std::string separator = ",";  // one character, kBlanks, or empty: one column
  char quote = 0;               // 0: none
  char looked_for_quote = 0;    // where there was none: what would have been one
  char escape = 0;              // stands before a quote inside of quotes; 0: the quote is doubled
  std::string comment;          // what a comment line starts with; empty: there are none
  char decimal = '.';
  bool trims_blanks = false;       // blanks behind separators belong to no cell
  bool ends_open = false;          // a separator ends the rows
  std::int64_t preamble_rows = 0;  // lines before the header, comments not counted
  std::int64_t header_rows = 1;
  std::int64_t footer_rows = 0;
};

// What a person has decided; never guessed then.
struct Overrides {
  std::optional<std::string> encoding;
  std::optional<std::string> separator;
  std::optional<std::string> quote;  // one character, or empty: none
  std::optional<std::string> escape;
  std::optional<std::string> comment;
  std::optional<std::int64_t> preamble_rows;
  std::optional<std::int64_t> header_rows;
  std::optional<std::int64_t> footer_rows;
  std::optional<char> decimal;
  std::optional<std::vector<std::string>> nulls;
  std::optional<std::vector<std::string>> time_columns;  // names or numbers; empty: no time
  std::optional<std::string> time_layout;
  std::optional<std::string> zone;
  std::optional<std::vector<std::string>> latitude_columns;
  std::optional<std::vector<std::string>> longitude_columns;
};

enum class Kind { kEmpty, kInteger, kNumber, kText, kTime, kLatitude, kLongitude };
const char* KindName(Kind kind);

// A place of a file, for what was left out or not understood.
struct Place {
  std::uint64_t line = 0;
  std::int64_t column = -1;  // -1: the whole line
  std::string text;
};

// Places of one kind: the first ones are kept, all are counted.
struct Remark {
  static constexpr std::size_t kPlacesKept = 10;
  const NoteKind* kind;
  std::uint64_t count = 0;
  std::vector<Place> places = {};
  void Add(std::uint64_t line, std::int64_t column, std::string_view text);
};

class Remarks {
 public:
  Remark& operator[](const NoteKind& kind);
  const std::vector<Remark>& all() const { return all_; }

 private:
  std::vector<Remark> all_;
};

struct ColumnFinding {
  std::string name;
  std::string unit;  // of its cells or its heading
  Kind kind = Kind::kEmpty;
  std::string layout;  // of a time
  std::string zone;
  std::vector<std::string> nulls;  // words that stand for nothing
  std::uint64_t empty = 0;         // cells with nothing, those words included
  std::uint64_t bad = 0;           // cells that do not fit the kind
  double confidence = 0;
};

struct TimeFinding {
  std::vector<std::size_t> columns;
  std::string layout;
  std::string zone;                                     // empty: none stated
  std::vector<std::string> ambiguous;                   // layouts that fit every cell as well
  bool has_date = true;                                 // else seconds of the day
  std::optional<double> first, last, earliest, latest;  // seconds since 1970
  std::uint64_t valid = 0;
};

struct PositionFinding {
  std::vector<std::size_t> columns;  // the value, then its letter where that has a column
  std::string form;
  std::optional<double> min, max;  // degrees
  std::uint64_t valid = 0;
};

struct Alternative {
  std::string separator;
  double confidence = 0;
};

// What an answer is about.
enum class Subject { kEncoding, kSeparator, kHeader, kTime, kLatitude, kLongitude, kColumns, kRows };

// An answer that is not sure.
struct Doubt {
  Subject subject;
  double confidence = 0;
};

inline constexpr double kSure = 0.9;  // confidence from which on an answer is sure

struct Findings {
  Form form;
  std::uint64_t rows = 0;
  std::vector<ColumnFinding> columns;
  std::optional<TimeFinding> time;
  std::optional<PositionFinding> latitude;
  std::optional<PositionFinding> longitude;
  double confidence = 0;      // of the answer that is least sure
  std::vector<Doubt> doubts;  // the least sure first
  std::vector<Alternative> alternatives;
  Remarks remarks;
  std::vector<std::vector<std::string>> first_rows;  // up to ten, of at most 256 cells
};

}  // namespace loom::dialect
