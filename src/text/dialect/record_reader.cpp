#include "text/dialect/record_reader.h"

#include <algorithm>
#include <cstring>

#include "platform/error.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kLookAhead = std::size_t{256} << 10;  // bytes behind a line that are there when it is read
constexpr std::size_t kQuotedMax = std::size_t{64} << 10;   // longest text in quotes
constexpr std::size_t kLineMax = std::size_t{4} << 20;      // longer lines come in parts
constexpr std::size_t kCellMax = std::size_t{64} << 20;
constexpr std::size_t kPartCells = std::size_t{64} << 10;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

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

bool RecordReader::Next(Record& record) {
  line_ += cells_before_ == 0 ? extra_lines_ : 0;
  FillTo(kLookAhead);
  if (position_ >= buffer_.size()) return false;
  spans_.clear();
  saw_stray_ = false;
  extra_lines_ = 0;
  std::size_t next_line;
  std::size_t end = LineEnd(position_, next_line);
  while (end + 2 > buffer_.size() && !is_at_end_ && end - position_ < kLineMax) {
    FillTo(buffer_.size() - position_ + 1);
    end = LineEnd(position_, next_line);
  }
  record.line = line_;
  record.first_cell = cells_before_;
  record.goes_on = false;
  record.is_blank = record.is_comment = record.has_quoted = false;
  if (cells_before_ > 0 || (end == buffer_.size() && !is_at_end_)) {
    TakePart(record);
    return true;
  }
  const std::size_t begin = position_;
  const std::string_view line(buffer_.data() + begin, end - begin);
  record.is_blank = line.find_first_not_of(" \t") == std::string_view::npos;
  record.is_comment = !record.is_blank && !comment_.empty() && line.starts_with(comment_);
  if (record.is_blank || record.is_comment || (separator_ == 0 && !is_blanks_ && quote_ == 0)) {
    spans_.push_back({begin, end, false, false});
  } else if (quote_ != 0 && Seek(quote_seeker_, begin) < end) {
    const std::size_t quoted_end = SplitWithQuotes(begin, end);
    if (quoted_end != end) end = LineEnd(quoted_end, next_line);
  } else if (is_blanks_) {
    SplitBlanks(begin, end);
  } else {
    SplitPlain(begin, end);
  }
  if (spans_.size() > kPartCells) {
    end = next_line = spans_[kPartCells].begin;
    spans_.resize(kPartCells);
    extra_lines_ = 0;
    record.goes_on = true;
  } else if (next_line > end) {
    const bool is_lf = buffer_[end] == '\n';
    ++(is_lf ? lf_count_ : next_line - end == 2 ? crlf_count_ : cr_count_);
    ++extra_lines_;
  }
  record.line_count = std::max<std::uint64_t>(extra_lines_, 1);
  HandOver(record);
  cells_before_ = record.goes_on ? record.cells.size() : 0;
  consumed_ += next_line - position_;
  position_ = next_line;
  return true;
}

// A part of a line that is too long to be taken as a whole. Quotes are taken as they should be.
void RecordReader::TakePart(Record& record) {
  for (;;) {
    spans_.clear();
    std::size_t next_line;
    std::size_t end = LineEnd(position_, next_line);
    bool ends_here = end < buffer_.size() || is_at_end_;
    if (quote_ != 0 && Seek(quote_seeker_, position_) < end) {
      const std::size_t quoted_end = SplitQuoted(position_, end, Quoting::kTolerant);
      if (quoted_end != end) {
        end = LineEnd(quoted_end, next_line);
        ends_here = end < buffer_.size() || is_at_end_;
      }
    } else if (is_blanks_) {
      SplitBlanks(position_, end);
    } else {
      SplitPlain(position_, end);
    }
    const std::size_t first = cells_before_;
    if (spans_.size() > kPartCells) {
      next_line = spans_[kPartCells].begin;
      spans_.resize(kPartCells);
      record.goes_on = true;
    } else if (!ends_here && spans_.size() > 1) {
      next_line = spans_.back().begin;  // the newest cell may go on
      spans_.pop_back();
      record.goes_on = true;
    } else if (!ends_here) {
      if (buffer_.size() - position_ > kCellMax)
        throw Error("line " + std::to_string(line_) + ": a cell of more than " + std::to_string(kCellMax >> 20) +
                    " MB");
      FillTo(buffer_.size() - position_ + 1);
      continue;
    } else {
      extra_lines_ = 1;
      ++(end < buffer_.size() && buffer_[end] == '\n' ? lf_count_ : cr_count_);
    }
    HandOver(record);
    record.line_count = 1;
    cells_before_ = record.goes_on ? first + record.cells.size() : 0;
    consumed_ += next_line - position_;
    position_ = next_line;
    return;
  }
}

void RecordReader::SplitPlain(std::size_t begin, std::size_t end) {
  if (separator_ == 0) return spans_.push_back({begin, end, false, false});
  const char* const text = buffer_.data();
  for (std::size_t at = begin;;) {
    const void* const found = std::memchr(text + at, separator_, end - at);
    if (found == nullptr) return spans_.push_back({at, end, false, false});
    const auto stop = static_cast<std::size_t>(static_cast<const char*>(found) - text);
    spans_.push_back({at, stop, false, false});
    at = stop + 1;
  }
}

void RecordReader::SplitBlanks(std::size_t begin, std::size_t end) {
  std::size_t at = begin;
  while (end > begin && IsBlank(buffer_[end - 1])) --end;
  for (;;) {
    while (at < end && IsBlank(buffer_[at])) ++at;
    if (at >= end) break;
    const std::size_t start = at;
    while (at < end && !IsBlank(buffer_[at])) ++at;
    spans_.push_back({start, at, false, false});
  }
}

bool RecordReader::IsCellEnd(std::size_t at) const {
  if (at >= buffer_.size()) return true;
  const char c = buffer_[at];
  return c == separator_ || c == '\n' || c == '\r' || (is_blanks_ && IsBlank(c));
}

// Position of the quote that closes the one at `open`; npos where none does.
std::size_t RecordReader::CloseOf(std::size_t open, std::size_t limit, Quoting quoting, std::size_t* loose_end) const {
  const char escape = quoting == Quoting::kEscaped ? '\\' : escape_;
  for (std::size_t at = open + 1; at < limit;) {
    const void* const found = std::memchr(buffer_.data() + at, quote_, limit - at);
    if (found == nullptr) return std::string::npos;
    at = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.data());
    if (escape != 0) {
      std::size_t escapes = 0;
      while (at - escapes > open + 1 && buffer_[at - escapes - 1] == escape) ++escapes;
      if (escapes % 2 == 1) {
        ++at;
        continue;
      }
    }
    if (at + 1 < limit && buffer_[at + 1] == quote_) {
      at += 2;
      continue;
    }
    std::size_t behind = at + 1;
    while (!is_blanks_ && separator_ != '\t' && separator_ != ' ' && behind < limit && buffer_[behind] == ' ') ++behind;
    if (IsCellEnd(behind)) return at;
    if (*loose_end == std::string::npos) *loose_end = at;
    if (quoting == Quoting::kLoose) return at;
    if (quoting == Quoting::kStrict) return std::string::npos;
    ++at;
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

// Cuts a line that holds quotes; gives where its text ends, which is behind `end` when a cell holds line ends.
std::size_t RecordReader::SplitQuoted(std::size_t begin, std::size_t end, Quoting quoting) {
  std::size_t at = begin;
  for (;;) {
    std::size_t open = at;
    const auto is_pad = [&](char c) { return is_blanks_ ? IsBlank(c) : c == ' ' && separator_ != ' '; };
    while (open < end && is_pad(buffer_[open])) ++open;
    if (is_blanks_) {
      at = open;
      if (at >= end) return end;
    }
    if (open < end && buffer_[open] == quote_ && quoting != Quoting::kLiteral) {
      const bool may_look_on = wasted_ <= 8 * consumed_ + (std::size_t{1} << 20);
      const std::size_t limit = std::min(may_look_on ? open + kQuotedMax : end, buffer_.size());
      std::size_t loose_end = std::string::npos;
      std::size_t close = may_look_on ? CloseOf(open, limit, quoting, &loose_end) : std::string::npos;
      if (close == std::string::npos) {
        wasted_ += limit - open;
      } else if (close > end) {
        wasted_ += close - end;
        if (LooksLikeLines(at, end)) close = std::string::npos;
      }
      if (loose_end != std::string::npos) saw_stray_ = true;
      if (close != std::string::npos) {
        if (close > end) {
          for (std::size_t line_end = end; line_end < close;) {
            std::size_t next_line;
            line_end = LineEnd(line_end, next_line);
            if (line_end >= close) break;
            ++extra_lines_;
            line_end = next_line;
          }
          std::size_t next_line;
          end = LineEnd(close, next_line);
        }
        std::size_t stop = close + 1;
        while (stop < end && !IsCellEnd(stop)) ++stop;
        const bool has_tail =
            std::any_of(buffer_.begin() + static_cast<std::ptrdiff_t>(close + 1),
                        buffer_.begin() + static_cast<std::ptrdiff_t>(stop), [](char c) { return c != ' '; });
        if (has_tail) {
          spans_.push_back({open, stop, false, true});  // quotes and what follows them
        } else {
          spans_.push_back({open + 1, close, true, true});
        }
        if (stop >= end) return end;
        at = stop + 1;
        continue;
      }
      saw_stray_ = true;
    }
    std::size_t stop = at;
    while (stop < end && buffer_[stop] != separator_ && !(is_blanks_ && IsBlank(buffer_[stop]))) ++stop;
    spans_.push_back({at, stop, false, false});
    if (stop >= end) return end;
    at = stop + 1;
  }
}

bool RecordReader::FitsWidth() const {
  return spans_.size() == width_ || (spans_.size() == width_ + 1 && spans_.back().begin == spans_.back().end);
}

std::size_t RecordReader::SplitWithQuotes(std::size_t begin, std::size_t end) {
  std::size_t quoted_end = SplitQuoted(begin, end, Quoting::kTolerant);
  if (width_ < 2 || !saw_stray_ || FitsWidth()) return quoted_end;
  const std::vector<Span> as_first = spans_;
  const std::uint64_t first_lines = extra_lines_;
  const bool was_stray = saw_stray_;
  for (const Quoting quoting : {Quoting::kStrict, Quoting::kEscaped, Quoting::kLoose, Quoting::kLiteral}) {
    if (quoting == Quoting::kEscaped && (escape_ != 0 || separator_ == '\\')) continue;
    spans_.clear();
    extra_lines_ = 0;
    const std::size_t other_end = SplitQuoted(begin, end, quoting);
    wasted_ += other_end - begin;
    if (FitsWidth() && other_end == end) {
      saw_stray_ = true;
      return other_end;
    }
  }
  spans_ = as_first;
  extra_lines_ = first_lines;
  saw_stray_ = was_stray;
  return quoted_end;
}

void RecordReader::HandOver(Record& record) {
  record.cells.clear();
  record.has_stray = saw_stray_;
  for (Span& span : spans_) {
    if (span.is_quoted) {
      record.has_quoted = true;
      const char escape = escape_ != 0 ? escape_ : '\\';
      const auto begin = buffer_.begin() + static_cast<std::ptrdiff_t>(span.begin);
      auto out = begin;
      const auto end = buffer_.begin() + static_cast<std::ptrdiff_t>(span.end);
      if (std::memchr(buffer_.data() + span.begin, quote_, span.end - span.begin) != nullptr) {
        for (auto in = begin; in != end; ++in) {
          const bool undoes = in + 1 != end && in[1] == quote_ && (*in == quote_ || *in == escape);
          if (undoes) ++in;
          *out++ = *in;
        }
        span.end = span.begin + static_cast<std::size_t>(out - begin);
        quote_seeker_.is_known = false;
      }
    } else if (trims_blanks_) {
      while (span.begin < span.end && buffer_[span.begin] == ' ') ++span.begin;
      while (span.end > span.begin && buffer_[span.end - 1] == ' ') --span.end;
    }
    record.cells.emplace_back(buffer_.data() + span.begin, span.end - span.begin);
  }
}

}  // namespace loom::dialect
