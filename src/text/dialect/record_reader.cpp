#include "text/dialect/record_reader.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "platform/error.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kLookAhead = std::size_t{256} << 10;  // bytes behind a line that are there when it is read
constexpr std::size_t kLineMax = std::size_t{4} << 20;      // longer lines come in parts
constexpr std::size_t kCellMax = std::size_t{64} << 20;
constexpr std::size_t kPartCells = std::size_t{64} << 10;

constexpr std::uint64_t kEveryByte = 0x0101010101010101u;
constexpr std::uint64_t kLowBits = 0x7F7F7F7F7F7F7F7Fu;

// The high bit of every byte of `word` that is `c`, where `mask` holds `c` in every byte.
std::uint64_t BytesThatAre(std::uint64_t word, std::uint64_t mask) {
  const std::uint64_t differing = word ^ mask;
  return ~(((differing & kLowBits) + kLowBits) | differing | kLowBits);
}

}  // namespace

RecordReader::RecordReader(ByteSource& source, const Form& form, std::size_t width)
    : source_(source),
      is_blanks_(form.separator == kBlanks),
      quote_(form.quote),
      escape_(form.escape),
      comment_(form.comment),
      trims_blanks_(form.trims_blanks),
      width_(width),
      quote_seeker_{form.quote} {
  if (!is_blanks_ && !form.separator.empty()) separator_ = form.separator[0];
}

void RecordReader::Refill() {
  buffer_.erase(0, position_);
  position_ = 0;
  lf_.is_known = cr_.is_known = quote_seeker_.is_known = false;
  is_at_end_ = !source_.Append(buffer_);
}

// False when the text ends before.
bool RecordReader::FillTo(std::size_t needed_bytes) {
  while (!is_at_end_ && buffer_.size() - position_ < needed_bytes) Refill();
  return buffer_.size() - position_ >= needed_bytes;
}

std::size_t RecordReader::Seek(Seeker& seeker, std::size_t from) {
  if (seeker.is_known && from >= seeker.from && seeker.next >= from) return seeker.next;
  seeker.from = from;
  const void* const found =
      from < buffer_.size() ? std::memchr(buffer_.data() + from, seeker.c, buffer_.size() - from) : nullptr;
  seeker.next =
      found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data()) : buffer_.size();
  seeker.is_known = true;
  return seeker.next;
}

// End of the line without its line end; `next_line` is where the next one starts.
std::size_t RecordReader::LineEnd(std::size_t from, std::size_t& next_line) {
  const std::size_t lf = Seek(lf_, from);
  const std::size_t cr = Seek(cr_, from);
  const std::size_t end = std::min(lf, cr);
  next_line = end;
  if (end == buffer_.size()) return end;
  next_line = end + 1;
  if (buffer_[end] == '\r' && next_line < buffer_.size() && buffer_[next_line] == '\n') ++next_line;
  return end;
}

RecordReader::Line RecordReader::FindLine() {
  Line line{.begin = position_, .end = 0, .next = 0};
  line.end = LineEnd(position_, line.next);
  while (line.end + 2 > buffer_.size() && !is_at_end_ && line.end - position_ < kLineMax) {
    FillTo(buffer_.size() - position_ + 1);
    line.end = LineEnd(position_, line.next);
  }
  line.begin = position_;
  return line;
}

bool RecordReader::Next(Record& record) {
  if (cells_before_ == 0) line_ += extra_lines_;
  FillTo(kLookAhead);
  if (position_ >= buffer_.size()) return false;
  saw_stray_ = false;
  extra_lines_ = 0;
  Line line = FindLine();
  record.line = line_;
  record.plain_line = {};
  record.first_cell = cells_before_;
  record.goes_on = record.is_blank = record.is_comment = record.has_quoted = record.has_stray = false;
  record.padded_quotes = 0;
  if (cells_before_ > 0 || (line.end == buffer_.size() && !is_at_end_)) {
    TakePart(record);
    return true;
  }
  Cut(record, line);
  if (!record.goes_on && line.next > line.end) {
    const bool is_lf = buffer_[line.end] == '\n';
    ++(is_lf ? lf_count_ : line.next - line.end == 2 ? crlf_count_ : cr_count_);
    ++extra_lines_;
  }
  record.line_count = std::max<std::uint64_t>(extra_lines_, 1);
  cells_before_ = record.goes_on ? record.cells.size() : 0;
  consumed_ += line.next - position_;
  position_ = line.next;
  return true;
}

// Cuts a line into the cells of a record. `line` grows where a quoted cell holds line ends and shrinks to a part.
void RecordReader::Cut(Record& record, Line& line) {
  const std::string_view text(buffer_.data() + line.begin, line.end - line.begin);
  const bool may_be_blank = text.empty() || IsBlank(text.front());
  record.is_blank = may_be_blank && text.find_first_not_of(" \t") == std::string_view::npos;
  record.is_comment = !record.is_blank && !comment_.empty() && text.starts_with(comment_);
  if (record.is_blank || record.is_comment) {
    record.cells.assign(1, text);
    return;
  }
  if (quote_ != 0 && Seek(quote_seeker_, line.begin) < line.end) {
    spans_.clear();
    const std::size_t quoted_end = SplitWithQuotes(line.begin, line.end);
    if (quoted_end != line.end) line.end = LineEnd(quoted_end, line.next);
    if (spans_.size() > kPartCells) CutOffPart(record, line);
    HandOver(record);
    return;
  }
  if (is_blanks_)
    CutBlanks(text, record.cells);
  else
    CutPlain(text, record.cells);
  if (record.cells.size() > kPartCells) {
    line.end = line.next = static_cast<std::size_t>(record.cells[kPartCells].data() - buffer_.data());
    record.cells.resize(kPartCells);
    record.goes_on = true;
  }
  if (trims_blanks_)
    Trim(record.cells);
  else if (!record.goes_on)
    record.plain_line = text;
}

// Leaves the first cells of a very long line; the next part begins behind them.
void RecordReader::CutOffPart(Record& record, Line& line) {
  line.end = line.next = spans_[kPartCells].begin;
  spans_.resize(kPartCells);
  extra_lines_ = 0;
  record.goes_on = true;
}

// A part of a line that is too long to be taken as a whole. Quotes are taken as they should be.
void RecordReader::TakePart(Record& record) {
  const std::size_t first = cells_before_;
  Line line{};
  while (!FindPart(record, line)) {
    if (buffer_.size() - position_ > kCellMax)
      throw Error(source_.Place() + "line " + std::to_string(line_) + ": a cell of more than " +
                  std::to_string(kCellMax >> 20) + " MB");
    FillTo(buffer_.size() - position_ + 1);
  }
  HandOver(record);
  record.line_count = 1;
  cells_before_ = record.goes_on ? first + record.cells.size() : 0;
  consumed_ += line.next - position_;
  position_ = line.next;
}

// False where the buffer holds less than a cell.
bool RecordReader::FindPart(Record& record, Line& line) {
  spans_.clear();
  line.begin = position_;
  line.end = LineEnd(position_, line.next);
  bool ends_here = line.end < buffer_.size() || is_at_end_;
  if (quote_ != 0 && Seek(quote_seeker_, position_) < line.end) {
    const std::size_t quoted_end = SplitQuoted(position_, line.end, Quoting::kTolerant);
    if (quoted_end != line.end) {
      line.end = LineEnd(quoted_end, line.next);
      ends_here = line.end < buffer_.size() || is_at_end_;
    }
  } else {
    const std::string_view text(buffer_.data() + position_, line.end - position_);
    if (is_blanks_)
      CutBlanks(text, record.cells);
    else
      CutPlain(text, record.cells);
    for (const std::string_view cell : record.cells) {
      const auto begin = static_cast<std::size_t>(cell.data() - buffer_.data());
      spans_.push_back({begin, begin + cell.size(), false, false});
    }
  }
  if (spans_.size() > kPartCells) {
    CutOffPart(record, line);
  } else if (!ends_here && spans_.size() > 1) {
    line.next = spans_.back().begin;  // the newest cell may go on
    spans_.pop_back();
    record.goes_on = true;
  } else if (!ends_here) {
    return false;
  } else {
    extra_lines_ = 1;
    ++(line.end < buffer_.size() && buffer_[line.end] == '\n' ? lf_count_ : cr_count_);
  }
  return true;
}

// `cells` keeps its room from record to record.
void RecordReader::CutPlain(std::string_view line, std::vector<std::string_view>& cells) const {
  if (separator_ == 0) return cells.assign(1, line);
  cells.resize(cells.capacity());
  std::size_t count = 0;
  std::size_t begin = 0;
  const auto add = [&](std::size_t end) {
    if (count + 1 >= cells.size()) cells.resize(2 * cells.size() + 16);
    cells[count++] = line.substr(begin, end - begin);
    begin = end + 1;
  };
  std::size_t at = 0;
  if constexpr (std::endian::native == std::endian::little) {
    const std::uint64_t mask = kEveryByte * static_cast<unsigned char>(separator_);
    for (; at + 8 <= line.size(); at += 8) {
      std::uint64_t word;
      std::memcpy(&word, line.data() + at, 8);
      for (std::uint64_t hits = BytesThatAre(word, mask); hits != 0; hits &= hits - 1)
        add(at + static_cast<std::size_t>(std::countr_zero(hits)) / 8);
    }
  }
  for (; at < line.size(); ++at) {
    if (line[at] == separator_) add(at);
  }
  add(line.size());
  cells.resize(count);
}

void RecordReader::CutBlanks(std::string_view line, std::vector<std::string_view>& cells) {
  cells.clear();
  for (std::size_t at = 0;;) {
    while (at < line.size() && IsBlank(line[at])) ++at;
    if (at >= line.size()) break;
    const std::size_t begin = at;
    while (at < line.size() && !IsBlank(line[at])) ++at;
    cells.push_back(line.substr(begin, at - begin));
  }
  if (cells.empty()) cells.push_back(line.substr(line.size()));
}

void RecordReader::Trim(std::vector<std::string_view>& cells) {
  for (std::string_view& cell : cells) {
    while (!cell.empty() && cell.front() == ' ') cell.remove_prefix(1);
    while (!cell.empty() && cell.back() == ' ') cell.remove_suffix(1);
  }
}

}  // namespace loom::dialect
