#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/cstring.h"
#include "platform/ui/front_end.h"
#include "platform/ui/user_actions.h"
#include "platform/ui/window_state.h"

namespace loom {

// A front end that plays a person from a list of steps, in the order in which they are written:
//
//   user.Expect(kDialog).Choose(kCombo, "GSM").Press(kButtonCheck)
//       .ExpectMessage("..."_gbk).Answer(MessageAnswer::kYes).Ok();
//
// Steps behind Expect act on that dialog until it ends, in a property sheet on the page in front; a step that opens
// another window is followed by the step that expects it. Whatever comes otherwise (an unexpected window or message, a
// window that does not come, a refused action, a text that differs, a step left over) is reported to the failure
// handler and the window is cancelled. It is the current front end for its lifetime.
class ScriptedUser : public FrontEnd {
 public:
  using FailureHandler = std::function<void(const std::string& utf8)>;
  // For every scripted user. Without a handler a failure is thrown as std::runtime_error. Returns the one it replaces.
  static FailureHandler SetFailureHandler(FailureHandler handler);

  ScriptedUser();
  ScriptedUser(const ScriptedUser&) = delete;
  ScriptedUser& operator=(const ScriptedUser&) = delete;
  ~ScriptedUser() override;  // steps left over: to the failure handler, without one to the log

  // Windows that come.
  ScriptedUser& Expect(int dialog_id);  // a sheet by the template of its first page
  ScriptedUser& ExpectMessage(const CString& text, std::optional<MessageIcon> icon = std::nullopt);
  ScriptedUser& Answer(MessageAnswer answer);  // to the message just written; without it the message is agreed to
  ScriptedUser& PickFiles(std::vector<CString> paths);
  // To the question of the file dialog just answered; without it the file is overwritten. False leaves it open.
  ScriptedUser& Overwrite(bool overwrite);
  ScriptedUser& CancelFiles();
  ScriptedUser& PressInFiles(int extra_button_id);  // the extra button of the file dialog that is open then

  // Actions in the dialog in front. Tree items by path, as CTreeCtrl::FindPath takes it.
  ScriptedUser& Press(int id) { return Do(id, act::Press()); }
  ScriptedUser& Ok() { return Press(kIdOk); }
  ScriptedUser& Next() { return Press(kIdWizardNext); }
  ScriptedUser& Back() { return Press(kIdWizardBack); }
  ScriptedUser& FinishWizard() { return Press(kIdWizardFinish); }
  ScriptedUser& Cancel();  // the Cancel button or, without one, closing the window
  ScriptedUser& Check(int id, bool on) { return CheckState(id, on ? 1 : 0); }
  ScriptedUser& CheckState(int id, int state) { return Do(id, act::Check(state)); }
  ScriptedUser& Type(int id, const CString& text) { return Do(id, act::Type(text)); }
  ScriptedUser& Choose(int id, const CString& entry) { return Do(id, act::Choose(entry)); }
  ScriptedUser& ChooseAt(int id, int position) { return Do(id, act::ChooseAt(position)); }
  ScriptedUser& SelectRows(int id, const std::vector<int>& rows) { return Do(id, act::SelectRows(rows)); }
  ScriptedUser& DoubleClick(int id, int row) { return Do(id, act::DoubleClickRow(row)); }
  ScriptedUser& ClickHeader(int id, int column) { return Do(id, act::ClickHeader(column)); }
  ScriptedUser& SelectItems(int id, const std::vector<CString>& paths);
  ScriptedUser& DoubleClickItem(int id, const CString& path, TreeHitPart part = TreeHitPart::kLabel) {
    return Do(id, act::DoubleClickItem(ItemAtPath(path), part));
  }
  ScriptedUser& Tick(int id, const CString& path, bool ticked = true) {
    return Do(id, act::Tick(ItemAtPath(path), ticked));
  }
  ScriptedUser& Expand(int id, const CString& path, bool expanded = true) {
    return Do(id, act::Expand(ItemAtPath(path), expanded));
  }
  ScriptedUser& PickDate(int id, const CalendarDay& day) { return Do(id, act::PickDate(day)); }
  ScriptedUser& PickTime(int id, int hour, int minute, int second) {
    return Do(id, act::PickTime(hour, minute, second));
  }
  ScriptedUser& SheetPage(int page_id) { return Do(page_id, act::ShowPage()); }
  ScriptedUser& Do(int id, const UserAction& action);
  ScriptedUser& Do(const std::string& description, std::function<void(CDialog&)> action);

  // What the person sees.
  ScriptedUser& SeeTitle(const CString& title);
  ScriptedUser& SeeText(int id, const CString& text);
  ScriptedUser& SeeChecked(int id, int state);
  ScriptedUser& SeeItems(int combo_id, const std::vector<CString>& items);
  ScriptedUser& SeeEnabled(int id, bool enabled);
  ScriptedUser& SeeVisible(int id, bool visible);
  ScriptedUser& SeeFocus(int id);
  ScriptedUser& SeeRows(int list_id, const std::vector<std::vector<CString>>& rows);
  ScriptedUser& SeeSelectedRows(int list_id, const std::vector<int>& rows);
  ScriptedUser& SeeTicked(int tree_id, const CString& path, TreeCheck check);
  ScriptedUser& SeePage(int page_id);  // in front
  // "back next" and so on: the sheet's own buttons that can be pressed.
  ScriptedUser& SeeButtons(const std::string& names);

  // Cancels a progress window, counted from 0 over all that open, once its position has reached `position` or it was
  // pumped `pumps` times.
  ScriptedUser& CancelProgressAt(int position, int window = 0);
  ScriptedUser& CancelProgressAtPump(int pumps, int window = 0);

  // From now on windows come unannounced, messages without an answer are agreed to, and a window for which no step is
  // left is cancelled. Answers and files may also stand before the step that brings up what they are for. After the
  // first failure nothing more is played.
  void PlayFreely() { free_ = true; }
  ScriptedUser& AnswerNext(MessageAnswer answer);
  // Asked before each step: once it says true nothing more is played and what is left over is no failure.
  void SetStop(std::function<bool()> stop) { stop_ = std::move(stop); }
  // Called after each step as soon as its effect shows: a new window or message, or the end of what the
  // window in front does about it.
  void SetStepListener(std::function<void()> listener) { listener_ = std::move(listener); }
  // Of the window in front; nothing when none is open or a file dialog is.
  std::optional<WindowState> FrontState() const;
  const FileDialogRequest* FrontFileDialog() const;  // null unless a file dialog is in front
  const std::vector<std::string>& failures() const { return failures_; }

  // Reports steps that are left over and forgets them.
  void Finish();

  struct ProgressRecord {
    CString title;
    bool can_cancel = false;
    std::vector<CString> texts = {};
    int lowest = 0;
    int highest = 0;
    std::vector<int> positions = {};
    int pumps = 0;
    bool cancelled = false;
    bool closed = false;
  };
  const std::deque<ProgressRecord>& progress() const { return progress_; }
  const std::vector<MessageBoxRequest>& messages() const { return messages_; }  // every message that came
  const std::vector<MessageAnswer>& answers() const { return answers_; }        // to these
  const std::vector<FileDialogRequest>& file_dialogs() const { return file_dialogs_; }
  const std::vector<CString>& overwrite_questions() const { return overwrite_questions_; }
  int wait_cursor_depth() const { return wait_cursor_depth_; }
  int wait_cursor_count() const { return wait_cursor_count_; }  // how often it was switched on

  void ShowDialog(CDialog& dialog) override;
  void ShowSheet(CPropertySheet& sheet) override;
  MessageAnswer ShowMessage(const MessageBoxRequest& request) override;
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) override;
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest& request) override;
  void SetWaitCursor(bool on) override;

 private:
  enum class StepKind { kDialog, kAction, kMessage, kFiles, kFileButton };
  struct Step {
    StepKind kind;
    std::string description;  // UTF-8
    int id = 0;
    std::function<void(CDialog&)> action = {};
    CString text = {};
    std::optional<MessageIcon> icon = {};
    std::optional<MessageAnswer> answer = {};
    std::optional<std::vector<CString>> paths = {};
    bool overwrite = true;
    bool any_message = false;
  };
  struct CancelPoint {
    std::optional<int> position;
    std::optional<int> pumps;
  };
  class Progress;
  using DialogInFront = std::function<CDialog*()>;  // null once the window has ended
  struct OpenWindow {
    DialogInFront dialog = {};                 // of a dialog or sheet
    const FileDialogRequest* files = nullptr;  // of a file dialog
  };
  class Standing;

  ScriptedUser& Add(Step step);
  ScriptedUser& See(const std::string& what, std::function<std::string(CDialog&)> seen, const std::string& wanted);
  template <class Control, class Get, class Value>
  ScriptedUser& SeeOf(const std::string& what, int id, Get get, const Value& wanted);
  std::optional<Step> TakeIf(StepKind kind);
  std::optional<Step> TakePreset(StepKind kind);
  std::string NextStepText() const;
  bool IsStopped() const { return stop_ && stop_(); }
  void Fail(const std::string& utf8);
  void Report();
  void Play(const CDialog& first, const CString& title, const DialogInFront& front);
  bool PlayStep(const DialogInFront& front);
  void Act(CDialog& dialog, const Step& step);
  MessageAnswer AnswerTo(const MessageBoxRequest& request, const Step& step, const std::string& came);
  MessageAnswer AnswerFreely(const MessageBoxRequest& request, const std::string& came);
  MessageAnswer AnswerAsScripted(const MessageBoxRequest& request, const std::string& came);
  void PressExtraButton(const FileDialogRequest& request, int id);
  bool MayOverwrite(const FileDialogRequest& request, const Step& step);

  FrontEnd* previous_;
  std::deque<Step> steps_;
  std::deque<Step> presets_;
  std::vector<OpenWindow> open_;
  std::function<void()> listener_;
  std::function<bool()> stop_;
  bool free_ = false;
  bool step_unreported_ = false;
  std::vector<std::string> failures_;
  std::vector<CString> overwrite_questions_;
  std::map<int, CancelPoint> cancel_points_;
  std::deque<ProgressRecord> progress_;  // windows refer to their record
  std::vector<MessageBoxRequest> messages_;
  std::vector<MessageAnswer> answers_;
  std::vector<FileDialogRequest> file_dialogs_;
  int wait_cursor_depth_ = 0;
  int wait_cursor_count_ = 0;
};

}  // namespace loom
