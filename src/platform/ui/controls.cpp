#include "platform/ui/controls.h"

#include <algorithm>

#include "platform/encoding.h"
#include "platform/ui/dialog.h"
#include "platform/ui/metrics.h"

namespace loom {

const char* ControlClassName(ControlClass control_class) {
  constexpr const char* kNames[] = {"PushButton", "DefaultButton", "CheckBox", "RadioButton", "GroupBox", "Static",
                                    "Edit",       "ComboBox",      "ListView", "TreeView",    "DateTime"};
  return kNames[static_cast<std::size_t>(control_class)];
}

CWnd::CWnd(CDialog& dialog, const ControlTemplate& control) : dialog_(dialog), template_(control) { CWnd::Reset(); }

void CWnd::Reset() {
  text_ = Utf8ToGbk(template_.text);
  placement_ = template_.rect;
  enabled_ = !HasStyle(style::kDisabled);
  visible_ = !HasStyle(style::kHidden);
  redraw_ = true;
  Touch();
}

int CWnd::GetClientWidth() const { return std::max(0, HorizontalPx(placement_.width) - 2 * kBorderPx); }

int CWnd::GetClientHeight() const { return std::max(0, VerticalPx(placement_.height) - 2 * kBorderPx); }

void CWnd::SetFocus() { dialog_.SetFocusTo(GetDlgCtrlID()); }

void CWnd::RequireUsable() const {
  if (!dialog_.IsReachable()) Refuse("its dialog is not open");
  if (!visible_) Refuse("it is hidden");
  if (!enabled_) Refuse("it is disabled");
}

void CWnd::BeginUserAction() {
  RequireUsable();
  SetFocus();
}

void CWnd::Notify(Notification notification) { dialog_.Dispatch(notification, GetDlgCtrlID()); }

void CWnd::Refuse(const std::string& why) const {
  throw UiRefused("control " + std::to_string(GetDlgCtrlID()) + " (" + ControlClassName(template_.control_class) +
                  ") of dialog " + std::to_string(dialog_.GetTemplate().id) + ": " + why);
}

bool CButton::IsCheckable() const {
  const ControlClass own = GetTemplate().control_class;
  return own == ControlClass::kCheckBox || own == ControlClass::kRadioButton;
}

void CButton::UserPress() {
  BeginUserAction();
  if (GetTemplate().control_class == ControlClass::kCheckBox)
    check_ = (check_ + 1) % (HasStyle(style::kThreeState) ? 3 : 2);
  if (GetTemplate().control_class == ControlClass::kRadioButton) dialog().CheckRadio(GetDlgCtrlID());
  Notify(Notification::kClicked);
}

void CButton::UserCheck(int check) {
  RequireUsable();
  const bool is_radio = GetTemplate().control_class == ControlClass::kRadioButton;
  const int highest = HasStyle(style::kThreeState) ? 2 : 1;
  if (!IsCheckable() || check < 0 || check > highest || (is_radio && check == 0 && check_ != 0))
    Refuse("it cannot be put into the state " + std::to_string(check));
  for (int clicks = 0; check_ != check; ++clicks) {
    // The program may answer a click by setting the box back.
    if (clicks > highest) Refuse("it does not stay in the state " + std::to_string(check));
    UserPress();
  }
}

void CButton::Reset() {
  CWnd::Reset();
  check_ = 0;
}

void CEdit::SetSel(int start, int end) {
  const int length = GetWindowText().GetLength();
  selection_start_ = std::clamp(start, 0, length);
  selection_end_ = end < 0 ? length : std::clamp(end, selection_start_, length);
}

void CEdit::SetWindowText(const CString& text) {
  CWnd::SetWindowText(text);
  SetSel(0, 0);
}

bool CEdit::UserType(const CString& text) {
  BeginUserAction();
  if (read_only_) Refuse("it is read-only");
  const std::string_view typed = text.view();
  std::string taken;
  for (std::size_t at = 0; at < typed.size();) {
    const std::string_view character = typed.substr(at, GbkCharLength(typed, at));
    at += character.size();
    if (HasStyle(style::kDigitsOnly) && (character[0] < '0' || character[0] > '9')) continue;
    if (limit_bytes_ > 0 && taken.size() + character.size() > static_cast<std::size_t>(limit_bytes_)) continue;
    taken += character;
  }
  const bool all = taken.size() == typed.size();
  SetWindowText(CString(std::move(taken)));
  SetSel(GetWindowText().GetLength(), -1);
  Notify(Notification::kChange);
  return all;
}

void CEdit::Reset() {
  CWnd::Reset();
  limit_bytes_ = 0;
  SetSel(0, 0);
  read_only_ = HasStyle(style::kReadOnly);
}

int CComboBox::AddString(const CString& text) {
  auto place = items_.end();
  if (HasStyle(style::kSorted)) {
    place =
        std::find_if(items_.begin(), items_.end(), [&](const Item& item) { return item.text.CompareNoCase(text) > 0; });
  }
  return InsertString(static_cast<int>(place - items_.begin()), text);
}

int CComboBox::InsertString(int at, const CString& text) {
  if (at < 0 || at > GetCount()) throw std::out_of_range("combo box entry " + std::to_string(at));
  items_.insert(items_.begin() + at, Item{text, 0});
  if (selection_ >= at) ++selection_;
  return at;
}

void CComboBox::DeleteString(int at) {
  items_.at(Index(at));
  items_.erase(items_.begin() + at);
  if (selection_ == at) selection_ = -1;
  if (selection_ > at) --selection_;
}

void CComboBox::ResetContent() {
  items_.clear();
  selection_ = -1;
  CWnd::SetWindowText(CString());
}

template <class Matches>
int CComboBox::FindBehind(int after, Matches matches) const {
  const int count = GetCount();
  for (int step = 1; step <= count; ++step) {
    const int at = (std::clamp(after, -1, count - 1) + step) % count;
    if (matches(items_[Index(at)].text)) return at;
  }
  return -1;
}

int CComboBox::FindStringExact(int after, const CString& text) const {
  return FindBehind(after, [&](const CString& item) { return item.CompareNoCase(text) == 0; });
}

int CComboBox::FindString(int after, const CString& text) const {
  return FindBehind(after, [&](const CString& item) { return item.Left(text.GetLength()).CompareNoCase(text) == 0; });
}

void CComboBox::SetCurSel(int at) {
  selection_ = at >= 0 && at < GetCount() ? at : -1;
  if (HasStyle(style::kEditable)) CWnd::SetWindowText(selection_ < 0 ? CString() : items_[Index(selection_)].text);
}

int CComboBox::SelectString(int after, const CString& prefix) {
  const int at = FindString(after, prefix);
  if (at >= 0) SetCurSel(at);
  return at;
}

CString CComboBox::GetWindowText() const {
  if (HasStyle(style::kEditable)) return CWnd::GetWindowText();
  return selection_ < 0 ? CString() : items_[Index(selection_)].text;
}

void CComboBox::SetWindowText(const CString& text) {
  if (HasStyle(style::kEditable)) CWnd::SetWindowText(text);
}

void CComboBox::UserChoose(int at) {
  BeginUserAction();
  if (at < 0 || at >= GetCount()) Refuse("it has no entry " + std::to_string(at));
  SetCurSel(at);
  Notify(Notification::kSelChange);
}

void CComboBox::UserChoose(const CString& text) {
  RequireUsable();
  const auto found = std::find_if(items_.begin(), items_.end(), [&](const Item& item) { return item.text == text; });
  if (found == items_.end()) Refuse("it has no entry '" + GbkToUtf8(text) + "'");
  UserChoose(static_cast<int>(found - items_.begin()));
}

void CComboBox::UserType(const CString& text) {
  BeginUserAction();
  if (!HasStyle(style::kEditable)) Refuse("it is a list to choose from");
  selection_ = -1;
  CWnd::SetWindowText(text);
  Notify(Notification::kChange);
}

void CComboBox::Reset() {
  CWnd::Reset();
  items_.clear();
  selection_ = -1;
}

}  // namespace loom
