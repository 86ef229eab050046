#include "netinfo/net_param_dialog.h"

#include <algorithm>

#include "netinfo/net_tables.h"
#include "platform/ui/message_box.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/images.h"
#include "resources/parameter_picker_templates.h"

namespace loom {

CNetParamDialog::CNetParamDialog(NetDataType data_type, ProtocolTypeEnum protocol, std::vector<CString> names,
                                 std::vector<CString> mapped)
    : CDialog(kParamTemplate),
      data_type_(data_type),
      protocol_(protocol),
      names_(std::move(names)),
      mapped_(std::move(mapped)) {
  OnDoubleClicked(kTreeParams, [this] {
    const auto& tree = GetDlgItem<CTreeCtrl>(kTreeParams);
    const CTreeCtrl::Hit& hit = tree.GetHit();
    if (hit.item && hit.part == TreeHitPart::kLabel && !tree.ItemHasChildren(hit.item)) OnOK();
  });
}

void CNetParamDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  auto& tree = GetDlgItem<CTreeCtrl>(kTreeParams);
  tree.SetImageList(CImageList(kTreeImages));
  const CString title = NetProtocolName(protocol_) + " " + NetDataTypeName(data_type_);
  const HTREEITEM root = tree.InsertItem(title, kImageProtocol);
  for (const CString& name : names_) tree.InsertItem(name, kImageIe, root);
  tree.Expand(root);
}

void CNetParamDialog::OnOK() {
  const auto& tree = GetDlgItem<CTreeCtrl>(kTreeParams);
  const HTREEITEM item = tree.GetSelectedItem();
  const bool is_parameter = item && tree.GetParentItem(item);
  const CString name = is_parameter ? tree.GetItemText(item) : CString();
  if (name.IsEmpty()) {
    ShowMessageBox("请选择一个参数!"_gbk, MessageIcon::kWarning, MessageButtons::kOk, kApplicationCaption, this);
    return;
  }
  if (std::find(mapped_.begin(), mapped_.end(), name) != mapped_.end()) {
    ShowMessageBox("该参数已经被匹配！"_gbk, MessageIcon::kWarning, MessageButtons::kOk, kApplicationCaption, this);
    return;
  }
  choice_ = name;
  CDialog::OnOK();
}

}  // namespace loom
