#pragma once

#include <cstdint>

#include "components/import_settings.h"
#include "platform/ui/file_dialog.h"

namespace loom {

// The dialog for picking log files, with a button that opens the settings sheet.
class CImportFileDialog final : public CFileDialog {
 public:
  CImportFileDialog(bool open, const CString& default_extension, const CString& file_name, unsigned flags,
                    const CString& filter);

  // As confirmed in the sheet last; until then every IE and no merging.
  const ImpIESettings& GetIESettings() const { return ie_settings_; }
  const struct_BinningSetting& GetBinningSetting() const { return binning_; }

 protected:
  void OnExtraButton() override;

 private:
  ImpIESettings ie_settings_;  // empty: every IE
  std::int32_t first_use_ = 1;
  std::int32_t binning_enabled_ = 0;
  struct_BinningSetting binning_;
};

}  // namespace loom
