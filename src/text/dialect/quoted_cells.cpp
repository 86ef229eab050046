#include <algorithm>
#include <cstring>

#include "text/dialect/record_reader.h"

// Cells in quotes, also where these are not as they should be.
namespace loom::dialect {
namespace {

constexpr std::size_t kQuotedMax = std::size_t{64} << 10;  // longest text in quotes

}  // namespace

bool RecordReader::IsCellEnd(std::size_t at) const {
  if (at >= buffer_.size()) return true;
  const char c = buffer_[at];
  return c == separator_ || c == '\n' || c == '\r' || (is_blanks_ && IsBlank(c));
}

// True where an odd number of escapes stands before `at`.
bool RecordReader::IsEscaped(std::size_t open, std::size_t at, char escape) const {
  std::size_t escapes = 0;
  while (at - escapes > open + 1 && buffer_[at - escapes - 1] == escape) ++escapes;
  return escapes % 2 == 1;
}

// Position of the quote that closes the one at `open`; npos where none does.
std::size_t RecordReader::CloseOf(std::size_t open, std::size_t limit, Quoting quoting, bool& has_loose_end) const {
  const char escape = quoting == Quoting::kEscaped ? '\\' : escape_;
  const bool may_be_padded = !is_blanks_ && separator_ != '\t' && separator_ != ' ';
  for (std::size_t at = open + 1; at < limit; ++at) {
    const void* const found = std::memchr(buffer_.data() + at, quote_, limit - at);
    if (found == nullptr) return std::string::npos;
    at = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
    if (escape != 0 && IsEscaped(open, at, escape)) continue;
    if (at + 1 < limit && buffer_[at + 1] == quote_) {
      ++at;
      if (quoting == Quoting::kLoose && IsCellEnd(at + 1)) return at;  // the first one is a character like others
      continue;
    }
    std::size_t behind = at + 1;
    while (may_be_padded && behind < limit && buffer_[behind] == ' ') ++behind;
    if (IsCellEnd(behind)) return at;
    has_loose_end = true;
    if (quoting == Quoting::kLoose) return at;
    if (quoting == Quoting::kStrict) return std::string::npos;
  }
  return std::string::npos;
}

// True where what a quote would hold is made of whole lines of the table.
bool RecordReader::LooksLikeLines(std::size_t cell_begin, std::size_t end) {
  if (width_ < 3 || separator_ == 0) return false;
  const auto count = [&](std::size_t from, std::size_t to) {
    return static_cast<std::size_t>(std::count(buffer_.data() + from, buffer_.data() + to, separator_));
  };
  const std::size_t first = spans_.size() + count(cell_begin, end) + 1;
  std::size_t next = end + 1;
  if (buffer_[end] == '\r' && next < buffer_.size() && buffer_[next] == '\n') ++next;
  const std::size_t stop = std::min(buffer_.find_first_of("\r\n", next), buffer_.size());
  wasted_ += stop - cell_begin;
  const std::size_t second = count(next, stop) + 1;
  const auto fits = [&](std::size_t cells) { return cells == width_ || cells == width_ + 1; };
  return fits(first) && fits(second);
}

// The quote that closes the one at `open`, where it is one: looking for it has its limits.
std::size_t RecordReader::FindClose(std::size_t begin, std::size_t open, std::size_t end, Quoting quoting) {
  const bool may_look_on = wasted_ <= 8 * consumed_ + (std::size_t{1} << 20);
  const std::size_t limit = std::min(may_look_on ? open + kQuotedMax : end, buffer_.size());
  bool has_loose_end = false;
  std::size_t close = may_look_on ? CloseOf(open, limit, quoting, has_loose_end) : std::string::npos;
  if (close == std::string::npos) {
    wasted_ += limit - open;
  } else if (close > end) {
    wasted_ += close - end;
    if (LooksLikeLines(begin, end)) close = std::string::npos;
  }
  if (has_loose_end) saw_stray_ = true;
  return close;
}

// Counts the line ends between `end`, where the text of a line ends, and `close`; gives where the text of that line
// ends.
std::size_t RecordReader::PassLineEnds(std::size_t end, std::size_t close) {
  std::size_t next_line;
  while (end < close) {
    end = LineEnd(end, next_line);
    if (end >= close) break;
    ++extra_lines_;
    end = next_line;
  }
  return LineEnd(close, next_line);
}

// Takes the cell whose quotes stand at `open` and `close`; gives where it ends.
std::size_t RecordReader::TakeQuoted(std::size_t open, std::size_t close, std::size_t end) {
  std::size_t stop = close + 1;
  while (stop < end && !IsCellEnd(stop)) ++stop;
  const bool has_tail =
      std::string_view(buffer_).substr(close + 1, stop - close - 1).find_first_not_of(' ') != std::string_view::npos;
  if (has_tail)
    spans_.push_back({open, stop, false, true});  // quotes and what follows them
  else
    spans_.push_back({open + 1, close, true, true});
  return stop;
}

// Cuts a line that holds quotes; gives where its text ends, which is behind `end` when a cell holds line ends.
std::size_t RecordReader::SplitQuoted(std::size_t begin, std::size_t end, Quoting quoting) {
  const auto is_pad = [&](char c) { return is_blanks_ ? IsBlank(c) : c == ' ' && separator_ != ' '; };
  padded_quotes_ = 0;
  for (std::size_t at = begin;;) {
    std::size_t open = at;
    while (open < end && is_pad(buffer_[open])) ++open;
    if (is_blanks_) {
      at = open;
      if (at >= end) return end;
    }
    std::size_t stop = at;
    std::size_t close = std::string::npos;
    if (open < end && buffer_[open] == quote_ && quoting != Quoting::kLiteral) {
      close = FindClose(at, open, end, quoting);
      if (close == std::string::npos) saw_stray_ = true;
    }
    if (close != std::string::npos) {
      if (close > end) end = PassLineEnds(end, close);
      padded_quotes_ += open > at && at > begin ? 1 : 0;
      stop = TakeQuoted(open, close, end);
    } else {
      while (stop < end && buffer_[stop] != separator_ && !(is_blanks_ && IsBlank(buffer_[stop]))) ++stop;
      spans_.push_back({at, stop, false, false});
    }
    if (stop >= end) return end;
    at = stop + 1;
  }
}

bool RecordReader::FitsWidth(bool may_end_open) const {
  if (spans_.size() == width_) return true;
  return may_end_open && spans_.size() == width_ + 1 && spans_.back().begin == spans_.back().end;
}

// The reading that gives as many cells as the other records have; where none does, the plain one.
std::size_t RecordReader::SplitWithQuotes(std::size_t begin, std::size_t end) {
  const std::size_t quoted_end = SplitQuoted(begin, end, Quoting::kTolerant);
  if (width_ < 2 || !saw_stray_ || FitsWidth(true)) return quoted_end;
  std::vector<Span> as_first = spans_;
  const std::uint64_t first_lines = extra_lines_;
  for (const bool may_end_open : {false, true}) {
    for (const Quoting quoting : {Quoting::kStrict, Quoting::kEscaped, Quoting::kLoose, Quoting::kLiteral}) {
      if (quoting == Quoting::kEscaped && (escape_ != 0 || separator_ == '\\')) continue;
      spans_.clear();
      extra_lines_ = 0;
      const std::size_t other_end = SplitQuoted(begin, end, quoting);
      wasted_ += other_end - begin;
      saw_stray_ = true;
      if (other_end == end && FitsWidth(may_end_open)) return other_end;
    }
  }
  spans_ = std::move(as_first);
  extra_lines_ = first_lines;
  return quoted_end;
}

// Gives the spans as cells, with doubled and escaped quotes undone.
void RecordReader::HandOver(Record& record) {
  record.cells.clear();
  record.has_stray = saw_stray_;
  record.padded_quotes = padded_quotes_;
  for (Span& span : spans_) {
    if (span.is_quoted) {
      record.has_quoted = true;
      Unescape(span);
    } else if (trims_blanks_) {
      while (span.begin < span.end && buffer_[span.begin] == ' ') ++span.begin;
      while (span.end > span.begin && buffer_[span.end - 1] == ' ') --span.end;
    }
    record.cells.emplace_back(buffer_.data() + span.begin, span.end - span.begin);
  }
  padded_quotes_ = 0;
}

void RecordReader::Unescape(Span& span) {
  char* const text = buffer_.data();
  if (std::memchr(text + span.begin, quote_, span.end - span.begin) == nullptr) return;
  const char escape = escape_ != 0 ? escape_ : '\\';
  std::size_t out = span.begin;
  for (std::size_t in = span.begin; in < span.end; ++in) {
    const bool undoes = in + 1 < span.end && text[in + 1] == quote_ && (text[in] == quote_ || text[in] == escape);
    if (undoes) ++in;
    text[out++] = text[in];
  }
  span.end = out;
  quote_seeker_.is_known = false;
}

}  // namespace loom::dialect
