#include "platform/ui/data_exchange.h"

#include <algorithm>

#include "platform/number.h"
#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/dialog.h"
#include "platform/ui/message_box.h"

namespace loom {

void ShowIntegerRangeMessage(std::int32_t lowest, std::int32_t highest) {
  CurrentFrontEnd().ShowMessage({.text = Format("请输入一个在%I32d 和%I32d 之间的整数."_gbk, lowest, highest),
                                 .caption = kApplicationCaption,
                                 .icon = MessageIcon::kWarning,
                                 .help = HelpContext::kIntegerRange});
}

void CDataExchange::Text(int id, CString& value) {
  CWnd& control = dialog_.GetDlgItem(id);
  if (save_)
    value = control.GetWindowText();
  else
    control.SetWindowText(value);
}

void CDataExchange::Number(int id, std::int32_t& value) {
  CString text = save_ ? CString() : CString(std::to_string(value));
  Text(id, text);
  if (!save_) return;
  const auto number = ParseInt<std::int32_t>(text.Trim());
  if (!number) {
    ShowMessageBox("请输入一个整数."_gbk, MessageIcon::kWarning);
    Fail(id);
  }
  value = *number;
}

void CDataExchange::Range(int id, std::int32_t value, std::int32_t lowest, std::int32_t highest) {
  if (!save_ || (value >= lowest && value <= highest)) return;
  ShowIntegerRangeMessage(lowest, highest);
  Fail(id);
}

void CDataExchange::DateTime(int id, COleDateTime& value) {
  auto& picker = dialog_.GetDlgItem<CDateTimeCtrl>(id);
  if (save_)
    value = picker.GetTime();
  else
    picker.SetTime(value);
}

void CDataExchange::Check(int id, std::int32_t& value) {
  auto& button = dialog_.GetDlgItem<CButton>(id);
  if (save_)
    value = button.GetCheck();
  else
    button.SetCheck(std::clamp(value, 0, 2));
}

void CDataExchange::Radio(int first_id, std::int32_t& value) {
  const std::vector<int> ids = dialog_.RadioGroup(first_id);
  if (save_) value = -1;
  for (std::int32_t at = 0; at < static_cast<std::int32_t>(ids.size()); ++at) {
    auto& button = dialog_.GetDlgItem<CButton>(ids[static_cast<std::size_t>(at)]);
    if (!save_)
      button.SetCheck(at == value ? 1 : 0);
    else if (button.GetCheck() == 1)
      value = at;
  }
}

void CDataExchange::ComboIndex(int id, std::int32_t& value) {
  auto& combo = dialog_.GetDlgItem<CComboBox>(id);
  if (save_)
    value = combo.GetCurSel();
  else
    combo.SetCurSel(value);
}

void CDataExchange::ComboText(int id, CString& value) {
  auto& combo = dialog_.GetDlgItem<CComboBox>(id);
  if (save_) {
    value = combo.GetWindowText();
  } else {
    combo.SetCurSel(combo.FindStringExact(-1, value));
    combo.SetWindowText(value);
  }
}

void CDataExchange::Fail(int id) {
  CWnd& control = dialog_.GetDlgItem(id);
  control.SetFocus();
  if (auto* const edit = dynamic_cast<CEdit*>(&control)) edit->SetSel(0, -1);
  throw DataExchangeFailed();
}

}  // namespace loom
