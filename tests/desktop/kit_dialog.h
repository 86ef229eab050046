#pragma once

#include <string>
#include <vector>

#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/dialog.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/property_sheet.h"
#include "platform/ui/tree_ctrl.h"
#include "resources/images.h"

namespace loom::testing {

// One control of each class and style.
enum KitId {
  kKit = 500,
  kKitPush = 501,
  kKitCheck,
  kKitThree,
  kKitRadioA,
  kKitRadioB,
  kKitEdit,
  kKitDigits,
  kKitReadOnly,
  kKitLines,
  kKitCombo,
  kKitEditable,
  kKitList,
  kKitTree,
  kKitDate,
  kKitTime,
  kKitGroup,
  kKitDisabled,
  kKitHidden,
};

// clang-format off
inline constexpr ControlTemplate kKitControls[] = {
    {kKitPush,     ControlClass::kPushButton,    "按下(&P)",  {  7,   7,  60,  14}},
    {kKitCheck,    ControlClass::kCheckBox,      "两态(&C)",  { 75,   8,  60,  10}},
    {kKitThree,    ControlClass::kCheckBox,      "三态",      {140,   8,  60,  10}, style::kThreeState},
    {kKitGroup,    ControlClass::kGroupBox,      "一组",      {  7,  24, 140,  28}},
    {kKitRadioA,   ControlClass::kRadioButton,   "甲",        { 12,  36,  50,  10}, style::kGroupStart},
    {kKitRadioB,   ControlClass::kRadioButton,   "乙",        { 70,  36,  50,  10}},
    {kIdNone,      ControlClass::kStatic,        "名称(&N)：", {  7,  58,  45,  10}, style::kGroupStart},
    {kKitEdit,     ControlClass::kEdit,          "",          { 55,  56,  60,  13}},
    {kKitDigits,   ControlClass::kEdit,          "",          {120,  56,  60,  13}, style::kDigitsOnly},
    {kKitReadOnly, ControlClass::kEdit,          "固定",      {185,  56,  60,  13}, style::kReadOnly},
    {kKitLines,    ControlClass::kEdit,          "",          {185,  72, 100,  30}, style::kMultiLine},
    {kKitCombo,    ControlClass::kComboBox,      "",          {  7,  74,  80,  90}},
    {kKitEditable, ControlClass::kComboBox,      "",          { 95,  74,  80,  90}, style::kEditable},
    {kKitList,     ControlClass::kListView,      "",          {  7,  94, 170,  70}, style::kMultiSelect | style::kGridLines},
    {kKitTree,     ControlClass::kTreeView,      "",          {185, 106, 110,  58}, style::kCheckBoxes},
    {kKitDate,     ControlClass::kDateTime,      "",          {  7, 170,  80,  13}},
    {kKitTime,     ControlClass::kDateTime,      "",          { 95, 170,  80,  13}, style::kTimeFormat | style::kShowNone},
    {kKitDisabled, ControlClass::kPushButton,    "停用",      {185, 170,  50,  14}, style::kDisabled},
    {kKitHidden,   ControlClass::kPushButton,    "隐藏",      {240, 170,  50,  14}, style::kHidden},
    {kIdOk,        ControlClass::kDefaultButton, "确定",      {185, 190,  50,  14}},
    {kIdCancel,    ControlClass::kPushButton,    "取消",      {240, 190,  50,  14}},
};
// clang-format on
inline constexpr DialogTemplate kKitTemplate{kKit, "全部控件", {0, 0, 300, 210}, kKitControls};

class KitDialog : public CDialog {
 public:
  KitDialog() : CDialog(kKitTemplate) {
    constexpr Notification kAll[] = {Notification::kClicked, Notification::kDoubleClicked, Notification::kSelChange,
                                     Notification::kChange,  Notification::kHeaderClicked, Notification::kItemChecked};
    for (int id = kKitPush; id <= kKitHidden; ++id) {
      for (const Notification kind : kAll) On(kind, id, [=, this] { Hear(kind, id); });
    }
  }

  template <class T>
  T& Item(int id) {
    return GetDlgItem<T>(id);
  }
  std::function<void(Notification, int)> hear;
  std::vector<std::pair<Notification, int>> heard;
  // What the controls held when the dialog ended with OK.
  std::function<void(KitDialog&)> at_ok;

 protected:
  void OnInitDialog() override {
    GetDlgItem<CEdit>(kKitEdit).SetLimitText(10);
    for (const char* entry : {"GSM", "TD-SCDMA", "LTE"}) {
      GetDlgItem<CComboBox>(kKitCombo).AddString(entry);
      GetDlgItem<CComboBox>(kKitEditable).AddString(entry);
    }
    auto& list = GetDlgItem<CListCtrl>(kKitList);
    list.InsertColumn(0, "列"_gbk, 60);
    list.InsertColumn(1, "值"_gbk, 60, ColumnAlignment::kRight);
    list.SetImageList(CImageList(kTreeImages));
    for (int row = 0; row < 5; ++row) {
      list.InsertItem(row, Format("row %d", row), kImageLogFile);
      list.SetItemText(row, 1, Format("%d", row * 10));
    }
    auto& tree = GetDlgItem<CMutiTreeCtrl>(kKitTree);
    tree.SetImageList(CImageList(kTreeImages));
    tree.SetStateImageList(CImageList(kTickImages));
    const HTREEITEM group = tree.InsertItem("组"_gbk, kImageGroup);
    tree.InsertItem("leaf 1", kImageIe, group);
    tree.InsertItem("leaf 2", kImageIe, group);
    tree.Expand(group);
    CDialog::OnInitDialog();
  }
  void OnOK() override {
    if (at_ok) at_ok(*this);
    CDialog::OnOK();
  }

 private:
  void Hear(Notification kind, int id) {
    heard.emplace_back(kind, id);
    if (hear) hear(kind, id);
  }
};

}  // namespace loom::testing
