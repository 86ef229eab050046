#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/qloom/import_sheet.h"
#include "apps/qloom/json_streams.h"
#include "apps/qloom/text_export_wizard.h"
#include "apps/qloom/text_import_wizard.h"
#include "platform/interrupt.h"
#include "platform/ui/front_end.h"

namespace loom {

class BatchFrontEnd;

// Answers given on the command line, before anything asks.
struct BatchAnswers {
  bool yes = true;                   // to every question
  std::optional<int> cancel_at;      // presses cancel once the progress reaches this position
  std::vector<CString> files;        // for the next file dialog
  std::optional<CString> handset;    // entry of the handset list; none: the question is confirmed as it stands
  std::optional<bool> keep_for_log;  // the two check boxes of the handset question
  std::optional<bool> keep_for_all;
  std::optional<ImportSheetAnswers> import_sheet;  // none: the settings sheet stays closed
  // By template: fills a dialog and presses its buttons.
  std::map<int, std::function<void(CDialog&, BatchFrontEnd&)>> dialogs;
  std::optional<TextImportAnswers> text_import;  // none: the text import wizard is cancelled
  std::optional<TextExportAnswers> text_export;  // none: the wizard is cancelled
  // By template of the first page: the same for a sheet.
  std::map<int, std::function<void(CPropertySheet&)>> sheets;
};

struct MessageShown {
  MessageBoxRequest request;
  MessageAnswer answer;
};

// The person in front of `qloom`: fills dialogs from the command line, remembers messages, draws the progress.
class BatchFrontEnd : public FrontEnd {
 public:
  // `trace`: every window, progress call and message as a JSON line on stderr. `bar`: a progress bar on stderr.
  BatchFrontEnd(BatchAnswers answers, bool trace, bool bar);

  void ShowDialog(CDialog& dialog) override;
  void ShowSheet(CPropertySheet& sheet) override;
  MessageAnswer ShowMessage(const MessageBoxRequest& request) override;
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) override;
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest& request) override;
  void SetWaitCursor(bool) override {}

  // What the next file dialog is answered with; none: it is cancelled.
  void SetFiles(std::vector<CString> files) { answers_.files = std::move(files); }
  // A file that is there is replaced only with --yes; that it stays is said.
  bool MayReplace(const CString& file) const;
  const std::vector<MessageShown>& messages() const { return messages_; }
  const CString& TextExportFile() const { return text_export_->WrittenFile(); }  // of an export that was answered

 private:
  std::optional<std::vector<CString>> PickUnlessKept(const FileDialogRequest& request,
                                                     std::vector<CString> files) const;
  bool PassesSettings(const FileDialogRequest& request);
  void FillTextImport(CPropertySheet& wizard);

  BatchAnswers answers_;
  bool trace_;
  bool bar_;
  std::optional<TextExportWizardUser> text_export_;
  std::optional<CString> sheet_file_;  // for the next file dialog that a sheet opens
  bool sheet_refused_ = false;
  std::optional<TextImportWizardUser> text_import_user_;  // while the wizard is open
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
