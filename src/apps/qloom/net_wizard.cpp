#include "apps/qloom/net_wizard.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/net_import_templates.h"
#include "resources/parameter_picker_templates.h"

namespace loom {
namespace {

int RowOf(const CListCtrl& list, const CString& heading) {
  const int row = list.FindItem(heading);
  if (row < 0) throw Error("the worksheet has no heading \"" + GbkToUtf8(heading) + "\"");
  return row;
}

HTREEITEM ItemOf(const CTreeCtrl& tree, const CString& name) {
  HTREEITEM item = tree.GetChildItem(tree.GetRootItem());
  while (item && tree.GetItemText(item) != name) item = tree.GetNextSiblingItem(item);
  if (!item) throw Error("this kind of data has no parameter \"" + GbkToUtf8(name) + "\"");
  return item;
}

void ChooseWorksheet(CComboBox& worksheets, const CString& name) {
  std::string there;
  for (int row = 0; row < worksheets.GetCount(); ++row) {
    if (worksheets.GetLBText(row) == name) return worksheets.UserChoose(name);
    there += (row > 0 ? ", \"" : "\"") + GbkToUtf8(worksheets.GetLBText(row)) + "\"";
  }
  throw Error("the workbook has no worksheet \"" + GbkToUtf8(name) + "\"; it has " + (there.empty() ? "none" : there));
}

}  // namespace

void NetWizardUser::FillWizard(CPropertySheet& sheet) {
  try {
    FillPages(sheet);
  } catch (const UiRefused& refusal) {
    throw Error(refusal.what());
  }
  if (sheet.IsRunning()) sheet.UserClose();
}

void NetWizardUser::FillPages(CPropertySheet& sheet) {
  CDialog& first = *sheet.GetActivePage();
  first.GetDlgItem<CComboBox>(kComboNetProtocol).UserChoose(answers_.protocol);
  first.GetDlgItem<CComboBox>(kComboNetDataType).UserChoose(answers_.data_type);
  first.UserPress(kButtonBrowseNet);
  sheet.UserPress(kIdWizardNext);
  if (sheet.GetActiveIndex() != sheet.FindPage(kDialogNetImport2)) return;  // a message has said why
  FillMapping(*sheet.GetActivePage());
  if (answered_) PressFinish(sheet);
}

void NetWizardUser::PressFinish(CPropertySheet& sheet) const {
  const auto buttons = sheet.GetButtons();
  const bool is_enabled = std::any_of(buttons.begin(), buttons.end(), [](const SheetButton& button) {
    return button.id == kIdWizardFinish && button.enabled;
  });
  if (is_enabled) return sheet.UserPress(kIdWizardFinish);
  const auto& list = sheet.GetActivePage()->GetDlgItem<CListCtrl>(kListNetMapping);
  std::string headings;
  for (int row = 0; row < list.GetItemCount(); ++row)
    headings += (row > 0 ? ", \"" : "\"") + GbkToUtf8(list.GetItemText(row, 0)) + "\"";
  throw Error("no column is mapped: " + (headings.empty() ? "the worksheet has no headings"
                                                          : "none of the headings is a parameter's name: " + headings));
}

void NetWizardUser::FillMapping(CDialog& page) {
  answered_ = true;
  if (answers_.worksheet) ChooseWorksheet(page.GetDlgItem<CComboBox>(kComboWorksheet), *answers_.worksheet);
  for (const auto& answer : answers_.map) {
    if (!answered_) return;
    FreeParameter(page, answer.first, answer.second);
    PressForRow(page, kButtonMapNet, answer);
  }
  for (const auto& answer : answers_.custom) {
    if (answered_) PressForRow(page, kButtonCustomNet, answer);
  }
}

// A parameter that another heading has of itself goes to the one that it is asked for.
void NetWizardUser::FreeParameter(CDialog& page, const CString& heading, const CString& parameter) const {
  auto& list = page.GetDlgItem<CListCtrl>(kListNetMapping);
  for (int row = 0; row < list.GetItemCount(); ++row) {
    if (list.GetItemText(row, 1) != parameter || list.GetItemText(row, 0) == heading) continue;
    list.UserSelectRows({row});
    page.UserPress(kButtonClearNet);
  }
}

void NetWizardUser::PressForRow(CDialog& page, int button, const std::pair<CString, CString>& answer) {
  auto& list = page.GetDlgItem<CListCtrl>(kListNetMapping);
  const int row = RowOf(list, answer.first);
  if (list.GetItemText(row, 1) == answer.second) return;
  list.UserSelectRows({row});
  answer_ = answer.second;
  answered_ = false;
  page.UserPress(button);
  if (list.GetItemText(row, 1) == answer.second) answered_ = true;
  if (!answered_ && button == kButtonCustomNet && !answer_.IsEmpty())
    throw Error("the heading \"" + GbkToUtf8(answer.first) + "\" is a parameter's name and cannot get one of your own");
}

void NetWizardUser::ChooseParameter(CDialog& dialog) {
  Answer(dialog, [](CDialog& picker, const CString& answer) {
    auto& tree = picker.GetDlgItem<CTreeCtrl>(kTreeParams);
    tree.UserSelect(ItemOf(tree, answer));
    picker.UserPress(kIdOk);
  });
}

void NetWizardUser::TypeName(CDialog& dialog) {
  Answer(dialog, [](CDialog& naming, const CString& answer) {
    auto& name = naming.GetDlgItem<CEdit>(kEditCustomName);
    name.UserType(answer);
    if (name.GetWindowText() == answer) naming.UserPress(kIdOk);
  });
}

// A dialog that did not take the answer, which a message has said, is cancelled.
void NetWizardUser::Answer(CDialog& dialog, void (*give)(CDialog&, const CString&)) {
  try {
    give(dialog, std::exchange(answer_, CString()));
  } catch (const UiRefused& refusal) {
    throw Error(refusal.what());
  }
  if (dialog.IsRunning()) dialog.UserClose();
}

}  // namespace loom
