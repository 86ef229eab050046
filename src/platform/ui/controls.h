#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/cstring.h"
#include "platform/ui/template.h"

// Model controls: what a control shows and holds, without a toolkit. The program's calls notify nobody; those named
// User... are what a person does: they refuse a control that is hidden or disabled, give it the focus and notify the
// dialog. Only selecting rows of lists and items of trees notifies whoever does it.
namespace loom {

class CDialog;

// What a control tells its dialog about a person's action.
enum class Notification {
  kClicked,
  kDoubleClicked,  // list view, tree view
  kSelChange,      // combo box; list view and tree view also when the program selects
  kChange,         // edit, editable combo box, date-time picker
  kHeaderClicked,  // list view
  kItemChecked,    // tree view
};

// A person's action that the window does not allow. what() is UTF-8.
class UiRefused : public std::logic_error {
 public:
  using std::logic_error::logic_error;
};

class CWnd {
 public:
  CWnd(CDialog& dialog, const ControlTemplate& control);
  CWnd(const CWnd&) = delete;
  CWnd& operator=(const CWnd&) = delete;
  virtual ~CWnd() = default;

  int GetDlgCtrlID() const { return template_.id; }
  const ControlTemplate& GetTemplate() const { return template_; }
  bool HasStyle(unsigned style) const { return (template_.styles & style) != 0; }

  virtual CString GetWindowText() const { return text_; }
  virtual void SetWindowText(const CString& text) { text_ = text; }
  bool IsWindowEnabled() const { return enabled_; }
  void EnableWindow(bool enabled) { enabled_ = enabled; }
  bool IsWindowVisible() const { return visible_; }
  void ShowWindow(bool visible) { visible_ = visible; }
  void SetFocus();

  // Where it stands in the dialog, in dialog units.
  const DialogRect& GetPlacement() const { return placement_; }
  void SetPlacement(const DialogRect& placement) { placement_ = placement; }
  int GetClientWidth() const;  // pixels inside its border
  int GetClientHeight() const;

  // While drawing is frozen a front end leaves the control as it was.
  void SetRedraw(bool redraw) { redraw_ = redraw; }
  bool IsRedrawFrozen() const { return !redraw_; }
  // Grows with every change of the rows, items or columns of a list or tree.
  unsigned GetRevision() const { return revision_; }

  // Back to what the template says; a dialog starts each of its runs with it.
  virtual void Reset();
  // Throws UiRefused unless a person can use the control now.
  void RequireUsable() const;

 protected:
  CDialog& dialog() const { return dialog_; }
  // What every action of a person starts with.
  void BeginUserAction();
  void Notify(Notification notification);
  void Touch() { ++revision_; }
  [[noreturn]] void Refuse(const std::string& why) const;

 private:
  CDialog& dialog_;
  const ControlTemplate& template_;
  CString text_;
  DialogRect placement_;
  bool enabled_ = true;
  bool visible_ = true;
  bool redraw_ = true;
  unsigned revision_ = 0;
};

// Texts and group boxes.
class CStatic : public CWnd {
 public:
  using CWnd::CWnd;
};

// Push buttons, check boxes and radio buttons.
class CButton : public CWnd {
 public:
  using CWnd::CWnd;

  int GetCheck() const { return check_; }  // 0 clear, 1 ticked, 2 undetermined
  void SetCheck(int check) { check_ = check; }

  // A click: a check box goes on to its next state, a radio button takes the mark of its group.
  void UserPress();
  // Clicks until the state is reached, not at all when it is there already.
  void UserCheck(int check);
  void Reset() override;

 private:
  bool IsCheckable() const;
  int check_ = 0;
};

class CEdit : public CWnd {
 public:
  using CWnd::CWnd;

  // Most bytes that a person can type; 0 is no limit.
  void SetLimitText(int bytes) { limit_bytes_ = bytes; }
  int GetLimitText() const { return limit_bytes_; }
  void SetReadOnly(bool read_only) { read_only_ = read_only; }
  bool IsReadOnly() const { return read_only_; }

  // Selected text as byte positions [start, end); (0, -1) selects all of it. A new text has none selected.
  void SetSel(int start, int end);
  std::pair<int, int> GetSel() const { return {selection_start_, selection_end_}; }
  void SetWindowText(const CString& text) override;

  // Replaces the text by what of `text` can be typed: with digits only nothing else is taken, and characters that do
  // not fit the limit are not taken. Returns whether all of it was.
  bool UserType(const CString& text);
  void Reset() override;

 private:
  int limit_bytes_ = 0;
  bool read_only_ = false;
  int selection_start_ = 0;
  int selection_end_ = 0;
};

class CComboBox : public CWnd {
 public:
  using CWnd::CWnd;

  // Entries; a position out of range is std::out_of_range. Adding returns the position of the entry.
  int AddString(const CString& text);  // at the end, in a sorted box at its place by letters without case
  int InsertString(int at, const CString& text);
  void DeleteString(int at);
  void ResetContent();
  int GetCount() const { return static_cast<int>(items_.size()); }
  const CString& GetLBText(int at) const { return items_.at(Index(at)).text; }
  std::intptr_t GetItemData(int at) const { return items_.at(Index(at)).data; }
  void SetItemData(int at, std::intptr_t data) { items_.at(Index(at)).data = data; }

  // Position behind `after` of the entry that is `text` or starts with it, letters without case, starting over at the
  // top; -1 if none.
  int FindStringExact(int after, const CString& text) const;
  int FindString(int after, const CString& text) const;

  // -1: none. A selection out of range selects nothing.
  int GetCurSel() const { return selection_; }
  void SetCurSel(int at);
  int SelectString(int after, const CString& prefix);  // selects what FindString finds and returns it

  // The selected entry or, in an editable box, the text of the edit.
  CString GetWindowText() const override;
  void SetWindowText(const CString& text) override;  // in a drop-down list without effect

  void UserChoose(int at);
  void UserChoose(const CString& text);  // the exact entry
  void UserType(const CString& text);
  void Reset() override;

 private:
  struct Item {
    CString text;
    std::intptr_t data = 0;
  };
  static std::size_t Index(int at) { return static_cast<std::size_t>(at); }
  template <class Matches>
  int FindBehind(int after, Matches matches) const;

  std::vector<Item> items_;
  int selection_ = -1;
};

}  // namespace loom
