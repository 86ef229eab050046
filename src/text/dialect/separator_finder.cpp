#include "text/dialect/separator_finder.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "text/dialect/cell_value.h"
#include "text/dialect/record_reader.h"
#include "text/dialect/time_cell.h"

namespace loom::dialect {
namespace {

constexpr std::size_t kScoredBytes = std::size_t{192} << 10;
constexpr std::size_t kTypedRecords = 400;
constexpr std::size_t kTypedCells = 20000;
constexpr double kWrappedShare = 0.6;
constexpr double kSomeWrapped = 0.1;
constexpr double kOnlyWords = 0.2;  // words between blanks are rather one text

struct Candidate {
  const char* separator;
  double weight;
};
constexpr Candidate kCandidates[] = {{",", 1.0},  {";", 1.0}, {"\t", 1.02}, {"|", 0.98},   {kBlanks, 0.8},
                                     {" ", 0.79}, {"^", 0.8}, {"~", 0.75},  {"\x1F", 0.9}, {"\x01", 0.9},
                                     {":", 0.45}, {"#", 0.6}, {"!", 0.6},   {"&", 0.6},    {"*", 0.5},
                                     {"/", 0.4},  {"$", 0.6}, {"@", 0.55},  {"=", 0.4}};

// How much a cell looks like one value.
double Cleanness(std::string_view cell, std::string_view separator, bool is_quoted) {
  const std::string_view text = Trimmed(cell);
  if (text.empty()) return 0.75;
  if (ParseNumber(text, ',') || IsNullWord(text)) return 1.0;
  if (ParseTimeText(text)) return 1.0;
  if (is_quoted) return 0.95;
  double clean = 0.9;
  for (const char c : kSeparatorChars) {
    if (separator.find(c) == std::string_view::npos && text.find(c) != std::string_view::npos) {
      clean = c == ',' && text.find(' ') != std::string_view::npos ? 0.6 : 0.3;
      break;
    }
  }
  if (text.find('"') != std::string_view::npos) clean *= 0.6;
  return clean;
}

struct Counts {
  std::map<std::size_t, std::size_t> by_width;
  std::vector<std::size_t> widths;  // of the records, without an empty last cell
  std::vector<bool> ends_open;      // a separator ends the record
  double clean_sum = 0;
  std::size_t clean_cells = 0;
  std::size_t typed_cells = 0;  // numbers, times, words for nothing, values with a name
  std::size_t quoted_cells = 0;
  std::size_t blank_started = 0;
  std::size_t behind_separator = 0;
  std::size_t stray = 0;
};

Counts CountCells(std::string_view sample, const Form& form, std::size_t width) {
  Counts counts;
  MemorySource source(sample);
  RecordReader reader(source, form, width);
  Record record;
  while (reader.Next(record)) {
    if (record.is_blank || record.is_comment || record.goes_on || record.first_cell > 0) continue;
    const std::size_t without_end = record.CountWithoutEnd();
    counts.widths.push_back(without_end);
    counts.ends_open.push_back(without_end != record.cells.size());
    ++counts.by_width[without_end];
    counts.quoted_cells += record.has_quoted ? 1 : 0;
    counts.stray += record.has_stray ? 1 : 0;
    if (counts.widths.size() > kTypedRecords || counts.clean_cells > kTypedCells) continue;
    for (std::size_t at = 0; at < record.cells.size(); ++at) {
      const std::string_view cell = record.cells[at];
      const double clean = Cleanness(cell, form.separator, record.has_quoted);
      counts.clean_sum += clean;
      counts.typed_cells += clean == 1.0 || cell.find('=') != std::string_view::npos ? 1 : 0;
      ++counts.clean_cells;
      if (at == 0 || cell.empty()) continue;
      ++counts.behind_separator;
      if (cell.front() == ' ') ++counts.blank_started;
    }
    counts.blank_started += record.padded_quotes;
  }
  return counts;
}

std::size_t UsualWidth(const Counts& counts) {
  std::size_t best = 1;
  double best_weight = 0;
  for (const auto& [width, records] : counts.by_width) {
    if (width < 2) continue;
    const double weight = static_cast<double>(records) * (1.0 + 0.15 * std::log2(static_cast<double>(width)));
    if (weight > best_weight) {
      best_weight = weight;
      best = width;
    }
  }
  return best;
}

double ScoreOf(const Counts& counts, std::size_t width) {
  const std::size_t records = counts.widths.size();
  if (records == 0 || width < 2) return 0;
  const auto first = static_cast<std::size_t>(std::ranges::find(counts.widths, width) - counts.widths.begin());
  double fits = 0;
  double seen = 0;
  for (std::size_t at = first; at < records; ++at) {
    const std::size_t cells = counts.widths[at];
    seen += 1;
    // A record that ends with a separator may lack its last cells.
    if (cells == width || (counts.ends_open[at] && cells + 1 == width))
      fits += 1;
    else if (cells > 1 && cells < width)
      fits += 0.5;
    else if (cells > width)
      fits += 0.25;
  }
  const double consistency = fits / seen;
  const double covered = seen / static_cast<double>(records);
  const double clean = counts.clean_cells > 0 ? counts.clean_sum / static_cast<double>(counts.clean_cells) : 0;
  const double gain = 1.0 - 0.35 / static_cast<double>(width - 1) * (records > 2 ? 1.0 : 0.5);
  return consistency * consistency * (0.55 + 0.45 * covered) * clean * clean * gain;
}

// Cells that `quote` wraps, among those that are not empty; by plain cutting.
double WrappedShare(std::string_view sample, const Form& form, char quote) {
  Form plain = form;
  plain.quote = 0;
  MemorySource source(sample);
  RecordReader reader(source, plain);
  Record record;
  std::map<std::size_t, std::pair<std::size_t, std::size_t>> by_column;
  std::size_t records = 0;
  while (reader.Next(record) && records < kTypedRecords) {
    if (record.is_blank || record.is_comment) continue;
    ++records;
    std::size_t last_close = 0;  // cells before it may be closed by a later one
    for (std::size_t at = 0; at < record.cells.size(); ++at) {
      const std::string_view cell = Trimmed(record.cells[at]);
      if (cell.size() > 1 && cell.back() == quote) last_close = at + 1;
    }
    for (std::size_t at = 0; at < record.cells.size(); ++at) {
      const std::string_view cell = Trimmed(record.cells[at]);
      if (cell.empty()) continue;
      auto& [wrapped, all] = by_column[at];
      ++all;
      if (cell.front() == quote && at < last_close) ++wrapped;
    }
  }
  double best = 0;
  for (const auto& [column, shares] : by_column) {
    if (shares.second >= 2)
      best = std::max(best, static_cast<double>(shares.first) / static_cast<double>(shares.second));
  }
  return best;
}

// Quotes within quotes that a backslash announces, where none is doubled.
bool HasEscapes(std::string_view sample, const Form& form) {
  std::size_t escaped = 0;
  std::size_t doubled = 0;
  for (std::size_t at = 1; at + 1 < sample.size(); ++at) {
    if (sample[at] != form.quote) continue;
    const char before = sample[at - 1];
    const char after = sample[at + 1];
    if (before == '\\' && after != '\n' && after != '\r') ++escaped;
    const bool is_empty_cell = form.separator.find(before) != std::string::npos || before == '\n';
    if (after == form.quote && !is_empty_cell) ++doubled;
  }
  return escaped > doubled;
}

CutScore ScoreOne(std::string_view sample, const Form& form) {
  CutScore cut{.separator = form.separator, .quote = form.quote};
  const std::size_t rough = UsualWidth(CountCells(sample, form, 0));
  const Counts counts = CountCells(sample, form, rough);
  cut.width = UsualWidth(counts);
  cut.score = ScoreOf(counts, cut.width);
  const bool is_cut_at_blanks = form.separator == kBlanks || form.separator == " ";
  if (is_cut_at_blanks && counts.typed_cells == 0) cut.score *= kOnlyWords;
  cut.has_quoted = counts.quoted_cells > 0;
  cut.trims_blanks = form.separator != kBlanks && form.separator != "\t" && counts.behind_separator > 0 &&
                     static_cast<double>(counts.blank_started) > 0.9 * static_cast<double>(counts.behind_separator);
  return cut;
}

}  // namespace

std::vector<CutScore> ScoreCuts(std::string_view sample, const Form& known, const Overrides& overrides) {
  if (sample.size() > kScoredBytes) sample = sample.substr(0, sample.find_last_of("\r\n", kScoredBytes) + 1);
  std::vector<CutScore> cuts;
  const bool has_backslash = sample.find("\\\"") != std::string_view::npos;
  for (const Candidate& candidate : kCandidates) {
    if (overrides.separator && *overrides.separator != candidate.separator) continue;
    Form form = known;
    form.separator = candidate.separator;
    const std::string_view chars = candidate.separator == std::string_view(kBlanks) ? " " : candidate.separator;
    if (!overrides.separator && sample.find_first_of(chars) == std::string_view::npos) continue;
    form.quote = overrides.quote ? (overrides.quote->empty() ? '\0' : overrides.quote->front()) : '"';
    CutScore best = ScoreOne(sample, form);
    const double wrapped = overrides.quote ? 0 : WrappedShare(sample, form, '\'');
    if (wrapped >= kSomeWrapped) {
      form.quote = '\'';
      const CutScore other = ScoreOne(sample, form);
      if ((!best.has_quoted && wrapped >= kWrappedShare) || other.score > best.score * 1.05) best = other;
      form.quote = '"';
    }
    if (!overrides.escape && form.quote == '"' && has_backslash) {
      form.escape = '\\';
      CutScore other = ScoreOne(sample, form);
      other.escape = form.escape;
      if (other.score > best.score * (HasEscapes(sample, form) ? 0.7 : 1.0)) best = other;
    }
    best.score *= candidate.weight;
    cuts.push_back(best);
  }
  if (cuts.empty()) {
    Form form = known;
    form.separator = overrides.separator.value_or("");
    form.quote = overrides.quote ? (overrides.quote->empty() ? '\0' : overrides.quote->front()) : '"';
    cuts.push_back(ScoreOne(sample, form));
  }
  std::ranges::stable_sort(cuts, std::greater(), &CutScore::score);
  CutScore& best = cuts.front();
  Form form = known;
  form.separator = best.separator;
  form.quote = best.quote;
  if (overrides.escape) {
    best.escape = overrides.escape->empty() ? '\0' : overrides.escape->front();
  } else if (best.escape == 0 && best.quote == '"' && best.has_quoted && HasEscapes(sample, form)) {
    best.escape = '\\';
  }
  if (!best.has_quoted && !overrides.quote) best.quote = 0;
  return cuts;
}

}  // namespace loom::dialect
