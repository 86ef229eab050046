#include "text/dialect/proof.h"

#include <algorithm>

#include "text/dialect/cell_value.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kFirstRows = 10;
constexpr std::size_t kMostFooterRows = 6;
constexpr std::size_t kShownColumns = 256;

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

Proof::Proof(std::size_t width, char decimal, const Roles& roles, bool finds_footer,
             const std::vector<std::string>* nulls)
    : width_(width),
      decimal_(decimal),
      finds_footer_(finds_footer),
      nulls_(nulls),
      profiles_(width, ColumnProfile(nulls)),
      layouts_(width),
      is_known_(width) {
  for (std::size_t column = 0; column < width; ++column) {
    if (!roles.layouts[column].empty()) layouts_[column].emplace(roles.layouts[column], decimal);
  }
  if (roles.time) {
    for (const std::string& layout : roles.time->layouts)
      instants_.push_back(
          {InstantReader(roles.time->columns, layout, roles.time->zone, decimal), layout, {}, {}, {}, {}});
    // What the instant reads need not be read again.
    if (roles.time->columns.size() == 1) layouts_[roles.time->columns[0]].reset();
  }
  if (roles.latitude) latitude_ = DegreeTrack{{roles.latitude->columns, roles.latitude->is_nmea, decimal, 90}, {}, {}};
  if (roles.longitude)
    longitude_ = DegreeTrack{{roles.longitude->columns, roles.longitude->is_nmea, decimal, 180}, {}, {}};
}

bool Proof::IsNothing(std::string_view cell) const {
  const std::string_view text = Trimmed(cell);
  if (nulls_ != nullptr) return text.empty() || std::ranges::find(*nulls_, text) != nulls_->end();
  return text.empty() || IsNullWord(text);
}

// Narrower than the table, and its first text stands where the others have a number or time, or all alone.
bool Proof::MayBeFooter(const Record& record) const {
  if (width_ < 2 || rows_ == 0 || record.first_cell > 0 || record.goes_on) return false;
  std::size_t filled = 0;
  std::size_t first = record.cells.size();
  for (std::size_t at = 0; at < record.cells.size(); ++at) {
    if (Trimmed(record.cells[at]).empty()) continue;
    if (filled++ == 0) first = at;
    if (filled * 2 > width_) return false;
  }
  if (filled == 0 || first >= profiles_.size()) return false;
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

void Proof::CheckWidth(const Record& record, Remarks& remarks) {
  const std::size_t without_end = record.CountWithoutEnd();
  if (record.cells.size() > width_ && without_end <= width_) ++open_ended_;
  if (without_end > width_ || record.goes_on) {
    ++ragged_;
    remarks["more cells than columns"_note].Add(record.line, static_cast<std::int64_t>(width_),
                                                record.goes_on ? std::string_view() : record.cells[width_]);
  } else if (record.cells.size() < width_) {
    ++ragged_;
    remarks["fewer cells than columns"_note].Add(record.line, static_cast<std::int64_t>(record.cells.size()),
                                                 record.cells.empty() ? std::string_view() : record.cells.back());
  }
}

void Proof::ReadTime(const Record& record, Remarks& remarks) {
  if (instants_.empty()) return;
  const std::vector<std::size_t>& columns = instants_.front().reader.columns();
  const bool is_nothing = nulls_ != nullptr && columns[0] < record.cells.size() && IsNothing(record.cells[columns[0]]);
  bool is_read = false;
  for (InstantTrack& track : instants_) is_read = (!is_nothing && track.Add(record.cells)) || is_read;
  if (!is_read) return NoteUnread(record, columns, "time not understood"_note, remarks);
  if (columns.size() > 1) return;  // their own layouts count them
  profiles_[columns[0]].AddKnownTime();
  is_known_[columns[0]] = 1;
}

void Proof::ReadPosition(std::optional<DegreeTrack>& track, const Record& record, const NoteKind& kind,
                         Remarks& remarks) {
  if (!track) return;
  const std::vector<std::size_t>& columns = track->reader.columns();
  if (nulls_ != nullptr && columns[0] < record.cells.size() && IsNothing(record.cells[columns[0]])) return;
  if (!track->Add(record.cells)) return NoteUnread(record, columns, kind, remarks);
  profiles_[columns[0]].AddKnownDegrees();
  is_known_[columns[0]] = 1;
}

void Proof::AddCells(const Record& record, std::size_t cells) {
  for (std::size_t column = 0; column < cells; ++column) {
    const std::string_view cell = record.cells[column];
    std::optional<LayoutReader>& layout = layouts_[column];
    if (is_known_[column] != 0)
      is_known_[column] = 0;
    else if (layout && !(nulls_ != nullptr && IsNothing(cell)) && layout->Read(cell))
      profiles_[column].AddKnownTime();
    else
      profiles_[column].Count(cell, decimal_, record.line);
  }
  for (std::size_t column = cells; column < width_; ++column) profiles_[column].AddMissing();
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
  CheckWidth(record, remarks);
  if (first_rows_.size() < kFirstRows) {
    auto& row = first_rows_.emplace_back();
    for (std::size_t column = 0; column < std::min(cells, kShownColumns); ++column)
      row.emplace_back(record.cells[column]);
  }
  ReadPosition(latitude_, record, "latitude not understood"_note, remarks);
  ReadPosition(longitude_, record, "longitude not understood"_note, remarks);
  ReadTime(record, remarks);
  AddCells(record, cells);
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
