#include "host/netdb/network_worksheet.h"

#include <algorithm>
#include <map>
#include <set>

#include "components/note_kinds.h"
#include "platform/encoding.h"
#include "platform/interrupt.h"
#include "platform/error.h"

namespace loom {
namespace {

struct Heading {
  std::uint32_t column = 0;
  CString text;
};

CString TextOf(const WorksheetCell& cell) {
  switch (cell.kind) {
    case WorksheetCell::Kind::kNumber:
      return CString(NumberText(cell.number));
    case WorksheetCell::Kind::kText:
      return Utf8ToGbkOr(cell.text, '?').Trim();
    default:
      return {};
  }
}

class Place {
 public:
  Place(const CString& path, const CString& sheet) : path_(path), sheet_(GbkToUtf8(sheet)) {}
  void Note(const NoteKind& kind, std::uint32_t row, const std::string& what) const {
    CurrentNotes().Add(kind, path_, sheet_ + " row " + std::to_string(row), what);
  }
  [[noreturn]] void Fail(const std::string& reason) const {
    throw FileError(path_, 0, "sheet " + sheet_ + ": " + reason);
  }

 private:
  CString path_;
  std::string sheet_;
};

std::vector<Heading> HeadingsOf(std::uint32_t row, std::span<const WorksheetCell> cells, const Place* place) {
  std::vector<Heading> headings;
  std::set<CString> taken;
  for (const WorksheetCell& cell : cells) {
    if (const CString text = TextOf(cell); !text.IsEmpty()) headings.push_back({cell.column, text}), taken.insert(text);
    const bool is_text = cell.kind == WorksheetCell::Kind::kText || cell.kind == WorksheetCell::Kind::kNumber;
    if (!is_text && place != nullptr)
      place->Note("heading that is no text"_note, row, "column " + std::to_string(cell.column + 1) + " is left out");
  }
  std::set<CString> used;
  std::map<CString, int> next_numbers;
  for (Heading& heading : headings) {
    if (used.insert(heading.text).second) continue;
    CString numbered;
    int& number = next_numbers.try_emplace(heading.text, 2).first->second;
    do numbered = Format("%s (%d)", heading.text, number++);
    while (taken.contains(numbered));
    if (place != nullptr) place->Note("heading that comes again"_note, row, GbkToUtf8(numbered));
    heading.text = numbered;
    taken.insert(numbered);
  }
  return headings;
}

bool IsHeadingRow(std::span<const WorksheetCell> cells) {
  return std::any_of(cells.begin(), cells.end(), [](const WorksheetCell& cell) { return !TextOf(cell).IsEmpty(); });
}

class HeadingSink final : public IWorksheetSink {
 public:
  explicit HeadingSink(const Place& place) : place_(place) {}
  bool OnRow(std::uint32_t row, std::span<const WorksheetCell> cells) override {
    if (!IsHeadingRow(cells)) return true;
    headings = HeadingsOf(row, cells, &place_);
    return false;
  }
  std::vector<Heading> headings;

 private:
  const Place& place_;
};

class RowSink final : public IWorksheetSink {
 public:
  RowSink(const Place& place, const std::vector<CString>& wanted) : place_(place), wanted_(wanted) {}

  bool OnRow(std::uint32_t row, std::span<const WorksheetCell> cells) override {
    if (places_.empty()) {
      if (IsHeadingRow(cells)) FindColumns(HeadingsOf(row, cells, nullptr));
      return true;
    }
    StopIfInterrupted();
    bool holds_something = false;
    for (const WorksheetCell& cell : cells) {
      if (cell.column >= places_.size() || places_[cell.column].empty()) continue;
      NetValue value = ValueOf(row, cell);
      if (std::holds_alternative<std::monostate>(value)) continue;
      if (!holds_something) rows.push_back({row, std::vector<NetValue>(wanted_.size())});
      holds_something = true;
      for (const std::size_t place : places_[cell.column]) rows.back().values[place] = value;
    }
    return true;
  }
  void OnMergedRanges(std::uint32_t ranges) override {
    place_.Note("merged cells"_note, 1, std::to_string(ranges) + " ranges; only the first cell of each holds a value");
  }
  std::vector<NetInfoRow> rows;
  bool has_headings() const { return !places_.empty(); }

 private:
  void FindColumns(const std::vector<Heading>& headings) {
    for (std::size_t at = 0; at < wanted_.size(); ++at) {
      const auto found = std::find_if(headings.begin(), headings.end(),
                                      [&](const Heading& heading) { return heading.text == wanted_[at]; });
      if (found == headings.end()) place_.Fail("has no column \"" + GbkToUtf8(wanted_[at]) + "\"");
      if (found->column >= places_.size()) places_.resize(found->column + 1);
      places_[found->column].push_back(at);
    }
  }

  NetValue ValueOf(std::uint32_t row, const WorksheetCell& cell) const {
    switch (cell.kind) {
      case WorksheetCell::Kind::kNumber:
        return cell.number;
      case WorksheetCell::Kind::kBool:
        return cell.number != 0;
      case WorksheetCell::Kind::kDate:
        return NetDate{cell.number, cell.days};
      case WorksheetCell::Kind::kText:
        return TextValue(row, cell);
      case WorksheetCell::Kind::kError:
        place_.Note("error value in a cell"_note, row,
                    Column(cell) + " holds " + std::string(cell.text) + ", taken as empty");
        return {};
      case WorksheetCell::Kind::kNoValue:
        place_.Note("formula without a result"_note, row, Column(cell) + " is taken as empty");
        return {};
    }
    return {};
  }

  NetValue TextValue(std::uint32_t row, const WorksheetCell& cell) const {
    CString text;
    try {
      text = Utf8ToGbk(cell.text);
    } catch (const EncodingError& error) {
      text = Utf8ToGbkOr(cell.text, '?');
      place_.Note("character outside the code page"_note, row, Column(cell) + ": " + error.reason());
    }
    if (text.Trim().IsEmpty()) return {};
    return text;
  }

  std::string Column(const WorksheetCell& cell) const { return GbkToUtf8(wanted_[places_[cell.column].front()]); }

  const Place& place_;
  const std::vector<CString>& wanted_;
  std::vector<std::vector<std::size_t>> places_;  // by column of the sheet: which of the wanted values it is
};

std::size_t SheetOf(const IWorkbookReader& workbook, const CString& path, const CString& name) {
  const auto& names = workbook.SheetNames();
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) throw FileError(path, 0, "has no sheet \"" + GbkToUtf8(name) + "\"");
  return static_cast<std::size_t>(found - names.begin());
}

}  // namespace

NetworkWorksheet::NetworkWorksheet(IWorkbookReader& workbook, const CString& path, const CString& name)
    : workbook_(workbook), path_(path), name_(name), sheet_(SheetOf(workbook, path, name)) {}

std::vector<CString> NetworkWorksheet::Headings() {
  const Place place(path_, name_);
  HeadingSink sink(place);
  workbook_.ReadSheet(sheet_, sink);
  std::vector<CString> texts;
  for (const Heading& heading : sink.headings) texts.push_back(heading.text);
  return texts;
}

std::vector<NetInfoRow> NetworkWorksheet::Rows(const std::vector<CString>& headings) {
  const Place place(path_, name_);
  RowSink sink(place, headings);
  workbook_.ReadSheet(sheet_, sink);
  if (!sink.has_headings()) place.Fail("has no headings");
  return std::move(sink.rows);
}

}  // namespace loom
