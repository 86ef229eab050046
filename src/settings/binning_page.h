#pragma once

#include <cstdint>

#include "components/import_settings.h"
#include "platform/ui/property_sheet.h"

namespace loom {

// Limits of the number that belongs to the chosen way of merging.
inline constexpr std::int32_t kBinningLowest = 1;
inline constexpr std::int32_t kBinningHighest = 100000;

// The page "合并平均": how the measurements of a log are merged and averaged.
class CImportBinningSetting final : public CPropertyPage {
 public:
  CImportBinningSetting();

  // Before the page is shown. A parameter that is empty in the setting is shown as switched off and keeps its text.
  void SetEnabled(std::int32_t enabled) { enabled_ = enabled; }
  void SetSetting(const struct_BinningSetting& setting);
  void SetParameters(const CString& ue_parameter, const CString& scanner_parameter);

  // What the page holds; a setting that is not enabled is left untouched.
  void GetSetting(struct_BinningSetting& setting) const;
  std::int32_t IsEnabled() const { return enabled_; }

 protected:
  void OnInitDialog() override;
  void DoDataExchange(CDataExchange& exchange) override;

 private:
  void FillParameters();
  void ChooseType(BinningTypeEnum type);
  void ActivateType();
  void EnableEverything();
  void EnableParameter(int check_id, int label_id, int combo_id) const;
  void CheckRange(CDataExchange& exchange);

  std::int32_t binning_type_ = kBinningByTime;
  std::int32_t value_type_ = kBinningMaximum;
  std::int32_t time_s_ = 1;
  std::int32_t distance_m_ = 100;
  std::int32_t grid_height_m_ = 100;
  std::int32_t grid_width_m_ = 100;
  std::int32_t enabled_ = 0;
  std::int32_t ue_enabled_ = 0;
  std::int32_t scanner_enabled_ = 0;
  CString ue_parameter_;
  CString scanner_parameter_;
};

}  // namespace loom
