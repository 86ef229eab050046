#include "settings/binning_page.h"

#include <array>
#include <span>

#include "components/measures.h"
#include "platform/ui/message_box.h"
#include "resources/binning_templates.h"

namespace loom {
namespace {

constexpr int kScannerCells = 32;

// The controls of one number: they are usable while its way of merging is chosen.
struct NumberControls {
  BinningTypeEnum type;
  int label;
  int edit;
  int unit;
};

// clang-format off
constexpr auto kNumberControls = std::to_array<NumberControls>({
    {kBinningByTime,     kStaticTime,       kEditTime,       kStaticTimeUnit},
    {kBinningByDistance, kStaticDistance,   kEditDistance,   kStaticDistanceUnit},
    {kBinningByGrid,     kStaticGridHeight, kEditGridHeight, kStaticGridHeightUnit},
    {kBinningByGrid,     kStaticGridWidth,  kEditGridWidth,  kStaticGridWidthUnit},
});
// clang-format on

constexpr std::array kTypeRadios{kRadioByTime, kRadioByDistance, kRadioByGrid};  // by BinningTypeEnum

void Select(CComboBox& combo, const CString& text) {
  if (combo.SelectString(-1, text) < 0) combo.SetCurSel(0);
}

template <class Enum>
Enum KnownOr(std::int32_t value, Enum unknown) {
  return value >= 0 && value <= 2 ? static_cast<Enum>(value) : unknown;
}

}  // namespace

CImportBinningSetting::CImportBinningSetting() : CPropertyPage(kBinningTemplate) {
  OnClicked(kRadioByTime, [this] { ChooseType(kBinningByTime); });
  OnClicked(kRadioByDistance, [this] { ChooseType(kBinningByDistance); });
  OnClicked(kRadioByGrid, [this] { ChooseType(kBinningByGrid); });
  OnClicked(kCheckBinningEnabled, [this] { EnableEverything(); });
  OnClicked(kCheckUe, [this] { EnableParameter(kCheckUe, kStaticUe, kComboUeParam); });
  OnClicked(kCheckScanner, [this] { EnableParameter(kCheckScanner, kStaticScanner, kComboScannerParam); });
}

void CImportBinningSetting::SetSetting(const struct_BinningSetting& setting) {
  binning_type_ = setting.binning_type;
  value_type_ = setting.value_type;
  time_s_ = setting.binning_time_s;
  distance_m_ = setting.binning_distance_m;
  grid_height_m_ = setting.grid_height_m;
  grid_width_m_ = setting.grid_width_m;
  ue_enabled_ = !setting.ue_parameter.IsEmpty();
  if (ue_enabled_ != 0) ue_parameter_ = setting.ue_parameter;
  scanner_enabled_ = !setting.scanner_parameter.IsEmpty();
  if (scanner_enabled_ != 0) scanner_parameter_ = setting.scanner_parameter;
}

void CImportBinningSetting::SetParameters(const CString& ue_parameter, const CString& scanner_parameter) {
  ue_parameter_ = ue_parameter;
  scanner_parameter_ = scanner_parameter;
}

void CImportBinningSetting::GetSetting(struct_BinningSetting& setting) const {
  if (enabled_ == 0) return;
  setting.binning_type = KnownOr(binning_type_, kBinningUnknown);
  setting.value_type = KnownOr(value_type_, kBinningValueUnknown);
  setting.ue_parameter = ue_enabled_ != 0 ? ue_parameter_ : CString();
  setting.scanner_parameter = scanner_enabled_ != 0 ? scanner_parameter_ : CString();
  setting.binning_time_s = time_s_;
  setting.binning_distance_m = distance_m_;
  setting.grid_height_m = grid_height_m_;
  setting.grid_width_m = grid_width_m_;
}

void CImportBinningSetting::OnInitDialog() {
  FillParameters();
  CPropertyPage::OnInitDialog();
  Select(GetDlgItem<CComboBox>(kComboUeParam), ue_parameter_);
  Select(GetDlgItem<CComboBox>(kComboScannerParam), scanner_parameter_);
  ActivateType();
  EnableEverything();
}

void CImportBinningSetting::FillParameters() {
  auto& ue = GetDlgItem<CComboBox>(kComboUeParam);
  for (const char* parameter : {"PBCH_RSRP", "PBCH_RSRQ"}) ue.AddString(parameter);
  auto& scanner = GetDlgItem<CComboBox>(kComboScannerParam);
  for (const char* pattern : {"Cell_BCH_RP_%d", "Cell_BCH_RQ_%d"}) {
    for (int cell = 1; cell <= kScannerCells; ++cell) scanner.AddString(Format(pattern, cell));
  }
}

void CImportBinningSetting::ChooseType(BinningTypeEnum type) {
  binning_type_ = type;
  ActivateType();
}

// Only the numbers of the chosen type can be edited.
void CImportBinningSetting::ActivateType() {
  for (const NumberControls& number : kNumberControls) {
    EnableItems({number.label, number.edit, number.unit}, number.type == binning_type_);
  }
  for (int type = 0; type < static_cast<int>(kTypeRadios.size()); ++type) {
    GetDlgItem<CButton>(kTypeRadios[static_cast<std::size_t>(type)]).SetCheck(type == binning_type_ ? 1 : 0);
  }
  const std::int32_t stored[] = {time_s_, distance_m_, grid_height_m_, grid_width_m_};
  for (std::size_t at = 0; at < kNumberControls.size(); ++at) {
    auto& edit = GetDlgItem<CEdit>(kNumberControls[at].edit);
    if (edit.IsWindowEnabled() && !IsNumber(edit.GetWindowText())) edit.SetWindowText(Format("%d", stored[at]));
  }
}

void CImportBinningSetting::EnableEverything() {
  const bool enabled = GetDlgItem<CButton>(kCheckBinningEnabled).GetCheck() != 0;
  if (enabled) ActivateType();
  if (!enabled) {
    for (const NumberControls& number : kNumberControls) EnableItems({number.label, number.edit, number.unit}, false);
  }
  EnableItems({kGroupBinningType, kRadioByTime, kRadioByDistance, kRadioByGrid, kGroupBinningValue, kCheckUe,
               kCheckScanner, kRadioMaximum, kRadioMinimum, kRadioAverage},
              enabled);
  EnableParameter(kCheckUe, kStaticUe, kComboUeParam);
  EnableParameter(kCheckScanner, kStaticScanner, kComboScannerParam);
}

void CImportBinningSetting::EnableParameter(int check_id, int label_id, int combo_id) const {
  const auto& check = GetDlgItem<CButton>(check_id);
  EnableItems({label_id, combo_id}, check.IsWindowEnabled() && check.GetCheck() != 0);
}

void CImportBinningSetting::DoDataExchange(CDataExchange& exchange) {
  exchange.Radio(kRadioByTime, binning_type_);
  exchange.Radio(kRadioMaximum, value_type_);
  exchange.Check(kCheckBinningEnabled, enabled_);
  exchange.Check(kCheckUe, ue_enabled_);
  exchange.Check(kCheckScanner, scanner_enabled_);
  exchange.ComboText(kComboUeParam, ue_parameter_);
  exchange.ComboText(kComboScannerParam, scanner_parameter_);
  exchange.Number(kEditTime, time_s_);
  exchange.Number(kEditDistance, distance_m_);
  exchange.Number(kEditGridHeight, grid_height_m_);
  exchange.Number(kEditGridWidth, grid_width_m_);
  if (!exchange.IsSaving()) return;
  CheckRange(exchange);
  if (enabled_ != 0 && ue_enabled_ == 0 && scanner_enabled_ == 0) {
    ShowMessageBox("请至少选择一种处理方式."_gbk, MessageIcon::kWarning);
    exchange.Fail(kCheckUe);
  }
}

// Of the other types any number will do.
void CImportBinningSetting::CheckRange(CDataExchange& exchange) {
  const std::int32_t numbers[] = {time_s_, distance_m_, grid_height_m_, grid_width_m_};
  for (std::size_t at = 0; at < kNumberControls.size(); ++at) {
    if (kNumberControls[at].type != binning_type_) continue;
    if (numbers[at] >= kBinningLowest && numbers[at] <= kBinningHighest) continue;
    ShowIntegerRangeMessage(kBinningLowest, kBinningHighest);
    ActivateType();
    exchange.Fail(kNumberControls[at].edit);
  }
}

}  // namespace loom
