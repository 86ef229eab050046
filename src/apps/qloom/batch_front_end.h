#pragma once

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "apps/qloom/command_line.h"
#include "apps/qloom/json_streams.h"
#include "apps/qloom/window_steps.h"
#include "platform/interrupt.h"
#include "platform/ui/front_end.h"
#include "resources/handset_type_templates.h"

namespace loom {

// Answers given on the command line, before anything asks.
struct BatchAnswers {
  std::vector<CString> files = {};  // for the first file dialog that no step opens
  bool ends_at_interrupt = false;   // then nothing more is done in windows
  // By the template of the window, of a sheet that of its first page; any other window is cancelled. The question for
  // the handset is confirmed as it stands.
  std::map<int, std::vector<WindowPage>> windows{{kDialogHandsetType, {{kDialogHandsetType, {{kIdOk, act::Press()}}}}}};

  // The pages of a window in the order in which they come; none: nothing is answered.
  BatchAnswers& Fill(std::vector<WindowPage> pages) {
    if (!pages.empty()) windows[pages.front().id] = std::move(pages);
    return *this;
  }
};

struct MessageShown {
  MessageBoxRequest request;
  MessageAnswer answer;
};

// The person in front of `qloom`: fills dialogs from the command line, remembers messages, draws the progress.
class BatchFrontEnd : public FrontEnd {
 public:
  // `bar`: a progress bar on stderr.
  BatchFrontEnd(BatchAnswers answers, const CommonOptions& options, bool bar)
      : answers_(std::move(answers)), options_(options), bar_(bar) {}

  void ShowDialog(CDialog& dialog) override;
  void ShowSheet(CPropertySheet& sheet) override;
  MessageAnswer ShowMessage(const MessageBoxRequest& request) override;
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) override;
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest& request) override;
  void SetWaitCursor(bool) override {}

  // A file that is there is replaced only with --yes; that it stays is said.
  bool MayReplace(const CString& file) const;
  const std::vector<MessageShown>& messages() const { return messages_; }
  DialogOutcome Outcome() const { return outcome_; }          // of the dialog that closed last
  const CString& PickedFile() const { return picked_file_; }  // in a file dialog last, with its extension

 private:
  bool Play(CDialog& window, const std::vector<WindowStep>& steps);
  bool Perform(CDialog& window, const WindowStep& step);
  const std::vector<WindowStep>* StepsFor(const CDialog& dialog);
  bool PassesSettings(const FileDialogRequest& request);

  BatchAnswers answers_;
  CommonOptions options_;
  bool bar_;
  // Of the step that is performed: what is left for the windows that it opens, and whether one did not take it.
  std::vector<CString> step_files_;
  const std::vector<WindowStep>* step_dialog_ = nullptr;
  bool file_stays_ = false;
  bool is_refused_ = false;
  DialogOutcome outcome_ = DialogOutcome::kNone;
  CString picked_file_;
  std::vector<MessageShown> messages_;
};

// A progress window of a program without windows: cancelled by an interrupt, and once it has come to `cancel_at`
// percent.
std::unique_ptr<ProgressView> MakeBatchProgress(const ProgressRequest& request, std::optional<int> cancel_at,
                                                bool trace, bool bar);

// What --trace-ui tells, one JSON object a line on stderr.
void TraceUi(const Json& line);
void TraceWindow(const CDialog& dialog, const CString& title);
void TraceFileDialog(const FileDialogRequest& request);
void TraceMessage(const MessageBoxRequest& request, MessageAnswer answer);

// From now on Ctrl-C interrupts (platform/interrupt.h).
void CatchInterrupts();

}  // namespace loom
