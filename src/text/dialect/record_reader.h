#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "text/dialect/byte_source.h"
#include "text/dialect/text_dialect.h"

namespace loom::dialect {

// One record, or a part of a very long one. Its texts are valid until the next one is read.
struct Record {
  std::vector<std::string_view> cells;
  std::uint64_t line = 0;        // the first one
  std::uint64_t line_count = 1;  // a quoted cell may hold line ends
  std::size_t first_cell = 0;    // number of cells[0]; not 0 in a part that continues a record
  bool goes_on = false;          // the next part belongs to the same record
  bool is_blank = false;         // nothing but blanks in its line
  bool is_comment = false;
  bool has_quoted = false;           // a cell stood in quotes
  bool has_stray = false;            // a quote that opens or closes nothing
  std::size_t padded_quotes = 0;     // cells in quotes that stand behind blanks
  std::string_view plain_line = {};  // as it stands in the text, where it was cut at separators only

  // Cells without the empty one behind a separator that ends the line.
  std::size_t CountWithoutEnd() const {
    return first_cell + cells.size() - (cells.size() > 1 && cells.back().empty() ? 1 : 0);
  }
};

// Cuts a text into records, in linear time and with bounded memory. Where quotes are not as they should be, the reading
// that gives as many cells as the other records have is taken; a quote that stays open is a character like others.
class RecordReader {
 public:
  // `width`: cells of a record where that is known, else 0.
  RecordReader(ByteSource& source, const Form& form, std::size_t width = 0);

  // False at the end. Throws Error for a cell that is too long to be one.
  bool Next(Record& record);

  std::uint64_t LfCount() const { return lf_count_; }
  std::uint64_t CrLfCount() const { return crlf_count_; }
  std::uint64_t CrCount() const { return cr_count_; }

 private:
  enum class Quoting { kTolerant, kStrict, kEscaped, kLoose, kLiteral };
  struct Span {
    std::size_t begin;
    std::size_t end;
    bool is_quoted;
    bool is_escaped;  // holds quotes to be undone
  };
  // Remembers the next occurrence of a character, so that each byte is looked at once.
  struct Seeker {
    char c;
    std::size_t from = 0;
    std::size_t next = 0;  // first occurrence at or behind `from`
    bool is_known = false;
  };

  // A line of the buffer: its text, and where the next one starts.
  struct Line {
    std::size_t begin;
    std::size_t end;
    std::size_t next;
  };

  static bool IsBlank(char c) { return c == ' ' || c == '\t'; }
  bool FillTo(std::size_t needed_bytes);
  void Refill();
  std::size_t Seek(Seeker& seeker, std::size_t from);
  std::size_t LineEnd(std::size_t from, std::size_t& next_line);
  Line FindLine();
  void Cut(Record& record, Line& line);
  void CutPlain(std::string_view line, std::vector<std::string_view>& cells) const;
  static void CutBlanks(std::string_view line, std::vector<std::string_view>& cells);
  static void Trim(std::vector<std::string_view>& cells);
  void CutOffPart(Record& record, Line& line);
  void TakePart(Record& record);
  bool FindPart(Record& record, Line& line);

  std::size_t SplitWithQuotes(std::size_t begin, std::size_t end);
  std::size_t SplitQuoted(std::size_t begin, std::size_t end, Quoting quoting);
  std::size_t FindClose(std::size_t begin, std::size_t open, std::size_t end, Quoting quoting);
  std::size_t CloseOf(std::size_t open, std::size_t limit, Quoting quoting, bool& has_loose_end) const;
  std::size_t PassLineEnds(std::size_t end, std::size_t close);
  std::size_t TakeQuoted(std::size_t open, std::size_t close, std::size_t end);
  bool IsCellEnd(std::size_t at) const;
  bool IsEscaped(std::size_t open, std::size_t at, char escape) const;
  bool LooksLikeLines(std::size_t cell_begin, std::size_t end);
  bool FitsWidth(bool may_end_open) const;
  void HandOver(Record& record);
  void Unescape(Span& span);

  ByteSource& source_;
  char separator_ = 0;  // 0: one column
  bool is_blanks_ = false;
  char quote_;
  char escape_;
  std::string comment_;
  bool trims_blanks_;
  std::size_t width_;

  std::string buffer_;
  std::size_t position_ = 0;
  bool is_at_end_ = false;
  Seeker lf_{'\n'};
  Seeker cr_{'\r'};
  Seeker quote_seeker_;
  std::vector<Span> spans_;
  std::uint64_t line_ = 1;
  std::uint64_t extra_lines_ = 0;  // line ends within the newest record
  std::size_t cells_before_ = 0;   // of the record that goes on
  bool saw_stray_ = false;
  std::size_t padded_quotes_ = 0;  // of the newest split
  std::uint64_t consumed_ = 0;     // bytes of records so far
  std::uint64_t wasted_ = 0;       // bytes looked at in vain
  std::uint64_t lf_count_ = 0;
  std::uint64_t crlf_count_ = 0;
  std::uint64_t cr_count_ = 0;
};

}  // namespace loom::dialect
