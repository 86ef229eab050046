#include "text/dialect/shape_finder.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "text/dialect/cell_value.h"
#include "text/dialect/known_names.h"
#include "text/dialect/record_reader.h"
#include "text/dialect/separator_finder.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kRecordsSeen = 2000;
constexpr std::size_t kHeadRecords = 80;  // among which the header is looked for
constexpr std::size_t kCellsSeen = 512;   // of a record
constexpr double kTypedShare = 0.7;
constexpr std::size_t kMostHeaderRows = 5;

enum class CellType : char { kEmpty, kNull, kTyped, kText };

struct SeenRecord {
  std::vector<CellType> types;
  std::vector<std::string> cells;  // of the first records only
  std::string start;               // of the line, likewise
  std::size_t width = 0;           // without an empty last cell
  std::size_t raw_width = 0;
  std::size_t filled = 0;
  std::uint64_t line = 0;
  bool is_blank = false;
  bool has_quoted = false;
};

CellType TypeOf(std::string_view cell) {
  const std::string_view text = Trimmed(cell);
  if (text.empty()) return CellType::kEmpty;
  if (IsNullWord(text)) return CellType::kNull;
  const char last = text.back();
  const bool may_be = IsDigit(text.front()) || text.front() == '-' || text.front() == '+' || text.front() == '.' ||
                      IsDigit(last) || last == 'M';
  if (!may_be) return CellType::kText;
  return ParseNumber(text, ',') || ParseTimeText(text) ? CellType::kTyped : CellType::kText;
}

std::vector<SeenRecord> SeeRecords(std::string_view sample, const Form& form, std::size_t width) {
  std::vector<SeenRecord> seen;
  MemorySource source(sample);
  RecordReader reader(source, form, width);
  Record record;
  while (seen.size() < kRecordsSeen && reader.Next(record)) {
    if (record.is_comment || record.first_cell > 0) continue;
    SeenRecord& one = seen.emplace_back();
    one.line = record.line;
    one.is_blank = record.is_blank;
    if (record.is_blank) continue;
    one.has_quoted = record.has_quoted;
    one.width = record.CountWithoutEnd();
    one.raw_width = record.cells.size();
    for (std::size_t at = 0; at < std::min(record.cells.size(), kCellsSeen); ++at) {
      one.types.push_back(TypeOf(record.cells[at]));
      if (one.types.back() != CellType::kEmpty) ++one.filled;
    }
    if (seen.size() > kHeadRecords) continue;
    for (const std::string_view cell : record.cells) {
      if (one.cells.size() >= kMaxColumns) break;
      one.cells.emplace_back(cell);
    }
  }
  return seen;
}

// Columns whose cells are mostly numbers or times.
std::vector<bool> TypedColumns(const std::vector<SeenRecord>& records, std::size_t from) {
  std::vector<std::size_t> typed;
  std::vector<std::size_t> texts;
  for (std::size_t at = from; at < records.size(); ++at) {
    const auto& types = records[at].types;
    if (types.size() > typed.size()) typed.resize(types.size()), texts.resize(types.size());
    for (std::size_t column = 0; column < types.size(); ++column) {
      if (types[column] == CellType::kTyped) ++typed[column];
      if (types[column] == CellType::kText) ++texts[column];
    }
  }
  std::vector<bool> is_typed(typed.size());
  for (std::size_t column = 0; column < typed.size(); ++column) {
    const double all = static_cast<double>(typed[column] + texts[column]);
    is_typed[column] = typed[column] > 0 && static_cast<double>(typed[column]) >= kTypedShare * all;
  }
  return is_typed;
}

struct Fit {
  std::size_t typed = 0;
  std::size_t texts = 0;
  bool IsData() const { return typed > 0 && typed >= texts; }
};

Fit FitOf(const SeenRecord& record, const std::vector<bool>& is_typed) {
  Fit fit;
  for (std::size_t column = 0; column < std::min(record.types.size(), is_typed.size()); ++column) {
    if (!is_typed[column]) continue;
    if (record.types[column] == CellType::kTyped) ++fit.typed;
    if (record.types[column] == CellType::kText) ++fit.texts;
  }
  return fit;
}

bool IsWide(const SeenRecord& record, std::size_t width) {
  if (record.is_blank) return false;
  return width <= 2 ? record.width >= width : record.width * 10 >= width * 6;
}

bool AreNames(const SeenRecord& record) {
  std::set<std::string> seen;
  std::size_t texts = 0;
  for (std::size_t at = 0; at < record.cells.size(); ++at) {
    if (record.types.size() > at && record.types[at] == CellType::kTyped) return false;
    const std::string cell(Trimmed(record.cells[at]));
    if (cell.empty()) continue;
    if (cell.size() > 60 || !seen.insert(cell).second) return false;
    ++texts;
  }
  return texts > 0;
}

struct Layout {
  std::size_t header = 0;  // of the records seen
  std::size_t header_count = 0;
  std::size_t data = 0;
  double confidence = 0;
};

// Where no column has a type: names are known, or do not come again below.
Layout LayoutOfTexts(const std::vector<SeenRecord>& records, std::size_t width) {
  Layout layout;
  const std::size_t head = std::min(records.size(), kHeadRecords);
  while (layout.header < head && !IsWide(records[layout.header], width)) ++layout.header;
  if (layout.header >= head) {
    layout.header = 0;
    while (layout.header + 1 < head && records[layout.header].is_blank) ++layout.header;
  }
  if (layout.header >= head) return layout;
  const SeenRecord& first = records[layout.header];
  std::size_t usual = 0;
  for (const std::string& cell : first.cells) usual += IsUsualName(Trimmed(cell)) ? 1 : 0;
  bool comes_again = false;
  for (std::size_t at = layout.header + 1; at < head; ++at) {
    for (std::size_t column = 0; column < std::min(first.cells.size(), records[at].cells.size()); ++column)
      comes_again = comes_again || (!first.cells[column].empty() && first.cells[column] == records[at].cells[column]);
  }
  const bool is_header = AreNames(first) && first.filled + 1 >= first.width && (usual > 0 || !comes_again);
  layout.header_count = is_header ? 1 : 0;
  layout.data = layout.header + layout.header_count;
  const bool is_known = is_header && usual * 3 >= first.filled;
  layout.confidence = is_known ? 0.9 : width > 1 ? 0.75 : 0.6;
  return layout;
}

Layout FindLayout(const std::vector<SeenRecord>& records, std::size_t width) {
  const std::size_t skip = records.size() > 10 ? records.size() / 5 : records.size() > 2 ? 1 : 0;
  std::vector<bool> is_typed = TypedColumns(records, skip);
  const std::size_t head = std::min(records.size(), kHeadRecords);
  std::size_t data = 0;
  const auto is_data = [&](std::size_t at) {
    return IsWide(records[at], width) && FitOf(records[at], is_typed).IsData();
  };
  while (data < head && !is_data(data)) ++data;
  if (data >= head) return LayoutOfTexts(records, width);
  // Few records: what looked like the body may hold the names.
  Layout layout{.header = data, .header_count = 0, .data = data, .confidence = 0.95};
  std::size_t behind = data;  // of the header: blank lines may follow it
  while (behind > 0 && records[behind - 1].is_blank) --behind;
  std::size_t names = behind;
  while (names > 0 && behind - names < kMostHeaderRows + 1 && IsWide(records[names - 1], width)) --names;
  // An odd row may stand between the names and the first row that is as the others.
  for (std::size_t at = behind; names == behind && at-- > 0;) {
    if (records[at].raw_width == records[data].raw_width && records[at].width > 1 && AreNames(records[at]))
      return {.header = at, .header_count = 1, .data = at + 1, .confidence = 0.8};
  }
  if (names == behind) {
    // A line above that is narrower than the rest may still be the header: names of the first columns only.
    const bool is_short_header = data > 0 && !records[data - 1].is_blank && records[data - 1].width >= 2 && data == 1 &&
                                 AreNames(records[data - 1]) && records[data - 1].width * 10 >= width * 4;
    if (is_short_header) return {.header = data - 1, .header_count = 1, .data = data, .confidence = 0.7};
    const Fit fit = FitOf(records[data], is_typed);
    layout.confidence = fit.texts == 0 && fit.typed * 2 >= records[data].filled ? 0.93 : 0.8;
    if (data > 0) layout.confidence = 0.7;
    return layout;
  }
  // The names are the row with most texts; rows above it that are narrower or nearly empty stand before the table.
  std::size_t top = behind - 1;
  for (std::size_t at = behind; at-- > names;) {
    const bool is_too_wide = records[at].width > width && records[top].width == width && AreNames(records[top]);
    if (!is_too_wide && records[at].filled >= records[top].filled && AreNames(records[at])) top = at;
  }
  for (std::size_t at = top; at-- > names;) {
    const SeenRecord& above = records[at];
    const bool is_grouping =
        above.raw_width == records[top].raw_width && above.filled >= 2 && above.filled * 4 >= width;
    if (!is_grouping) break;
    top = at;
  }
  // A number or time below the names is a row's.
  for (std::size_t at = top + 1; at < behind; ++at) {
    if (std::ranges::find(records[at].types, CellType::kTyped) != records[at].types.end()) behind = layout.data = at;
  }
  layout.header = top;
  layout.header_count = behind - top;
  if (layout.header_count > 1) layout.confidence = 0.8;
  if (top > 0 && layout.confidence > 0.9) layout.confidence = 0.91;
  return layout;
}

// A line end that most lines have; comment lines; where table and header are.
std::string FindComment(std::string_view sample, const Form& form, std::size_t width) {
  for (const std::string_view mark : {"#", "%", "//"}) {
    Form plain = form;
    plain.comment.clear();
    std::size_t marked = 0;
    std::size_t fitting = 0;
    std::size_t all = 0;
    std::size_t records = 0;
    bool first_is_marked = false;
    MemorySource source(sample);
    RecordReader reader(source, plain, width);
    Record record;
    while (all < kRecordsSeen && reader.Next(record)) {
      if (record.is_blank || record.first_cell > 0) continue;
      ++all;
      if (record.cells.empty() || !record.cells.front().starts_with(mark)) {
        ++records;
        continue;
      }
      if (marked == 0 && all == 1) first_is_marked = true;
      ++marked;
      if (width > 1 && record.CountWithoutEnd() == width) ++fitting;
    }
    if (marked == 0) continue;
    const bool is_header = fitting == 1 && first_is_marked && marked == 1;
    if (!is_header && fitting * 2 <= marked && marked * 2 <= all + 1 && records > 0) return std::string(mark);
    if (!is_header && first_is_marked && fitting == 0) return std::string(mark);
  }
  return {};
}

std::string NameOf(const std::vector<SeenRecord>& records, const Layout& layout, std::size_t column) {
  for (std::size_t at = layout.header; at < layout.data; ++at) {
    if (column >= records[at].cells.size()) continue;
    std::string name(Trimmed(records[at].cells[column]));
    if (column == 0 && name.starts_with('#') && name.size() > 1) name = Trimmed(std::string_view(name).substr(1));
    if (!name.empty()) return name;
  }
  return {};
}

// Records as a person has numbered them.
Layout GivenLayout(const std::vector<SeenRecord>& records, Layout found, const Overrides& overrides) {
  if (overrides.preamble_rows) {
    const auto lines = static_cast<std::uint64_t>(*overrides.preamble_rows);
    std::size_t at = 0;
    std::uint64_t passed = 0;
    while (at < records.size() && passed < lines) ++passed, ++at;
    while (at < records.size() && records[at].is_blank) ++at;
    const std::size_t end = found.data;
    found.header = at;
    if (!overrides.header_rows) found.header_count = end > at ? end - at : found.header_count;
  }
  if (overrides.header_rows) {
    const auto rows = static_cast<std::size_t>(*overrides.header_rows);
    if (!overrides.preamble_rows && rows > found.header_count) {
      const std::size_t missing = rows - found.header_count;
      found.header -= std::min(missing, found.header);
    }
    found.header_count = rows;
  }
  found.data = std::min(found.header + found.header_count, records.size());
  if (overrides.preamble_rows || overrides.header_rows) found.confidence = 1.0;
  return found;
}

std::size_t WidthOf(const std::vector<SeenRecord>& records, const Layout& layout, std::size_t usual) {
  std::size_t header_width = 0;
  for (std::size_t at = layout.header; at < layout.data; ++at) {
    std::size_t filled = records[at].cells.size();
    while (filled > 0 && Trimmed(records[at].cells[filled - 1]).empty()) --filled;
    header_width = std::max(header_width, filled);
  }
  // Cells without a name count where they hold something.
  std::size_t body_width = 0;
  std::vector<std::size_t> filled;
  std::size_t rows = 0;
  for (std::size_t at = layout.data; at < records.size(); ++at) {
    if (records[at].is_blank) continue;
    ++rows;
    const auto& types = records[at].types;
    if (types.size() > filled.size()) filled.resize(types.size());
    for (std::size_t column = 0; column < types.size(); ++column) filled[column] += types[column] != CellType::kEmpty;
  }
  for (std::size_t column = 0; column < filled.size(); ++column) {
    if (filled[column] * 20 > rows && (filled[column] > 1 || rows < 2)) body_width = column + 1;
  }
  if (layout.header_count == 0) return std::max(std::max(usual, body_width), std::size_t{1});
  return std::max(std::max(header_width, body_width), std::size_t{1});
}

}  // namespace

Shape FindShape(std::string_view sample, const Form& known, const Overrides& overrides) {
  Shape shape;
  shape.form = known;
  if (overrides.comment)
    shape.form.comment = *overrides.comment;
  else if (sample.starts_with('#'))
    shape.form.comment = "#";  // so that they do not count while cuts are compared
  const std::vector<CutScore> cuts = ScoreCuts(sample, shape.form, overrides);
  const CutScore& best = cuts.front();
  const bool is_table = overrides.separator || (best.width > 1 && best.score >= 0.12);
  shape.form.separator = is_table ? best.separator : "";
  shape.form.quote = best.quote != 0 || overrides.quote ? best.quote : '"';
  shape.form.escape = best.escape;
  shape.form.trims_blanks = best.trims_blanks;
  if (!overrides.comment) shape.form.comment = FindComment(sample, shape.form, best.width);
  const std::size_t usual = is_table ? best.width : 1;
  const std::vector<SeenRecord> records = SeeRecords(sample, shape.form, usual);
  const Layout layout = GivenLayout(records, FindLayout(records, usual), overrides);
  shape.form.header_rows = static_cast<std::int64_t>(layout.header_count);
  shape.form.preamble_rows = overrides.preamble_rows.value_or(static_cast<std::int64_t>(layout.header));
  shape.header_confidence = layout.confidence;
  shape.width = std::min(WidthOf(records, layout, usual), kMaxColumns);
  for (std::size_t at = layout.header; at < layout.data; ++at)
    shape.has_quoted_head = shape.has_quoted_head || records[at].has_quoted;
  if (layout.header_count > 0) {
    for (std::size_t column = 0; column < shape.width; ++column) shape.names.push_back(NameOf(records, layout, column));
  }
  double second = 0;
  for (const CutScore& cut : cuts) {
    if (cut.separator == best.separator || cut.score <= 0) continue;
    second = std::max(second, cut.score);
    if (shape.alternatives.size() < 3)
      shape.alternatives.push_back({cut.separator, cut.score / (cut.score + best.score + 0.05)});
  }
  const double margin = best.score / (best.score + second);
  shape.separator_confidence = overrides.separator ? 1.0 : is_table ? std::min(1.0, 0.4 + margin * 0.6) : 0.8;
  if (!overrides.separator && is_table && best.score < 0.35) shape.separator_confidence *= 0.8;
  return shape;
}

}  // namespace loom::dialect
