#include "netinfo/custom_net_dialog.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/encoding.h"
#include "platform/ui/message_box.h"
#include "resources/net_import_templates.h"

namespace loom {
namespace {

constexpr int kLongestName_bytes = 10;

// Characters that a name must not hold, in the order of checking.
struct ForbiddenCharacters {
  std::string_view characters;
  std::string_view message;
};
constexpr ForbiddenCharacters kForbidden[] = {
    {" ", "名称中不能含有空格，请修改名称！"},
    {".", "名称中不能含有'.'，请修改名称！"},
    {"[]", "名称中不能含有'[]'，请修改名称！"},
    {"`~!@#$%^&*()-+={}|/\\:;<>,?\"'", "名称中含有特殊字符，请修改名称！"},
};

bool HoldsAnyOf(const CString& text, std::string_view characters) {
  return std::any_of(characters.begin(), characters.end(), [&](char c) { return text.Find(c) >= 0; });
}

}  // namespace

CCustomNetInfoDlg::CCustomNetInfoDlg(const CString& heading, const CString& name, std::vector<CString> in_use)
    : CDialog(kCustomNetTemplate), heading_(heading), name_(name), in_use_(std::move(in_use)) {
  OnChange(kEditCustomName, [this] { OnNameChanged(); });
}

void CCustomNetInfoDlg::OnInitDialog() {
  CDialog::OnInitDialog();
  EnableItems({kIdOk}, !name_.IsEmpty());
  GetDlgItem(kEditCustomName).SetFocus();
}

void CCustomNetInfoDlg::OnNameChanged() {
  const CString previous = name_;
  UpdateData(true);
  if (!name_.IsEmpty() && !IsAllowed(name_)) {
    name_ = previous;
    UpdateData(false);
    GetDlgItem<CEdit>(kEditCustomName).SetSel(0, -1);
  }
  EnableItems({kIdOk}, !name_.IsEmpty());
}

bool CCustomNetInfoDlg::IsAllowed(const CString& name) const {
  if (name.GetLength() > kLongestName_bytes) {
    Tell("名称字符数不能超过10，请缩减名称！"_gbk);
    return false;
  }
  const auto broken = std::find_if(std::begin(kForbidden), std::end(kForbidden),
                                   [&](const ForbiddenCharacters& rule) { return HoldsAnyOf(name, rule.characters); });
  if (broken == std::end(kForbidden)) return true;
  Tell(Utf8ToGbk(broken->message));
  return false;
}

void CCustomNetInfoDlg::Tell(const CString& text) const {
  ShowMessageBox(text, MessageIcon::kInformation, MessageButtons::kOk, kApplicationCaption, this);
}

void CCustomNetInfoDlg::OnOK() {
  UpdateData(true);
  if (name_.IsEmpty()) return;
  if (std::find(in_use_.begin(), in_use_.end(), name_) != in_use_.end()) {
    return Tell("名称重复，请修改名称！"_gbk);
  }
  EndDialog(kIdOk);
}

void CCustomNetInfoDlg::DoDataExchange(CDataExchange& exchange) {
  exchange.Text(kEditCustomHeading, heading_);
  exchange.Text(kEditCustomName, name_);
}

}  // namespace loom
