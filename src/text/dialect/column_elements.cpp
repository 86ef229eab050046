#include "text/dialect/column_elements.h"

#include <algorithm>
#include <array>
#include <set>

#include "components/project.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/path.h"
#include "text/dialect/cell_value.h"
#include "text/navigator/parameter_navigator.h"

namespace loom::dialect {
namespace {

constexpr const char* kTableName = "text_columns.tsv";

struct UnitRow {
  const char* unit;
  const char* base;
  double factor;
};
constexpr UnitRow kUnitRows[] = {
    {"km/h", "km/h", 1},     {"m/s", "km/h", 3.6},      {"mph", "km/h", 1.609344},  {"kn", "km/h", 1.852},
    {"m", "m", 1},           {"km", "m", 1000},         {"ft", "m", 0.3048},        {"mi", "m", 1609.344},
    {"kbit/s", "kbit/s", 1}, {"bit/s", "kbit/s", 1e-3}, {"Mbit/s", "kbit/s", 1000}, {"Hz", "Hz", 1},
    {"kHz", "Hz", 1e3},      {"MHz", "Hz", 1e6},        {"GHz", "Hz", 1e9},         {"ms", "ms", 1},
    {"s", "ms", 1000},       {"min", "ms", 60000}};

// The name without its unit.
std::string KeyOf(const std::string& name) {
  std::string bare = name;
  const auto bracket = bare.find_first_of("([");
  if (bracket != std::string::npos && bracket > 0) bare.resize(bracket);
  std::vector<std::string> words = WordsOf(bare);
  if (words.size() > 1 && !UnitName(words.back()).empty() && UnitName(words.back()) != "m") words.pop_back();
  std::string key;
  for (const std::string& word : words) key += (key.empty() ? "" : "_") + word;
  return key;
}

struct Vote {
  const char* protocol;
  int count = 0;
};

// The protocol that most columns speak for, by the names that belong to one only.
std::string VotedProtocol(const Findings& found, const ElementRules& rules) {
  std::array<Vote, 3> votes{{{"LTE"}, {"GSM"}, {"TD-SCDMA"}}};
  for (const ColumnFinding& column : found.columns) {
    if (column.kind == Kind::kEmpty) continue;
    const auto [from, to] = rules.equal_range(KeyOf(column.name));
    if (from == to || std::next(from) != to) continue;
    for (Vote& vote : votes) vote.count += from->second.protocol == vote.protocol;
  }
  const auto best = std::ranges::max_element(votes, std::less(), &Vote::count);
  return best->count > 0 ? best->protocol : "";
}

const ElementRule* RuleFor(const std::string& name, const std::string& protocol, const ElementRules& rules) {
  const auto [from, to] = rules.equal_range(KeyOf(name));
  const ElementRule* neutral = nullptr;
  for (auto rule = from; rule != to; ++rule) {
    if (rule->second.protocol == protocol && !protocol.empty()) return &rule->second;
    if (rule->second.protocol.empty() || (protocol.empty() && std::next(from) == to)) neutral = &rule->second;
  }
  return neutral;
}

ElementColumn ElementOf(std::size_t column, const std::string& element) {
  const std::int32_t id = g_sysProject->GetIEID(Utf8ToGbk(element));
  if (id < 0) throw Error("the catalogue has no information element \"" + element + "\"");
  const MemTableFieldTypeEnum type = g_sysProject->GetIEMemType(id);
  return {.column = column,
          .element = element,
          .is_number = type == kFieldFloat || type == kFieldInt || type == kFieldShort,
          .is_whole = type == kFieldInt || type == kFieldShort};
}

}  // namespace

bool UnitConversion(std::string_view from, std::string_view to, double& factor, double& offset) {
  factor = 1;
  offset = 0;
  if (from == to || from.empty() || to.empty()) return true;
  const auto row_of = [](std::string_view unit) {
    return std::ranges::find_if(kUnitRows, [&](const UnitRow& row) { return unit == row.unit; });
  };
  const auto a = row_of(from);
  const auto b = row_of(to);
  if (a == std::end(kUnitRows) || b == std::end(kUnitRows) || std::string_view(a->base) != b->base) return false;
  factor = a->factor / b->factor;
  return true;
}

ElementRules ParseElementRules(std::string_view table) {
  ElementRules rules;
  std::size_t number = 0;
  while (!table.empty()) {
    ++number;
    const auto end = std::min(table.find('\n'), table.size());
    std::string_view line = table.substr(0, end);
    table.remove_prefix(std::min(end + 1, table.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) continue;
    std::array<std::string, 4> fields;
    for (std::size_t at = 0; at < fields.size(); ++at) {
      const auto tab = std::min(line.find('\t'), line.size());
      fields[at] = line.substr(0, tab);
      line.remove_prefix(std::min(tab + 1, line.size()));
    }
    if (fields[0].empty() || fields[3].empty() || !line.empty())
      throw Error(std::string(kTableName) + " line " + std::to_string(number) + ": not element, unit, protocol, names");
    std::string_view names = fields[3];
    while (!names.empty()) {
      const auto blank = std::min(names.find(' '), names.size());
      if (blank > 0) rules.emplace(names.substr(0, blank), ElementRule{fields[0], fields[1], fields[2]});
      names.remove_prefix(std::min(blank + 1, names.size()));
    }
  }
  return rules;
}

ElementRules LoadElementRules() {
  return ParseElementRules(ReadWholeText(JoinPath(FolderOf(NavigatorPath()), kTableName)));
}

ElementMapping MapElements(const Findings& found, const ElementRules& rules,
                           const std::map<std::size_t, std::string>& given) {
  ElementMapping mapping;
  std::set<std::size_t> taken;
  if (found.time) taken.insert(found.time->columns.begin(), found.time->columns.end());
  if (found.latitude) taken.insert(found.latitude->columns.begin(), found.latitude->columns.end());
  if (found.longitude) taken.insert(found.longitude->columns.begin(), found.longitude->columns.end());
  std::set<std::string> used{"RecordTime", "Longitude", "Latitude"};
  for (const auto& [column, element] : given) {
    if (column >= found.columns.size()) throw Error("--map: there is no column " + std::to_string(column));
    if (!element.empty() && !used.insert(element).second) throw Error("--map: \"" + element + "\" is given twice");
  }
  const std::string protocol = VotedProtocol(found, rules);
  for (std::size_t at = 0; at < found.columns.size(); ++at) {
    const ColumnFinding& column = found.columns[at];
    const auto by_person = given.find(at);
    std::string element;
    std::string unit;
    if (by_person != given.end()) {
      element = by_person->second;
      if (!element.empty()) unit = GbkToUtf8(g_sysProject->GetIEUnitByIEName(Utf8ToGbk(element)));
    } else if (!taken.contains(at) && column.kind != Kind::kTime && column.kind != Kind::kEmpty) {
      if (const ElementRule* const rule = RuleFor(column.name, protocol, rules)) {
        element = rule->element;
        unit = rule->unit;
      } else if (g_sysProject->GetIEByName(Utf8ToGbkOr(column.name, '?')) != nullptr) {
        element = column.name;
      }
      const bool is_free = !element.empty() && used.insert(element).second;
      if (!is_free) element.clear();
    }
    ElementColumn one;
    if (!element.empty()) {
      one = ElementOf(at, element);
      const bool is_text = column.kind == Kind::kText;
      const bool fits = UnitConversion(column.unit, unit, one.factor, one.offset) || by_person != given.end();
      // Texts would become zeros.
      if (by_person == given.end() && (!fits || (one.is_number && is_text))) element.clear();
    }
    if (element.empty()) {
      if (!taken.contains(at)) mapping.unmapped.push_back(at);
    } else {
      mapping.columns.push_back(one);
    }
  }
  std::set<std::string> protocols;
  for (const ElementColumn& column : mapping.columns) {
    for (const auto& [name, rule] : rules) {
      if (rule.element == column.element && !rule.protocol.empty()) protocols.insert(rule.protocol);
    }
  }
  mapping.protocol = protocols.size() == 1 ? *protocols.begin() : protocol;
  return mapping;
}

}  // namespace loom::dialect
