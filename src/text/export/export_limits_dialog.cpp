#include "text/export/export_limits_dialog.h"

#include "platform/number.h"
#include "platform/ui/message_box.h"
#include "resources/text_export_templates.h"

namespace loom {
namespace {

constexpr int kDecimals = 6;

CString TextOf(double number) { return number == kInvalidDouble ? CString() : CString(NumberText(number, kDecimals)); }

}  // namespace

CSelExportDialog::CSelExportDialog(const CString& ie_name, double valid_minimum, double valid_maximum, double minimum,
                                   double maximum)
    : CDialog(kExportLimitsTemplate),
      ie_name_(ie_name),
      valid_minimum_(TextOf(valid_minimum)),
      valid_maximum_(TextOf(valid_maximum)),
      minimum_(TextOf(minimum)),
      maximum_(TextOf(maximum)) {}

void CSelExportDialog::DoDataExchange(CDataExchange& exchange) {
  exchange.Text(kEditLimitName, ie_name_);
  exchange.Text(kEditValidMinimum, valid_minimum_);
  exchange.Text(kEditValidMaximum, valid_maximum_);
  exchange.Text(kEditSetMinimum, minimum_);
  exchange.Text(kEditSetMaximum, maximum_);
}

void CSelExportDialog::OnOK() {
  if (!UpdateData(true)) return;
  if (minimum_.IsEmpty()) minimum_ = valid_minimum_;
  if (maximum_.IsEmpty()) maximum_ = valid_maximum_;
  const double lowest = PrefixDouble(minimum_);
  const double highest = PrefixDouble(maximum_);
  if (lowest > highest || lowest < PrefixDouble(valid_minimum_) || highest > PrefixDouble(valid_maximum_)) {
    ShowMessageBox("门限值设置错误，请重设！"_gbk, MessageIcon::kWarning);
    return;
  }
  result_ = {ie_name_, lowest, highest};
  EndDialog(kIdOk);
}

}  // namespace loom
