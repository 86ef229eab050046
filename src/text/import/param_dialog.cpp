#include "text/import/param_dialog.h"

#include "platform/ui/message_box.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/images.h"
#include "resources/parameter_picker_templates.h"
#include "text/navigator/parameter_navigator.h"

namespace loom {

CParamDialog::CParamDialog(std::int32_t column, ColumnMap& columns)
    : CDialog(kParamTemplate), column_(column), columns_(columns) {
  OnDoubleClicked(kTreeParams, [this] { OnTreeDoubleClicked(); });
}

void CParamDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  auto& tree = GetDlgItem<CTreeCtrl>(kTreeParams);
  tree.SetImageList(CImageList(kTreeImages));
  CMarkupMSXML navigator;
  if (!LoadNavigator(navigator)) {
    ShowMessageBox("加载配置文件失败！"_gbk, MessageIcon::kError);
    return EndDialog(kIdCancel);
  }
  WalkNavigator(navigator.GetDocumentElement(), HTREEITEM(), [&](const NavigatorItem& item, HTREEITEM parent) {
    return tree.InsertItem(item.text, item.image, parent);
  });
  ExpandTopLevel(tree);
}

void CParamDialog::OnTreeDoubleClicked() {
  const auto& tree = GetDlgItem<CTreeCtrl>(kTreeParams);
  const CTreeCtrl::Hit& hit = tree.GetHit();
  if (hit.item && hit.part == TreeHitPart::kLabel && !tree.ItemHasChildren(hit.item)) OnOK();
}

void CParamDialog::OnOK() {
  const auto& tree = GetDlgItem<CTreeCtrl>(kTreeParams);
  const HTREEITEM item = tree.GetSelectedItem();
  if (!item || tree.ItemHasChildren(item)) {
    ShowMessageBox("请选择一个参数!"_gbk, MessageIcon::kWarning);
    return;
  }
  const CString name = tree.GetItemText(item);
  if (name.IsEmpty()) return;
  if (const std::int32_t holder = ColumnOf(columns_, name); holder >= 0) {
    ShowMessageBox(Format("该参数已经被第%d列映射!"_gbk, holder + 1), MessageIcon::kWarning);
    return;
  }
  columns_[column_] = name;
  CDialog::OnOK();
}

}  // namespace loom
