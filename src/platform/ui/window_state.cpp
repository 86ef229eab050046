#include "platform/ui/window_state.h"

#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/tree_ctrl.h"

namespace loom {
namespace {

void AddDetails(const CButton& button, ControlState& state) {
  const ControlClass own = button.GetTemplate().control_class;
  if (own == ControlClass::kCheckBox || own == ControlClass::kRadioButton) state.checked = button.GetCheck();
}

void AddDetails(const CComboBox& combo, ControlState& state) {
  auto& items = state.items.emplace();
  for (int at = 0; at < combo.GetCount(); ++at) items.push_back(combo.GetLBText(at));
  auto& selected = state.selected.emplace();
  if (combo.GetCurSel() >= 0) selected.push_back(combo.GetCurSel());
}

void AddDetails(const CListCtrl& list, ControlState& state) {
  auto& columns = state.columns.emplace();
  for (int column = 0; column < list.GetColumnCount(); ++column) columns.push_back(list.GetColumn(column).heading);
  auto& rows = state.rows.emplace();
  for (int row = 0; row < list.GetItemCount(); ++row) {
    auto& cells = rows.emplace_back();
    for (int column = 0; column < list.GetColumnCount(); ++column) cells.push_back(list.GetItemText(row, column));
  }
  state.selected = list.GetSelectedRows();
}

void AddDetails(const CTreeCtrl& tree, ControlState& state) {
  auto& items = state.items.emplace();
  auto& selected = state.selected.emplace();
  const auto* const boxes = tree.HasStyle(style::kCheckBoxes) ? dynamic_cast<const CMutiTreeCtrl*>(&tree) : nullptr;
  if (boxes) state.ticks.emplace();
  for (HTREEITEM item = tree.GetRootItem(); item; item = tree.GetNextItem(item)) {
    if (tree.IsItemSelected(item)) selected.push_back(static_cast<int>(items.size()));
    if (boxes) state.ticks->push_back(boxes->GetCheck(item));
    items.push_back(tree.GetPath(item));
  }
}

}  // namespace

ControlState StateOf(const CWnd& control) {
  ControlState state{.id = control.GetDlgCtrlID(),
                     .class_name = ControlClassName(control.GetTemplate().control_class),
                     .text = control.GetWindowText(),
                     .enabled = control.IsWindowEnabled(),
                     .visible = control.IsWindowVisible()};
  if (const auto* const button = dynamic_cast<const CButton*>(&control)) AddDetails(*button, state);
  if (const auto* const combo = dynamic_cast<const CComboBox*>(&control)) AddDetails(*combo, state);
  if (const auto* const list = dynamic_cast<const CListCtrl*>(&control)) AddDetails(*list, state);
  if (const auto* const tree = dynamic_cast<const CTreeCtrl*>(&control)) AddDetails(*tree, state);
  return state;
}

WindowState StateOf(const CDialog& dialog) {
  const CPropertySheet* const sheet = dialog.GetSheet();
  WindowState state{.template_id = dialog.GetTemplate().id, .title = sheet ? sheet->GetTitle() : dialog.GetTitle()};
  for (const auto& control : dialog.controls()) {
    if (control->GetDlgCtrlID() != kIdNone) state.controls.push_back(StateOf(*control));
  }
  if (sheet) {
    for (const SheetButton& button : sheet->GetButtons()) state.buttons.push_back({button.name, button.enabled});
    return state;
  }
  for (const auto& [id, name] : {std::pair{kIdOk, "ok"}, std::pair{kIdCancel, "cancel"}}) {
    const CWnd* const button = dialog.FindItem(id);
    if (button && button->IsWindowVisible()) state.buttons.push_back({name, button->IsWindowEnabled()});
  }
  return state;
}

}  // namespace loom
