#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "platform/ui/dialog.h"

namespace loom {

class CPropertySheet;

// Bits of SetWizardButtons. Finish, enabled or not, stands in the place of Next.
inline constexpr unsigned kWizardBack = 1u << 0;
inline constexpr unsigned kWizardNext = 1u << 1;
inline constexpr unsigned kWizardFinish = 1u << 2;
inline constexpr unsigned kWizardDisabledFinish = 1u << 3;

// Answers of OnWizardNext and OnWizardBack; the template id of a page leads there.
inline constexpr int kWizardGoOn = 0;
inline constexpr int kWizardStay = -1;

// One page of a sheet. Its window is made when it is shown first in a run of the sheet and lives until the sheet's end:
// what is written into the controls before that is lost, and UpdateData does nothing.
class CPropertyPage : public CDialog {
 public:
  using CDialog::CDialog;

  CPropertySheet* GetSheet() const override { return sheet_; }
  void EndDialog(int result) override;  // ends the sheet
  bool IsRunning() const override;
  bool IsReachable() const override;
  void Dispatch(Notification notification, int id) override;
  void UserPress(int id) override;  // a button of the page or else of the sheet
  void UserClose() override;

 protected:
  friend class CPropertySheet;

  // The page comes to the front; false: it is not shown and the sheet stays where it was. Shows the data again when the
  // page comes back.
  virtual bool OnSetActive();
  // The page is left by any button but Cancel; false: it stays.
  virtual bool OnKillActive() { return UpdateData(true); }
  // The sheet's OK, for every page that was shown; false keeps the sheet open with this page in front.
  virtual bool OnApply();
  virtual int OnWizardNext() { return kWizardGoOn; }
  virtual int OnWizardBack() { return kWizardGoOn; }
  virtual bool OnWizardFinish() { return true; }
  virtual bool OnQueryCancel() { return true; }
  void OnOK() override {}
  void OnCancel() override {}

 private:
  CPropertySheet* sheet_ = nullptr;
  bool was_active_ = false;
};

struct SheetButton {
  int id;
  const char* name;  // "ok", "cancel", "back", "next", "finish"
  CString text;
  bool enabled;
};

// Pages behind tabs with OK and Cancel (there is no Apply), or in wizard mode one after the other.
class CPropertySheet {
 public:
  explicit CPropertySheet(const CString& title) : title_(title) {}
  CPropertySheet(const CPropertySheet&) = delete;
  CPropertySheet& operator=(const CPropertySheet&) = delete;
  virtual ~CPropertySheet() = default;

  void SetWizardMode() { is_wizard_ = true; }
  bool IsWizard() const { return is_wizard_; }
  void AddPage(CPropertyPage& page);  // outlives the sheet's run
  int GetPageCount() const { return static_cast<int>(pages_.size()); }
  CPropertyPage& GetPage(int at) const { return *pages_.at(static_cast<std::size_t>(at)); }
  int GetActiveIndex() const { return active_; }  // -1: none
  CPropertyPage* GetActivePage() const { return active_ < 0 ? nullptr : &GetPage(active_); }
  int FindPage(int template_id) const;  // -1: none
  // Of the window: in wizard mode the title of the active page, where it has one.
  CString GetTitle() const;

  // kIdOk, kIdWizardFinish, kIdCancel or what EndDialog was given. A sheet that is ended while its first page starts is
  // never shown.
  int DoModal();
  void EndDialog(int result);  // the first call of a run decides
  bool IsRunning() const { return running_; }

  // Leaves the active page and shows another; false when one of the two refused.
  bool SetActivePage(int at);
  // Which wizard buttons there are, at once.
  void SetWizardButtons(unsigned buttons) { wizard_buttons_ = buttons; }
  // The same once the event being handled is done; events posted later come later.
  void PostWizardButtons(unsigned buttons);
  void Post(std::function<void()> event);
  void PressButton(int id);  // by the program; one that is disabled or not shown does nothing

  // The sheet's own buttons that are shown, from left to right.
  std::vector<SheetButton> GetButtons() const;

  void UserPress(int id);
  void UserSelectPage(int at);  // its tab
  void UserClose();

 protected:
  friend class CPropertyPage;

  virtual void OnInitDialog() {}  // with the first page active
  // A button of the sheet. An override that does not pass it on swallows the command.
  virtual void OnCommand(int id);

 private:
  class Event;
  void Start();
  void Stop();
  bool Activate(int at);
  void Turn(int answer, int step);
  void Finish();
  void Apply();
  void Cancel();
  const SheetButton* FindButton(const std::vector<SheetButton>& buttons, int id) const;

  CString title_;
  std::vector<CPropertyPage*> pages_;
  std::deque<std::function<void()>> posted_;
  bool is_wizard_ = false;
  bool running_ = false;
  int active_ = -1;
  int result_ = kIdCancel;
  int event_depth_ = 0;
  unsigned wizard_buttons_ = 0;
};

}  // namespace loom
