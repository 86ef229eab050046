#include <algorithm>
#include <array>

#include "text/dialect/converter.h"
#include "text/dialect/table_output.h"

namespace loom::dialect {
namespace {

// Characters that a cell of RFC 4180 cannot have outside of quotes.
constexpr auto kNeedsQuotes = [] {
  std::array<bool, 256> needs{};
  for (const char c : {',', '"', '\n', '\r'}) needs[static_cast<unsigned char>(c)] = true;
  return needs;
}();

void AppendCsvCell(std::string& out, std::string_view cell, bool may_need_quotes = true) {
  const auto needs = [](char c) { return kNeedsQuotes[static_cast<unsigned char>(c)]; };
  if (!may_need_quotes || std::ranges::none_of(cell, needs)) {
    out += cell;
    return;
  }
  out += '"';
  for (const char c : cell) {
    if (c == '"') out += '"';
    out += c;
  }
  out += '"';
}

// Writes rows as RFC 4180 has them.
class CsvRows {
 public:
  explicit CsvRows(const Findings& found)
      : width_(found.columns.size()), has_comma_(found.form.separator == ","), ends_open_(found.form.ends_open) {}

  void Append(const Record& record, std::string& out) {
    const std::string_view line = record.plain_line;
    const bool is_plain = !line.empty() && line.find('"') == std::string_view::npos;
    if (is_plain && has_comma_ && record.cells.size() == width_) {
      out += line;
      return;
    }
    const bool may_need_quotes = !is_plain || (!has_comma_ && line.find(',') != std::string_view::npos);
    if (record.first_cell == 0) empty_cells_ = 0;
    for (std::size_t at = 0; at < record.cells.size(); ++at) {
      const std::size_t number = record.first_cell + at;
      // Behind the last column nothing follows the separator that ends a row.
      if (number >= width_ && record.cells[at].empty() && ends_open_) {
        ++empty_cells_;
        continue;
      }
      if (number > 0) out.append(empty_cells_ + 1, ',');
      empty_cells_ = 0;
      AppendCsvCell(out, record.cells[at], may_need_quotes);
    }
    const std::size_t cells = record.first_cell + record.cells.size();
    if (!record.goes_on && cells < width_) out.append(width_ - cells, ',');
  }

 private:
  std::size_t width_;
  bool has_comma_;
  bool ends_open_;
  std::size_t empty_cells_ = 0;  // at the end of the record so far
};

}  // namespace

Converted ConvertToCsv(const CString& path, const Findings& found, const CString& out) {
  const InputFile file(path);
  Converted result;
  Output output(out);
  const std::size_t width = found.columns.size();
  if (found.form.header_rows > 0) {
    for (std::size_t at = 0; at < width; ++at) {
      if (at > 0) output.text() += ',';
      AppendCsvCell(output.text(), found.columns[at].name);
    }
    output.EndLine("\r\n");
  }
  TableReader table = OpenTable(file, found);
  CsvRows rows(found);
  Record record;
  while (result.rows < found.rows && table.Next(record)) {
    rows.Append(record, output.text());
    output.EndLine(record.goes_on ? "" : "\r\n");
    result.rows += record.goes_on ? 0 : 1;
  }
  output.Finish();
  file.RequireUnchanged();
  return result;
}

}  // namespace loom::dialect
