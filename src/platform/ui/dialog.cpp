#include "platform/ui/dialog.h"

#include <algorithm>
#include <stdexcept>

#include "platform/encoding.h"
#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/front_end.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"

namespace loom {
namespace {

std::unique_ptr<CWnd> MakeControl(CDialog& dialog, const ControlTemplate& control) {
  switch (control.control_class) {
    case ControlClass::kPushButton:
    case ControlClass::kDefaultButton:
    case ControlClass::kCheckBox:
    case ControlClass::kRadioButton:
      return std::make_unique<CButton>(dialog, control);
    case ControlClass::kGroupBox:
    case ControlClass::kStatic:
      return std::make_unique<CStatic>(dialog, control);
    case ControlClass::kEdit:
      return std::make_unique<CEdit>(dialog, control);
    case ControlClass::kComboBox:
      return std::make_unique<CComboBox>(dialog, control);
    case ControlClass::kListView:
      return std::make_unique<CListCtrl>(dialog, control);
    case ControlClass::kTreeView:
      if ((control.styles & (style::kCheckBoxes | style::kMultiSelect)) != 0)
        return std::make_unique<CMutiTreeCtrl>(dialog, control);
      return std::make_unique<CTreeCtrl>(dialog, control);
    case ControlClass::kDateTime:
      return std::make_unique<CDateTimeCtrl>(dialog, control);
  }
  throw std::logic_error("no control for the class " + std::to_string(static_cast<int>(control.control_class)));
}

bool IsRadio(const std::unique_ptr<CWnd>& control) {
  return control->GetTemplate().control_class == ControlClass::kRadioButton;
}

}  // namespace

CDialog::CDialog(const DialogTemplate& dialog_template)
    : template_(dialog_template), title_(Utf8ToGbk(dialog_template.title)) {
  for (const ControlTemplate& control : template_.controls) {
    controls_.push_back(MakeControl(*this, control));
    controls_.back()->Reset();
  }
}

int CDialog::DoModal() {
  if (running_) throw std::logic_error("dialog " + std::to_string(template_.id) + " is running already");
  result_ = kIdCancel;
  // An exception of a handler ends the run as well.
  struct Run {
    CDialog& dialog;
    ~Run() { dialog.DestroyWindow(); }
  } run{*this};
  CreateWindow();
  if (running_) CurrentFrontEnd().ShowDialog(*this);
  return result_;
}

void CDialog::CreateWindow() {
  for (const auto& control : controls_) control->Reset();
  focus_id_ = kIdNone;
  outcome_ = DialogOutcome::kNone;
  running_ = has_window_ = true;
  OnInitDialog();
}

void CDialog::EndDialog(int result) {
  if (!running_) return;
  result_ = result;
  running_ = false;
}

CWnd* CDialog::FindItem(int id) const {
  if (id == kIdNone) return nullptr;
  const auto found = std::find_if(controls_.begin(), controls_.end(),
                                  [id](const auto& control) { return control->GetDlgCtrlID() == id; });
  return found == controls_.end() ? nullptr : found->get();
}

void CDialog::MissingItem(int id) const {
  throw std::logic_error("dialog " + std::to_string(template_.id) + " has no control " + std::to_string(id) +
                         " of the class asked for");
}

// The controls from the last group start up to the next one.
std::span<const std::unique_ptr<CWnd>> CDialog::GroupOf(int id) const {
  const auto starts_group = [](const auto& control) { return control->HasStyle(style::kGroupStart); };
  const auto own = std::find_if(controls_.begin(), controls_.end(),
                                [id](const auto& control) { return control->GetDlgCtrlID() == id; });
  if (own == controls_.end()) MissingItem(id);
  auto first = own;
  while (first != controls_.begin() && !starts_group(*first)) --first;
  return {first, std::find_if(own + 1, controls_.end(), starts_group)};
}

void CDialog::CheckRadio(int id) {
  for (const auto& control : GroupOf(id)) {
    if (IsRadio(control)) static_cast<CButton&>(*control).SetCheck(control->GetDlgCtrlID() == id ? 1 : 0);
  }
}

std::vector<int> CDialog::RadioGroup(int first_id) const {
  std::vector<int> ids;
  for (const auto& control : GroupOf(first_id)) {
    if (IsRadio(control)) ids.push_back(control->GetDlgCtrlID());
  }
  return ids;
}

void CDialog::EnableItems(std::initializer_list<int> ids, bool enabled) const {
  for (const int id : ids) GetDlgItem(id).EnableWindow(enabled);
}

bool CDialog::UpdateData(bool save) {
  if (!has_window_) return false;
  CDataExchange exchange(*this, save);
  try {
    DoDataExchange(exchange);
  } catch (const DataExchangeFailed&) {
    return false;
  }
  return true;
}

void CDialog::On(Notification notification, int id, Handler handler) {
  handlers_[{notification, id}] = std::move(handler);
}

void CDialog::OnCommand(Notification notification, int id) {
  if (const auto handler = handlers_.find({notification, id}); handler != handlers_.end()) {
    handler->second();
  } else if (notification == Notification::kClicked && id == kIdOk) {
    OnOK();
  } else if (notification == Notification::kClicked && id == kIdCancel) {
    OnCancel();
  }
}

void CDialog::OnOK() {
  if (UpdateData(true)) EndDialog(kIdOk);
}

void CDialog::UserPress(int id) {
  CWnd* const item = FindItem(id);
  if (!item) throw UiRefused("dialog " + std::to_string(template_.id) + " has no control " + std::to_string(id));
  auto* const button = dynamic_cast<CButton*>(item);
  if (!button) throw UiRefused("control " + std::to_string(id) + " is no button");
  button->UserPress();
}

void CDialog::UserClose() {
  if (!IsRunning()) throw UiRefused("dialog " + std::to_string(template_.id) + " is not open");
  if (FindItem(kIdCancel))
    UserPress(kIdCancel);
  else
    OnCommand(Notification::kClicked, kIdCancel);
}

}  // namespace loom
