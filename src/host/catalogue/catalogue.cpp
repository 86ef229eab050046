#include "host/catalogue/catalogue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <stdexcept>
#include <string>

#include "components/field_types.h"
#include "host/catalogue/name_pattern.h"
#include "host/catalogue/table_file.h"
#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/number.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr char kIEsFile[] = "ie_catalogue.tsv";
constexpr char kEventsFile[] = "events.tsv";
constexpr std::int32_t kMaxId = 999'999;

MemTableFieldTypeEnum ParseType(std::string_view name) {
  for (const FieldType& known : kFieldTypes) {
    if (known.name == name) return known.type;
  }
  throw std::invalid_argument("unknown type '" + std::string(name) + "'");
}

// What all ids of a line have in common.
CIEEntry ParseCommonPart(const TableFields& fields) {
  CIEEntry entry;
  entry.unit = Utf8ToGbk(fields.Text(3));
  entry.type = ParseType(fields.Text(4));
  const auto minimum = fields.Double(5, "the minimum");
  const auto maximum = fields.Double(6, "the maximum");
  if (minimum.has_value() != maximum.has_value()) throw std::invalid_argument("a range needs both of its ends");
  if (minimum && *minimum > *maximum) throw std::invalid_argument("the minimum lies above the maximum");
  if (minimum) {
    entry.has_range = true;
    entry.minimum = *minimum;
    entry.maximum = *maximum;
  }
  return entry;
}

}  // namespace

std::map<CString, std::int32_t> IECatalogue::EventIds() const {
  std::map<CString, std::int32_t> ids;
  for (const auto& [id, name] : events_) ids.emplace(name, id);
  return ids;
}

IECatalogue IECatalogue::Load(const CString& folder) {
  const CString ies = JoinPath(folder, kIEsFile);
  const CString events = JoinPath(folder, kEventsFile);
  return Parse(ReadWholeText(ies), ies, ReadWholeText(events), events);
}

IECatalogue IECatalogue::Parse(std::string_view ies, const CString& ies_name, std::string_view events,
                               const CString& events_name) {
  IECatalogue catalogue;
  catalogue.AddEntries(ies, ies_name);
  catalogue.AddEvents(events, events_name);
  return catalogue;
}

void IECatalogue::AddEntries(std::string_view text, const CString& file) {
  std::vector<LineStart> lines;
  ForEachTableLine(text, file, [&](std::string_view line, std::int32_t number) {
    const TableFields fields(line, 7, 2);
    const std::int32_t first_id = fields.Int(0, "the id", 1, kMaxId);
    const std::int32_t count = fields.Int(1, "the count", 1, kMaxId - first_id + 1);
    if (!entries_.empty() && first_id <= entries_.back().id) {
      throw std::invalid_argument("id " + std::to_string(first_id) + " does not lie above the ids before it, up to " +
                                  std::to_string(entries_.back().id));
    }
    const NamePattern pattern(fields.Text(2));
    if (count > 1 && !pattern.Counts()) throw std::invalid_argument("a name for several ids needs a running number");
    lines.push_back({entries_.size(), number});
    CIEEntry entry = ParseCommonPart(fields);
    std::string name;
    for (std::int32_t i = 0; i < count; ++i) {
      name.clear();
      pattern.AppendName(first_id, i, name);
      entry.id = first_id + i;
      entry.name = CString(std::string_view(name));
      entries_.push_back(entry);
    }
  });
  IndexEntries(lines, file);
}

void IECatalogue::IndexEntries(std::span<const LineStart> lines, const CString& file) {
  if (!entries_.empty()) index_by_id_.assign(static_cast<std::size_t>(entries_.back().id) + 1, -1);
  index_by_name_.reserve(entries_.size());
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const auto place = static_cast<std::int32_t>(i);
    index_by_id_[static_cast<std::size_t>(entries_[i].id)] = place;
    const auto [known, is_new] = index_by_name_.try_emplace(entries_[i].name.view(), place);
    if (is_new) continue;
    const auto behind = std::find_if(lines.begin(), lines.end(), [i](const LineStart& at) { return at.entry > i; });
    throw CatalogueError(file, std::prev(behind)->line,
                         "id " + std::to_string(entries_[i].id) + " has the name of id " +
                             std::to_string(entries_[static_cast<std::size_t>(known->second)].id) + ", " +
                             entries_[i].name.str());
  }
}

void IECatalogue::AddEvents(std::string_view text, const CString& file) {
  ForEachTableLine(text, file, [&](std::string_view line, std::int32_t) {
    const TableFields fields(line, 2);
    const std::int32_t id = fields.Int(0, "the id", 0, kMaxId);
    const CString name = Utf8ToGbk(fields.Text(1));
    if (name.IsEmpty()) throw std::invalid_argument("the name is empty");
    if (!events_.empty() && id <= events_.rbegin()->first) {
      throw std::invalid_argument("id " + std::to_string(id) + " does not lie above the id before it, " +
                                  std::to_string(events_.rbegin()->first));
    }
    events_.emplace_hint(events_.end(), id, name);
  });
}

const CIEEntry* IECatalogue::Find(std::int32_t id) const {
  if (id < 0 || static_cast<std::size_t>(id) >= index_by_id_.size()) return nullptr;
  const std::int32_t place = index_by_id_[static_cast<std::size_t>(id)];
  return place < 0 ? nullptr : &entries_[static_cast<std::size_t>(place)];
}

const CIEEntry* IECatalogue::FindByName(const CString& name) const {
  const auto found = index_by_name_.find(name.view());
  return found == index_by_name_.end() ? nullptr : &entries_[static_cast<std::size_t>(found->second)];
}

MemTableFieldTypeEnum IECatalogue::TypeOf(std::int32_t id) const {
  const CIEEntry* entry = Find(id);
  return entry ? entry->type : kFieldInt;
}

CString IECatalogue::EventName(std::int32_t id) const {
  const auto found = events_.find(id);
  return found == events_.end() ? CString() : found->second;
}

}  // namespace loom
