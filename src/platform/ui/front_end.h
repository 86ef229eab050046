#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/cstring.h"

namespace loom {

class CDialog;
class CPropertySheet;

enum class MessageIcon { kNone, kInformation, kWarning, kError, kQuestion };
enum class MessageButtons { kOk, kOkCancel, kYesNo };
enum class MessageAnswer { kOk, kCancel, kYes, kNo };

// Which page of the host's help a message belongs to.
enum class HelpContext { kNone, kIntegerRange };

struct MessageBoxRequest {
  CString text;
  CString caption;
  MessageIcon icon = MessageIcon::kNone;
  MessageButtons buttons = MessageButtons::kOk;
  const CDialog* owner = nullptr;  // null: the window in front
  HelpContext help = HelpContext::kNone;
};

const char* MessageIconName(MessageIcon icon);           // "none", "information", "warning", "error", "question"
const char* MessageButtonsName(MessageButtons buttons);  // "ok", "okcancel", "yesno"
const char* MessageAnswerName(MessageAnswer answer);     // "ok", "cancel", "yes", "no"
bool Offers(MessageButtons buttons, MessageAnswer answer);
MessageAnswer AgreeingAnswer(MessageButtons buttons);   // ok or yes
MessageAnswer DecliningAnswer(MessageButtons buttons);  // cancel or no; ok where nothing else is offered

struct FileFilter {
  CString name;
  std::vector<CString> patterns;  // "*.log"
};
// Takes apart "Log(*.log)|*.log|Text|*.txt;*.csv||".
std::vector<FileFilter> ParseFileFilters(const CString& text);

struct FileDialogRequest {
  struct ExtraButton {
    int id = 0;
    CString text;
    std::function<void()> pressed;  // runs while the file dialog stays open
  };

  bool save = false;
  CString title;  // empty: the front end's own
  std::vector<FileFilter> filters;
  CString initial_folder;
  CString initial_name;
  bool multi_select = false;
  CString default_extension;  // without a dot; empty: none
  bool must_exist = false;
  bool overwrite_prompt = false;
  std::optional<ExtraButton> extra_button;
};

// The path that a picked name stands for: a name without extension gets the default one, when opening only if there is
// no file of the bare name.
CString CompletedPath(const FileDialogRequest& request, const CString& path);
// Why the system's dialog would not close with this selection, UTF-8; empty when it would.
std::string ObjectionTo(const FileDialogRequest& request, const std::vector<CString>& paths);
// What the system's dialog asks before it closes with this selection, to be answered with yes or no; empty when
// nothing.
CString OverwriteQuestion(const FileDialogRequest& request, const std::vector<CString>& paths);
CString OverwriteQuestionFor(const CString& target);  // which is there

struct ProgressRequest {
  CString title;
  bool can_cancel = true;
};

// An open progress window; destruction closes it.
class ProgressView {
 public:
  virtual ~ProgressView() = default;
  virtual void SetText(const CString& text) = 0;
  virtual void SetRange(int lowest, int highest) = 0;
  virtual void SetPos(int position) = 0;
  virtual void Pump() = 0;  // lets the window react to the person
  virtual bool Cancelled() const = 0;
};

// Who shows windows and answers for the person in front of them. Everything is modal and on the calling thread.
class FrontEnd {
 public:
  virtual ~FrontEnd() = default;

  // Returns when the dialog no longer runs; a dialog left running is ended by the return, with kIdCancel.
  virtual void ShowDialog(CDialog& dialog) = 0;
  // The same for a property sheet: shows its active page and its own buttons. As it stands nobody is there: cancelled.
  virtual void ShowSheet(CPropertySheet& sheet);
  // Answers with one of the buttons offered.
  virtual MessageAnswer ShowMessage(const MessageBoxRequest& request) = 0;
  // The paths picked, to which nobody objects and which may be overwritten; nothing when cancelled.
  virtual std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) = 0;
  virtual std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest& request) = 0;
  virtual void SetWaitCursor(bool on) = 0;
};

// The front end in use. Without one, windows are cancelled, messages declined, and both written to the log.
FrontEnd& CurrentFrontEnd();
// Not owned. Returns what was set before; null restores the standing one.
FrontEnd* SetFrontEnd(FrontEnd* front_end);

}  // namespace loom
