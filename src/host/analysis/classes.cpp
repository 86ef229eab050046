#include "host/analysis/classes.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "host/analysis/nice_step.h"
#include "host/catalogue/table_file.h"
#include "platform/file.h"

namespace loom::analysis {
namespace {

// From dark to light, as eyes of every kind see it.
constexpr const char* kPlainColours[] = {"#440154", "#3b528b", "#21918c", "#5ec962", "#b8de29", "#fde725"};

std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t from = 0; (from = text.find_first_not_of(' ', from)) != std::string_view::npos;) {
    const std::size_t end = std::min(text.find(' ', from), text.size());
    words.push_back(text.substr(from, end - from));
    from = end;
  }
  return words;
}

std::string Colour(std::string_view text) {
  const bool is_colour = text.size() == 7 && text[0] == '#' &&
                         text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string_view::npos;
  if (!is_colour) throw std::invalid_argument("'" + std::string(text) + "' is no colour (#rrggbb)");
  return std::string(text);
}

double Limit(std::string_view text, const std::vector<double>& below) {
  const auto limit = ParseDouble(text);
  if (!limit || !std::isfinite(*limit)) throw std::invalid_argument("'" + std::string(text) + "' is no number");
  if (!below.empty() && *limit <= below.back()) throw std::invalid_argument("the limits do not ascend");
  return *limit;
}

}  // namespace

std::size_t Scale::ClassOf(double value) const {
  return static_cast<std::size_t>(std::ranges::upper_bound(limits, value) - limits.begin());
}

Scale AutomaticScale(std::vector<double> values) {
  std::erase_if(values, [](double value) { return std::isnan(value); });
  Scale scale;
  if (!values.empty()) {
    const auto at = [&](double share) {
      const auto place = values.begin() + static_cast<std::ptrdiff_t>(share * static_cast<double>(values.size() - 1));
      std::ranges::nth_element(values, place);
      return *place;
    };
    const double low = at(0.05);
    const double high = at(0.95);
    const double step = high > low ? NiceStep((high - low) / 5.0) : 0.0;
    for (double limit = (std::floor(low / step) + 1.0) * step; step > 0.0 && limit < high && scale.limits.size() < 5;
         limit += step)
      scale.limits.push_back(limit);
  }
  for (std::size_t at = 0; at <= scale.limits.size(); ++at) scale.colours.emplace_back(kPlainColours[at]);
  return scale;
}

bool ClassTable::Entry::Matches(std::string_view element) const {
  if (!IsFamily()) return element == names;
  return element.starts_with(std::string_view(names).substr(0, names.size() - 1));
}

ClassTable ClassTable::Load(const CString& path) { return Parse(ReadWholeText(path), path); }

ClassTable ClassTable::Parse(std::string_view text, const CString& name) {
  ClassTable table;
  ForEachTableLine(text, name, [&](std::string_view line, std::int32_t) { table.AddLine(line); });
  return table;
}

void ClassTable::AddLine(std::string_view line) {
  const TableFields fields(line, 3);
  Scale scale;
  for (const std::string_view limit : Words(fields.Text(1))) scale.limits.push_back(Limit(limit, scale.limits));
  for (const std::string_view colour : Words(fields.Text(2))) scale.colours.push_back(Colour(colour));
  if (scale.colours.size() != scale.limits.size() + 1) {
    throw std::invalid_argument(std::to_string(scale.limits.size()) + " limits make " +
                                std::to_string(scale.limits.size() + 1) + " classes, and " +
                                std::to_string(scale.colours.size()) + " have a colour");
  }
  const std::vector<std::string_view> names = Words(fields.Text(0));
  if (names.empty()) throw std::invalid_argument("no element is named");
  for (const std::string_view name : names) {
    const bool is_known = std::ranges::find(entries_, name, &Entry::names) != entries_.end();
    if (is_known) throw std::invalid_argument("'" + std::string(name) + "' has classes already");
    entries_.push_back({std::string(name), scales_.size()});
  }
  scales_.push_back(std::move(scale));
}

const Scale* ClassTable::Find(std::string_view element) const {
  const auto found = std::ranges::find_if(entries_, [&](const Entry& entry) { return entry.Matches(element); });
  return found != entries_.end() ? &ScaleOf(*found) : nullptr;
}

}  // namespace loom::analysis
