#pragma once

#include <vector>

#include "platform/cstring.h"

namespace loom {

// Which network element parameter each mapped worksheet column is; three vectors of one length.
struct NetMapping {
  std::vector<CString> source_columns;  // headings
  std::vector<CString> parameters;
  std::vector<CString> attributes;  // as the database mapper gave them

  bool IsEmpty() const { return source_columns.empty(); }
  bool HoldsParameter(const CString& parameter) const { return PlaceOfParameter(parameter) >= 0; }
  int PlaceOfParameter(const CString& parameter) const { return PlaceIn(parameters, parameter); }  // -1: none
  int PlaceOfColumn(const CString& heading) const { return PlaceIn(source_columns, heading); }
  void Add(const CString& heading, const CString& parameter, const CString& attribute);
  void Remove(int place);  // -1: nothing
  void Clear() { *this = {}; }

 private:
  static int PlaceIn(const std::vector<CString>& texts, const CString& text);
};

}  // namespace loom
