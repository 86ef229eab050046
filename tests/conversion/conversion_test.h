#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "components/project.h"
#include "components/stream_info.h"
#include "conversion/td_record_converter.h"
#include "host/application.h"
#include "tests/support/places.h"
#include "tests/support/records.h"

namespace loom::testing {

using Row = std::unique_ptr<CMemDataRow>;

inline std::optional<std::int32_t> Int(const CMemDataRow& row, std::int32_t id) {
  const auto value = row.GetIEValueByID(id);
  return value ? std::optional(value->int_value) : std::nullopt;
}
inline std::optional<float> Float(const CMemDataRow& row, std::int32_t id) {
  const auto value = row.GetIEValueByID(id);
  return value ? std::optional(value->float_value) : std::nullopt;
}
inline std::optional<std::string> Text(const CMemDataRow& row, std::int32_t id) {
  const auto value = row.GetIEValueByID(id);
  return value ? std::optional(std::string(row.GetText(value->text))) : std::nullopt;
}
// The ids from first to last that the row holds.
inline std::vector<std::int32_t> IdsIn(const CMemDataRow& row, std::int32_t first, std::int32_t last) {
  std::vector<std::int32_t> ids;
  for (const std::int32_t id : row.GetParamID()) {
    if (id >= first && id <= last) ids.push_back(id);
  }
  std::ranges::sort(ids);
  return ids;
}

inline constexpr std::optional<std::int32_t> kNotThere;
inline constexpr std::optional<float> kNoFloat;

// One outdoor handset stream and the converter, on the real host.
class ConversionTest : public ::testing::Test {
 protected:
  ConversionTest() {
    stream_.stream_type = kStreamOutdoorHandset;
    stream_.day_offset_s = 0.0;
    stream_.log_version = 300;
    converter_.ResetForLog();
  }

  // Turns the selection on with the IEs of these ids and these names.
  void Select(std::initializer_list<std::int32_t> ids, std::initializer_list<const char*> names = {}) {
    for (const std::int32_t id : ids) Choose(g_sysProject->GetIEName(id));
    for (const char* name : names) Choose(CString(name));
    converter_.SetImportSettings(settings_);
    selection_switch_ = 1;
  }
  // Turns the selection on with an item of the selection that shows a repeated IE by another text.
  void SelectItem(const char* text, const char* ie_name) {
    settings_[CString(text)].ie_name = CString(ie_name);
    Select({});
  }
  // Import settings that are not empty, with everything imported.
  void HaveSettings() {
    Select({}, {"anything"});
    selection_switch_ = 0;
  }

  // Converts a record as the next row of the stream.
  Row Convert(const CTestdataBase& record) {
    stream_.row_number = ++rows_;
    if (record.kind == kRecordHandset) stream_.state.Update<CIE_SCell_Para>(record);
    return converter_.ConvertUE(record, stream_.state, stream_, selection_switch_);
  }

  HostApplication host_{PlainHost()};
  CTDRecordConverter converter_;
  struct_STREAMINFO stream_;
  std::int32_t selection_switch_ = 0;
  std::int32_t rows_ = 0;

 private:
  void Choose(const CString& name) { settings_[name].ie_name = name; }

  ImpIESettings settings_;
};

}  // namespace loom::testing
