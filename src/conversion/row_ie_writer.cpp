#include "conversion/row_ie_writer.h"

#include "components/project.h"

namespace loom {

void CRowIEWriter::SetImportSettings(const ImpIESettings& settings) {
  settings_ = &settings;
  settings_empty_ = settings.empty();
  selection_.clear();
  selected_ids_.Clear();
  for (const auto& [text, setting] : settings) {
    const std::int32_t id = g_sysProject->GetIEID(setting.ie_name);
    if (id < 0) continue;
    selection_.insert_or_assign(id, setting);
    selected_ids_.Insert(id);
  }
  for (std::size_t name = 0; name < kSelectionNames.size(); ++name) {
    selected_names_[name] = settings.contains(CString(kSelectionNames[name]));
  }
}

void CRowIEWriter::Record(std::int32_t id) {
  stream_->ie_ids.Insert(id);
  stream_->ie_names.insert(g_project->GetIEName(id));
}

}  // namespace loom
