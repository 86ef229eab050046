#pragma once

#include <functional>
#include <initializer_list>
#include <map>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "platform/ui/controls.h"
#include "platform/ui/data_exchange.h"
#include "platform/ui/template.h"

namespace loom {

class CPropertySheet;

// What became of the last thing that a window was to do.
enum class DialogOutcome { kNone, kDone, kInPart, kNotDone };

// A window built from a template. Derived classes hold the behaviour; a front end shows it.
class CDialog {
 public:
  // The template outlives the dialog. Throws std::logic_error when it holds a control of no known class.
  explicit CDialog(const DialogTemplate& dialog_template);
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;
  virtual ~CDialog() = default;

  const DialogTemplate& GetTemplate() const { return template_; }
  const CString& GetTitle() const { return title_; }
  void SetTitle(const CString& title) { title_ = title; }

  // Runs the dialog through the current front end, each time from its template, and returns what EndDialog was given:
  // kIdOk, kIdCancel or a value of the dialog's own. A dialog that ends itself in OnInitDialog is never shown.
  int DoModal();
  // From any handler. The first call of a run decides.
  virtual void EndDialog(int result);
  virtual bool IsRunning() const { return running_; }
  // Whether a person can reach its controls.
  virtual bool IsReachable() const { return IsRunning(); }
  virtual CPropertySheet* GetSheet() const { return nullptr; }  // of a page
  DialogOutcome GetOutcome() const { return outcome_; }         // of the last run

  // Throws std::logic_error for an id that the template lacks or a control of another class.
  template <class T = CWnd>
  T& GetDlgItem(int id) const {
    T* const control = dynamic_cast<T*>(FindItem(id));
    if (!control) MissingItem(id);
    return *control;
  }
  CWnd* FindItem(int id) const;                                                     // null when the template lacks it
  const std::vector<std::unique_ptr<CWnd>>& controls() const { return controls_; }  // in tab order

  // Marks `id` and clears the other buttons of its radio group.
  void CheckRadio(int id);
  // The ids of the radio group that starts with `first_id`, in order.
  std::vector<int> RadioGroup(int first_id) const;
  void EnableItems(std::initializer_list<int> ids, bool enabled) const;
  int GetFocusId() const { return focus_id_; }
  void SetFocusTo(int id) { focus_id_ = id; }

  // Moves data between controls and members: `save` true takes the controls' values. False when a value was refused
  // and, without touching anything, when there is no window: before and after a run, or of a page not shown yet.
  bool UpdateData(bool save);

  // A person's action on a control: calls the handler set for it; without one OK and Cancel go to OnOK and OnCancel.
  virtual void OnCommand(Notification notification, int id);
  // How controls reach OnCommand.
  virtual void Dispatch(Notification notification, int id) { OnCommand(notification, id); }

  // What a person does with the window itself: closing it is pressing Cancel where there is such a button.
  virtual void UserPress(int id);
  virtual void UserClose();

 protected:
  virtual void OnInitDialog() { UpdateData(false); }
  virtual void OnOK();  // takes the data and closes when none was refused
  virtual void OnCancel() { EndDialog(kIdCancel); }
  virtual void DoDataExchange(CDataExchange&) {}
  void SetOutcome(DialogOutcome outcome) { outcome_ = outcome; }

  using Handler = std::function<void()>;
  void OnClicked(int id, Handler handler) { On(Notification::kClicked, id, std::move(handler)); }
  void OnSelChange(int id, Handler handler) { On(Notification::kSelChange, id, std::move(handler)); }
  void OnChange(int id, Handler handler) { On(Notification::kChange, id, std::move(handler)); }
  void OnDoubleClicked(int id, Handler handler) { On(Notification::kDoubleClicked, id, std::move(handler)); }
  void On(Notification notification, int id, Handler handler);

  // The window of one run: made from the template and initialised, and taken away again.
  void CreateWindow();
  void DestroyWindow() { running_ = has_window_ = false; }
  bool HasWindow() const { return has_window_; }

 private:
  [[noreturn]] void MissingItem(int id) const;
  std::span<const std::unique_ptr<CWnd>> GroupOf(int id) const;

  const DialogTemplate& template_;
  CString title_;
  std::vector<std::unique_ptr<CWnd>> controls_;
  std::map<std::pair<Notification, int>, Handler> handlers_;
  bool running_ = false;
  bool has_window_ = false;
  int result_ = kIdCancel;
  DialogOutcome outcome_ = DialogOutcome::kNone;
  int focus_id_ = kIdNone;
};

}  // namespace loom
