#include "apps/qloom/batch_front_end.h"

#include <csignal>
#include <cstdio>
#include <iostream>
#include <utility>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/ui/dialog.h"
#include "platform/ui/property_sheet.h"
#include "resources/handset_type_templates.h"
#include "resources/parameter_picker_templates.h"
#include "resources/text_export_templates.h"

namespace loom {
namespace {

class BatchProgress : public ProgressView {
 public:
  BatchProgress(const ProgressRequest& request, std::optional<int> cancel_at, bool trace, bool bar)
      : can_cancel_(request.can_cancel), cancel_at_(cancel_at), trace_(trace), bar_(bar) {
    if (trace_) TraceUi({{"progress", "open"}, {"title", JsonText(request.title)}, {"can_cancel", can_cancel_}});
  }
  ~BatchProgress() override {
    if (bar_ && drawn_) std::fputs("\r\033[K", stderr);
    if (trace_) TraceUi({{"progress", "close"}});
  }
  void SetText(const CString& text) override {
    text_ = GbkNameToNative(text);
    if (trace_) TraceUi({{"progress", "text"}, {"text", JsonText(text)}});
  }
  void SetRange(int lowest, int highest) override {
    lowest_ = lowest;
    highest_ = highest;
    if (trace_) TraceUi({{"progress", "range"}, {"range", {lowest, highest}}});
  }
  void SetPos(int position) override {
    position_ = position;
    if (trace_) TraceUi({{"progress", "position"}, {"position", position}});
    if (bar_) Draw();
  }
  void Pump() override {}
  bool Cancelled() const override {
    return can_cancel_ && (WasInterrupted() || (cancel_at_ && Percent() >= *cancel_at_));
  }

 private:
  int Percent() const { return (position_ - lowest_) * 100 / (highest_ > lowest_ ? highest_ - lowest_ : 1); }
  void Draw() {
    constexpr int kWidth = 30;
    const int filled = Percent() * kWidth / 100;
    std::string line = "\r" + text_ + " [";
    for (int at = 0; at < kWidth; ++at) line += at < filled ? '#' : ' ';
    line += "] " + std::to_string(Percent()) + " %\033[K";
    std::fputs(line.c_str(), stderr);
    drawn_ = true;
  }

  bool can_cancel_;
  std::optional<int> cancel_at_;
  bool trace_;
  bool bar_;
  bool drawn_ = false;
  std::string text_;
  int lowest_ = 0;
  int highest_ = 100;
  int position_ = 0;
};

void AnswerHandsetQuestion(CDialog& dialog, const BatchAnswers& answers) {
  if (answers.handset) dialog.GetDlgItem<CComboBox>(kComboHandsetType).UserChoose(*answers.handset);
  const auto set = [&](int id, std::optional<bool> ticked) {
    if (ticked) dialog.GetDlgItem<CButton>(id).UserCheck(*ticked ? 1 : 0);
  };
  set(kCheckKeepForThisLog, answers.keep_for_log);
  set(kCheckKeepForAllLogs, answers.keep_for_all);
  dialog.UserPress(kIdOk);
}

}  // namespace

void TraceUi(const Json& line) { std::cerr << line.dump() << '\n'; }

void TraceWindow(const CDialog& dialog, const CString& title) {
  TraceUi({{"window", dialog.GetTemplate().id}, {"title", JsonText(title)}});
}

void TraceFileDialog(const FileDialogRequest& request) {
  TraceUi({{"window", "files"}, {"title", JsonText(request.title)}});
}

void TraceMessage(const MessageBoxRequest& request, MessageAnswer answer) {
  TraceUi({{"message", JsonText(request.text)},
           {"icon", MessageIconName(request.icon)},
           {"answer", MessageAnswerName(answer)}});
}

std::unique_ptr<ProgressView> MakeBatchProgress(const ProgressRequest& request, std::optional<int> cancel_at,
                                                bool trace, bool bar) {
  return std::make_unique<BatchProgress>(request, cancel_at, trace, bar);
}

void CatchInterrupts() {
  struct sigaction action = {};
  action.sa_handler = [](int) { Interrupt(); };
  action.sa_flags = SA_RESETHAND | SA_RESTART;  // a second interrupt ends the program at once
  sigaction(SIGINT, &action, nullptr);
}

BatchFrontEnd::BatchFrontEnd(BatchAnswers answers, bool trace, bool bar)
    : answers_(std::move(answers)), trace_(trace), bar_(bar) {
  if (answers_.text_export) text_export_.emplace(*answers_.text_export);
}

void BatchFrontEnd::ShowDialog(CDialog& dialog) {
  if (trace_) TraceWindow(dialog, dialog.GetTitle());
  if (dialog.GetTemplate().id == kDialogHandsetType) return AnswerHandsetQuestion(dialog, answers_);
  if (const auto fill = answers_.dialogs.find(dialog.GetTemplate().id); fill != answers_.dialogs.end())
    return fill->second(dialog, *this);
  if (dialog.GetTemplate().id == kDialogParam && text_import_user_) return text_import_user_->ChooseParameter(dialog);
  if (dialog.GetTemplate().id == kDialogExportLimits && text_export_) return text_export_->FillLimits(dialog);
  Log(LogLevel::kWarning, "no answer for this dialog, it is cancelled: " + GbkNameToUtf8(dialog.GetTitle()));
  dialog.UserClose();
}

void BatchFrontEnd::ShowSheet(CPropertySheet& sheet) {
  if (trace_) TraceWindow(*sheet.GetActivePage(), sheet.GetTitle());
  if (answers_.text_import && TextImportWizardUser::IsWizard(sheet)) return FillTextImport(sheet);
  const auto pick_file = [this](const CString& path) { sheet_file_ = path; };
  if (text_export_ && TextExportWizardUser::IsTextExportWizard(sheet)) return text_export_->Fill(sheet, pick_file);
  const auto fill = answers_.sheets.find(sheet.GetPage(0).GetTemplate().id);
  if (fill != answers_.sheets.end()) return fill->second(sheet);
  if (!answers_.import_sheet || !IsImportSheet(sheet)) return FrontEnd::ShowSheet(sheet);
  sheet_refused_ = !FillImportSheet(sheet, *answers_.import_sheet, pick_file);
}

void BatchFrontEnd::FillTextImport(CPropertySheet& wizard) {
  const auto newest_message = [this] { return messages_.empty() ? CString() : messages_.back().request.text; };
  text_import_user_.emplace(
      *answers_.text_import, [this](const CString& path) { sheet_file_ = path; }, newest_message);
  text_import_user_->Fill(wizard);
  text_import_user_.reset();
}

MessageAnswer BatchFrontEnd::ShowMessage(const MessageBoxRequest& request) {
  const MessageAnswer answer = answers_.yes ? AgreeingAnswer(request.buttons) : DecliningAnswer(request.buttons);
  messages_.push_back({request, answer});
  if (trace_) TraceMessage(request, answer);
  return answer;
}

bool BatchFrontEnd::MayReplace(const CString& file) const {
  if (answers_.yes || !FileExists(file)) return true;
  Log(LogLevel::kWarning, "the file stays as it is: " + GbkNameToUtf8(file));
  return false;
}

std::optional<std::vector<CString>> BatchFrontEnd::PickUnlessKept(const FileDialogRequest& request,
                                                                  std::vector<CString> files) const {
  const CString question = OverwriteQuestion(request, files);
  if (question.IsEmpty() || MayReplace(CompletedPath(request, files.front()))) return files;
  return std::nullopt;
}

// Opens the settings sheet where answers for it are given; false when it did not accept them.
bool BatchFrontEnd::PassesSettings(const FileDialogRequest& request) {
  if (!request.extra_button || !answers_.import_sheet) return true;
  request.extra_button->pressed();
  return !sheet_refused_;
}

std::optional<std::vector<CString>> BatchFrontEnd::ShowFileDialog(const FileDialogRequest& request) {
  if (trace_) TraceFileDialog(request);
  if (sheet_file_) return PickUnlessKept(request, {*std::exchange(sheet_file_, std::nullopt)});
  if (answers_.files.empty() || !PassesSettings(request)) return std::nullopt;
  return PickUnlessKept(request, std::exchange(answers_.files, {}));
}

std::unique_ptr<ProgressView> BatchFrontEnd::ShowProgress(const ProgressRequest& request) {
  return MakeBatchProgress(request, answers_.cancel_at, trace_, bar_);
}

}  // namespace loom
