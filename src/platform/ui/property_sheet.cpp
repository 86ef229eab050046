#include "platform/ui/property_sheet.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/ui/front_end.h"

namespace loom {

// Handling of one event. What is posted meanwhile waits for the end of the outermost one.
class CPropertySheet::Event {
 public:
  explicit Event(CPropertySheet& sheet) : sheet_(sheet) { ++sheet_.event_depth_; }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  ~Event() { --sheet_.event_depth_; }

  // Not in the destructor: events may throw.
  void HandlePosted() const {
    if (sheet_.event_depth_ > 1) return;
    while (!sheet_.posted_.empty()) {
      const auto event = std::move(sheet_.posted_.front());
      sheet_.posted_.pop_front();
      event();
    }
  }

 private:
  CPropertySheet& sheet_;
};

void CPropertyPage::EndDialog(int result) {
  if (sheet_) sheet_->EndDialog(result);
}

bool CPropertyPage::IsRunning() const { return HasWindow() && sheet_ && sheet_->IsRunning(); }

bool CPropertyPage::IsReachable() const { return IsRunning() && sheet_->GetActivePage() == this; }

void CPropertyPage::Dispatch(Notification notification, int id) {
  if (!sheet_) return OnCommand(notification, id);
  const CPropertySheet::Event event(*sheet_);
  OnCommand(notification, id);
  event.HandlePosted();
}

void CPropertyPage::UserPress(int id) {
  if (!sheet_ || FindItem(id)) return CDialog::UserPress(id);
  sheet_->UserPress(id);
}

void CPropertyPage::UserClose() {
  if (!sheet_) return CDialog::UserClose();
  sheet_->UserClose();
}

bool CPropertyPage::OnSetActive() {
  if (std::exchange(was_active_, true)) UpdateData(false);
  return true;
}

bool CPropertyPage::OnApply() {
  OnOK();
  return true;
}

void CPropertySheet::AddPage(CPropertyPage& page) { pages_.push_back(&page); }

int CPropertySheet::FindPage(int template_id) const {
  const auto found = std::find_if(pages_.begin(), pages_.end(),
                                  [=](const CPropertyPage* page) { return page->GetTemplate().id == template_id; });
  return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

CString CPropertySheet::GetTitle() const {
  const CPropertyPage* const page = GetActivePage();
  return is_wizard_ && page && !page->GetTitle().IsEmpty() ? page->GetTitle() : title_;
}

void CPropertySheet::Start() {
  for (CPropertyPage* const page : pages_) {
    page->sheet_ = this;
    page->was_active_ = false;
  }
  posted_.clear();
  wizard_buttons_ = kWizardBack | kWizardNext;
  result_ = kIdCancel;
  active_ = -1;
  running_ = true;
  const Event event(*this);
  for (int at = 0; running_ && at < GetPageCount(); ++at) {
    if (Activate(at)) break;
  }
  if (active_ < 0) EndDialog(kIdCancel);
  if (running_) OnInitDialog();
  event.HandlePosted();
}

void CPropertySheet::Stop() {
  running_ = false;
  for (CPropertyPage* const page : pages_) {
    page->DestroyWindow();
    page->sheet_ = nullptr;
  }
  active_ = -1;
}

int CPropertySheet::DoModal() {
  if (running_) throw std::logic_error("a sheet is running already");
  // An exception of a handler ends the run as well.
  struct Run {
    CPropertySheet& sheet;
    ~Run() { sheet.Stop(); }
  } run{*this};
  Start();
  if (running_) CurrentFrontEnd().ShowSheet(*this);
  return result_;
}

void CPropertySheet::EndDialog(int result) {
  if (!running_) return;
  result_ = result;
  running_ = false;
}

// Makes the page's window when there is none yet. A page that refuses or ends the sheet does not come to the front.
bool CPropertySheet::Activate(int at) {
  CPropertyPage& page = GetPage(at);
  const int previous = std::exchange(active_, at);
  if (!page.HasWindow()) page.CreateWindow();
  if (running_ && page.OnSetActive() && running_) return true;
  active_ = previous;
  return false;
}

bool CPropertySheet::SetActivePage(int at) {
  const Event event(*this);
  GetPage(at);
  CPropertyPage* const left = GetActivePage();
  const bool shown = at == active_ || (left && left->OnKillActive() && running_ && Activate(at));
  event.HandlePosted();
  return shown;
}

void CPropertySheet::Post(std::function<void()> event) {
  const Event posting(*this);
  posted_.push_back(std::move(event));
  posting.HandlePosted();
}

void CPropertySheet::PostWizardButtons(unsigned buttons) {
  Post([this, buttons] { SetWizardButtons(buttons); });
}

std::vector<SheetButton> CPropertySheet::GetButtons() const {
  const SheetButton cancel{kIdCancel, "cancel", "取消"_gbk, true};
  if (!is_wizard_) return {{kIdOk, "ok", "确定"_gbk, true}, cancel};
  const auto has = [this](unsigned button) { return (wizard_buttons_ & button) != 0; };
  std::vector<SheetButton> buttons = {{kIdWizardBack, "back", "< 上一步(&B)"_gbk, has(kWizardBack)}};
  if (has(kWizardFinish | kWizardDisabledFinish))
    buttons.push_back({kIdWizardFinish, "finish", "完成"_gbk, has(kWizardFinish)});
  else
    buttons.push_back({kIdWizardNext, "next", "下一步(&N) >"_gbk, has(kWizardNext)});
  buttons.push_back(cancel);
  return buttons;
}

const SheetButton* CPropertySheet::FindButton(const std::vector<SheetButton>& buttons, int id) const {
  const auto found =
      std::find_if(buttons.begin(), buttons.end(), [id](const SheetButton& button) { return button.id == id; });
  return found == buttons.end() ? nullptr : &*found;
}

void CPropertySheet::PressButton(int id) {
  const std::vector<SheetButton> buttons = GetButtons();
  const SheetButton* const button = FindButton(buttons, id);
  if (!running_ || !button || !button->enabled) return;
  const Event event(*this);
  OnCommand(id);
  event.HandlePosted();
}

void CPropertySheet::OnCommand(int id) {
  if (id == kIdCancel) return Cancel();
  if (id == kIdOk) return Apply();
  CPropertyPage& page = *GetActivePage();
  if (!page.OnKillActive() || !running_) return;
  if (id == kIdWizardFinish) {
    if (page.OnWizardFinish()) EndDialog(kIdWizardFinish);
  } else if (id == kIdWizardNext) {
    Turn(page.OnWizardNext(), 1);
  } else if (id == kIdWizardBack) {
    Turn(page.OnWizardBack(), -1);
  }
}

void CPropertySheet::Turn(int answer, int step) {
  if (answer == kWizardStay || !running_) return;
  const int target = answer == kWizardGoOn ? active_ + step : FindPage(answer);
  if (target >= 0 && target < GetPageCount() && target != active_) Activate(target);
}

void CPropertySheet::Apply() {
  if (!GetActivePage()->OnKillActive()) return;
  for (int at = 0; running_ && at < GetPageCount(); ++at) {
    if (!GetPage(at).HasWindow() || GetPage(at).OnApply()) continue;
    if (running_ && at != active_) Activate(at);
    return;
  }
  EndDialog(kIdOk);
}

void CPropertySheet::Cancel() {
  if (!GetActivePage()->OnQueryCancel()) return;
  for (CPropertyPage* const page : pages_) {
    if (page->HasWindow()) page->OnCancel();
  }
  EndDialog(kIdCancel);
}

void CPropertySheet::UserPress(int id) {
  const std::vector<SheetButton> buttons = GetButtons();
  const SheetButton* const button = FindButton(buttons, id);
  if (!running_) throw UiRefused("the sheet is not open");
  if (!button) throw UiRefused("the sheet shows no button " + std::to_string(id));
  if (!button->enabled) throw UiRefused(std::string("the sheet's button '") + button->name + "' is disabled");
  PressButton(id);
}

void CPropertySheet::UserSelectPage(int at) {
  if (!running_ || is_wizard_) throw UiRefused("the sheet shows no tabs");
  if (at < 0 || at >= GetPageCount()) throw UiRefused("the sheet has no page " + std::to_string(at));
  SetActivePage(at);
}

void CPropertySheet::UserClose() { UserPress(kIdCancel); }

}  // namespace loom
