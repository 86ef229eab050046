#pragma once

#include <cstdint>
#include <vector>

#include "host/netdb/network_database.h"

namespace loom {

// The rows of one network-element table one by one, by ids that stay theirs: for people who look and mend. Every
// failure throws Error. The table need not be there yet: it has no rows then.
class NetworkEditor {
 public:
  NetworkEditor(Database& database, const CString& table);

  const std::vector<CString>& Columns() const { return columns_; }
  // In the order stored; with a text those of which a value holds it, letters without case.
  std::vector<std::int64_t> RowIds(const CString& holding = {});
  // In the order of the columns; nothing for a row that is gone.
  std::vector<CString> TextsOf(std::int64_t id);
  // The text becomes a value of the column's kind, an empty one none. Refused, with the table as it was, when it is not
  // of that kind or the row would get the key of another.
  void SetText(std::int64_t id, std::size_t column, const CString& text);
  void Remove(const std::vector<std::int64_t>& ids);

 private:
  bool IsThere() const { return !sql_names_.empty(); }
  NetworkValue ValueFrom(const CString& text, std::size_t column) const;

  Database& database_;
  CString table_;
  std::vector<CString> columns_;
  std::vector<CString> sql_names_;  // of the columns
  std::vector<CString> kinds_;      // "INTEGER", "REAL", "TEXT" or empty: any
};

}  // namespace loom
