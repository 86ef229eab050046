#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "components/field_value.h"
#include "components/project.h"
#include "host/catalogue/table_file.h"
#include "platform/cstring.h"
#include "platform/error.h"

namespace loom {

// Name, unit, type and range of every information element, and the names of the events. Unchangeable once loaded;
// entries stay where they are as long as the catalogue lives, also when it is moved.
class IECatalogue {
 public:
  IECatalogue() = default;
  IECatalogue(IECatalogue&&) = default;
  IECatalogue& operator=(IECatalogue&&) = default;

  // Reads ie_catalogue.tsv and events.tsv of a folder; the forms of both are described in their comment heads. Throws
  // FileError when one cannot be read and CatalogueError when a line is malformed, ids overlap or are out of order, or
  // a name occurs twice.
  static IECatalogue Load(const CString& folder);
  // The same from the files' content in UTF-8; the names stand in the errors.
  static IECatalogue Parse(std::string_view ies, const CString& ies_name, std::string_view events,
                           const CString& events_name);

  const CIEEntry* Find(std::int32_t id) const;            // null when unknown
  const CIEEntry* FindByName(const CString& name) const;  // null when unknown; compared with case
  MemTableFieldTypeEnum TypeOf(std::int32_t id) const;    // kFieldInt when unknown
  CString EventName(std::int32_t id) const;               // empty when unknown

  std::span<const CIEEntry> Entries() const { return entries_; }  // by id, ascending
  const std::map<std::int32_t, CString>& Events() const { return events_; }
  std::map<CString, std::int32_t> EventIds() const;  // of each name the lowest

 private:
  struct LineStart {
    std::size_t entry;  // place in entries_ of the line's first id
    std::int32_t line;
  };
  void AddEntries(std::string_view text, const CString& file);
  void IndexEntries(std::span<const LineStart> lines, const CString& file);
  void AddEvents(std::string_view text, const CString& file);

  std::vector<CIEEntry> entries_;                                     // by id
  std::vector<std::int32_t> index_by_id_;                             // id -> place in entries_, -1 = none
  std::unordered_map<std::string_view, std::int32_t> index_by_name_;  // views into entries_
  std::map<std::int32_t, CString> events_;
};

}  // namespace loom
