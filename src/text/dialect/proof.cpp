#include "text/dialect/proof.h"

#include <algorithm>

#include "text/dialect/cell_value.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kFirstRows = 10;
constexpr std::size_t kMostFooterRows = 6;
constexpr std::size_t kShownColumns = 256;

bool IsNothing(std::string_view cell) {
  const std::string_view text = Trimmed(cell);
  return text.empty() || IsNullWord(text);
}

}  // namespace

bool InstantTrack::Add(const std::vector<std::string_view>& cells) {
  const std::optional<double> seconds = reader.Read(cells);
  if (!seconds) return false;
  if (!first) first = earliest = latest = seconds;
  last = seconds;
  if (*seconds < *earliest) earliest = seconds;
  if (*seconds > *latest) latest = seconds;
  ++valid;
  return true;
}

bool DegreeTrack::Add(const std::vector<std::string_view>& cells) {
  const std::optional<double> degrees = reader.Read(cells);
  if (!degrees) return false;
  if (!min || *degrees < *min) min = degrees;
  if (!max || *degrees > *max) max = degrees;
  ++valid;
  return true;
}

Proof::Proof(std::size_t width, char decimal, const Roles& roles, bool finds_footer)
    : width_(width), decimal_(decimal), finds_footer_(finds_footer), profiles_(width) {
  if (roles.time) {
    for (const std::string& layout : roles.time->layouts)
      instants_.push_back(
          {InstantReader(roles.time->columns, layout, roles.time->zone, decimal), layout, {}, {}, {}, {}});
  }
  if (roles.latitude) latitude_ = DegreeTrack{{roles.latitude->columns, roles.latitude->is_nmea, decimal, 90}, {}, {}};
  if (roles.longitude)
    longitude_ = DegreeTrack{{roles.longitude->columns, roles.longitude->is_nmea, decimal, 180}, {}, {}};
}

// Narrower than the table, and its first text stands where the others have a number or time, or all alone.
bool Proof::MayBeFooter(const Record& record) const {
  if (width_ < 2 || rows_ == 0 || record.first_cell > 0 || record.goes_on) return false;
  std::size_t filled = 0;
  std::size_t first = record.cells.size();
  for (std::size_t at = 0; at < record.cells.size(); ++at) {
    if (Trimmed(record.cells[at]).empty()) continue;
    if (filled++ == 0) first = at;
  }
  if (filled * 2 > width_ || filled == 0 || first >= profiles_.size()) return false;
  ColumnProfile cell;
  cell.Add(record.cells[first], decimal_, 0);
  if (cell.Texts() == 0) return false;
  const char start = Trimmed(record.cells[first]).front();
  if (IsDigit(start)) return false;  // a row that was cut off
  const Kind kind = profiles_[first].PlainKind();
  return (kind != Kind::kText && kind != Kind::kEmpty) || (filled == 1 && width_ >= 3 && record.cells.size() == 1);
}

void Proof::NoteUnread(const Record& record, const std::vector<std::size_t>& columns, const NoteKind& kind,
                       Remarks& remarks) const {
  const std::size_t column = columns.front();
  if (column >= record.cells.size() || IsNothing(record.cells[column])) return;
  remarks[kind].Add(record.line, static_cast<std::int64_t>(column), record.cells[column]);
}

void Proof::Take(const Record& record, Remarks& remarks) {
  if (record.first_cell > 0) return;
  ++rows_;
  quoted_ += record.has_quoted;
  if (record.has_stray) {
    ++stray_;
    remarks["stray quote"_note].Add(record.line, -1, record.cells.empty() ? std::string_view() : record.cells.front());
  }
  const std::size_t cells = std::min(record.cells.size(), width_);
  for (std::size_t column = 0; column < cells; ++column)
    profiles_[column].Add(record.cells[column], decimal_, record.line);
  for (std::size_t column = cells; column < width_; ++column) profiles_[column].AddMissing();
  const std::size_t without_end = record.CountWithoutEnd();
  if (without_end > width_ || record.goes_on) {
    ++ragged_;
    remarks["more cells than columns"_note].Add(record.line, static_cast<std::int64_t>(width_),
                                                record.goes_on ? std::string_view() : record.cells[width_]);
  } else if (record.cells.size() < width_) {
    ++ragged_;
    remarks["fewer cells than columns"_note].Add(record.line, static_cast<std::int64_t>(record.cells.size()),
                                                 record.cells.empty() ? std::string_view() : record.cells.back());
  }
  if (first_rows_.size() < kFirstRows) {
    auto& row = first_rows_.emplace_back();
    for (std::size_t column = 0; column < std::min(cells, kShownColumns); ++column)
      row.emplace_back(record.cells[column]);
  }
  bool is_read = instants_.empty();
  for (InstantTrack& track : instants_) is_read = track.Add(record.cells) || is_read;
  if (!is_read) NoteUnread(record, instants_.front().reader.columns(), "time not understood"_note, remarks);
  if (latitude_ && !latitude_->Add(record.cells))
    NoteUnread(record, latitude_->reader.columns(), "latitude not understood"_note, remarks);
  if (longitude_ && !longitude_->Add(record.cells))
    NoteUnread(record, longitude_->reader.columns(), "longitude not understood"_note, remarks);
}

void Proof::TakeHeld(Remarks& remarks) {
  for (Held& held : held_) {
    held.record.cells.assign(held.cells.begin(), held.cells.end());
    Take(held.record, remarks);
  }
  held_.clear();
}

void Proof::Read(TableReader& table, Remarks& remarks) {
  Record record;
  while (table.Next(record)) {
    if (finds_footer_ && MayBeFooter(record)) {
      if (held_.size() == kMostFooterRows) TakeHeld(remarks);
      held_.push_back({record, std::vector<std::string>(record.cells.begin(), record.cells.end())});
      continue;
    }
    if (!held_.empty()) TakeHeld(remarks);
    Take(record, remarks);
  }
  footer_rows_ = held_.size();
  for (const Held& held : held_) remarks["footer"_note].Add(held.record.line, 0, held.cells.front());
}

}  // namespace loom::dialect
