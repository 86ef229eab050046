#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string_view>

#include "components/field_value.h"
#include "components/id_set.h"
#include "components/import_settings.h"
#include "components/mem_row.h"
#include "components/stream_info.h"
#include "conversion/selection_names.h"
#include "platform/cstring.h"

namespace loom {

// Id of an information element.
struct IE {
  std::int32_t id = 0;
  friend constexpr bool operator==(IE, IE) = default;
};

// Writes the information elements of one row and records them with the row's stream. Every converter has one.
//
// Put... writes unless the raw value is a marker: absent writes nothing, invalid writes -255. The ...IfSelected forms
// write only what the user selected; their selection id is -1 for the IE's own id. Selection applies while the
// selection switch is 1.
class CRowIEWriter {
 public:
  static constexpr std::int32_t kOwnId = -1;

  // Builds the selection from the settings, which outlive their use: ids by the IE that a setting names, names by the
  // key of the setting. IEs unknown to the catalogue select nothing.
  void SetImportSettings(const ImpIESettings& settings);
  const std::map<std::int32_t, struct_ImpIESetting>& selection() const { return selection_; }
  bool settings_empty() const { return settings_empty_; }
  void set_settings_empty(bool empty) { settings_empty_ = empty; }

  // Directs everything that follows to a row of a stream. Both outlive the conversion of the record.
  void Begin(struct_STREAMINFO& stream, std::int32_t selection_switch, CMemDataRow& row) {
    stream_ = &stream;
    selection_switch_ = selection_switch;
    row_ = &row;
  }
  struct_STREAMINFO& stream() const { return *stream_; }
  CMemDataRow& row() const { return *row_; }
  std::int32_t selection_switch() const { return selection_switch_; }

  bool IsSelected(std::int32_t id, std::int32_t selection_switch) const {
    return selection_switch != 1 || selected_ids_.Contains(id);
  }
  bool IsSelected(std::int32_t id) const { return IsSelected(id, selection_switch_); }
  bool IsSelectedByName(SelectionName name, std::int32_t selection_switch) const {
    return selection_switch != 1 || selected_names_[static_cast<std::size_t>(name)];
  }
  bool IsSelectedByName(SelectionName name) const { return IsSelectedByName(name, selection_switch_); }
  // The same for any name; searches the settings.
  bool IsSelectedByName(const CString& name, std::int32_t selection_switch) const {
    return selection_switch != 1 || (settings_ != nullptr && settings_->contains(name));
  }

  // One small function for every field of every row: called often, it stays in the instruction cache. Hidden, so that
  // it is called without a detour through the shared library's jump table.
  [[gnu::noinline, gnu::flatten, gnu::visibility("hidden")]] void Put(std::int32_t id, uniFieldValue value) {
    row_->QuickAddIE(id, value);
    if (!stream_->ie_ids.Contains(id)) [[unlikely]]
      Record(id);
  }
  void Put(std::int32_t id, std::int32_t value) { Put(id, uniFieldValue(value)); }
  void Put(std::int32_t id, float value) { Put(id, uniFieldValue(value)); }

  void PutInt(std::int32_t raw, std::int32_t value, std::int32_t id) {
    if (raw != -1) Put(id, raw == -2 ? kInvalidInt : value);
  }
  void PutIntIfSelected(std::int32_t raw, std::int32_t value, std::int32_t id, std::int32_t selection_id = kOwnId) {
    if (IsSelected(selection_id == kOwnId ? id : selection_id)) PutInt(raw, value, id);
  }
  void PutFloat(float raw, float value, std::int32_t id) {
    if (raw != -1.0f) Put(id, raw == -2.0f ? kInvalidFloat : value);
  }
  void PutFloatIfSelected(float raw, float value, std::int32_t id, std::int32_t selection_id = kOwnId) {
    if (IsSelected(selection_id == kOwnId ? id : selection_id)) PutFloat(raw, value, id);
  }
  void PutShort(std::uint16_t raw, std::int16_t value, std::int32_t id) {
    if (raw != 0xFFFF) Put(id, raw == 0xFFFE ? kInvalidInt : std::int32_t{value});
  }
  void PutDouble(double raw, double value, std::int32_t id) {
    if (raw != -1.0) Put(id, raw == -2.0 ? kInvalidFloat : static_cast<float>(value));
  }
  // A null text writes nothing; the row keeps a copy of the bytes.
  void PutText(std::string_view bytes, std::int32_t id, std::int32_t selection_id = kOwnId) {
    if (bytes.data() != nullptr && IsSelected(selection_id == kOwnId ? id : selection_id)) {
      Put(id, uniFieldValue::Text(row_->AddText(bytes)));
    }
  }

  // Whether the stream has received the IE before.
  bool StreamHas(std::int32_t id) const { return stream_->ie_ids.Contains(id); }
  // Writes the invalid value of the type if the stream has received the IE before: its last value ends here.
  void Invalidate(std::int32_t id, MemTableFieldTypeEnum type) {
    if (StreamHas(id)) row_->QuickAddIE(id, InvalidValue(type));
  }

 private:
  [[gnu::noinline]] void Record(std::int32_t id);

  const ImpIESettings* settings_ = nullptr;
  bool settings_empty_ = true;
  std::map<std::int32_t, struct_ImpIESetting> selection_;
  IdSet selected_ids_;  // the keys of selection_
  std::array<bool, kSelectionNames.size()> selected_names_{};

  struct_STREAMINFO* stream_ = nullptr;
  std::int32_t selection_switch_ = 0;
  CMemDataRow* row_ = nullptr;
};

}  // namespace loom
