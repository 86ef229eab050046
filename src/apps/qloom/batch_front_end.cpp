#include "apps/qloom/batch_front_end.h"

#include <csignal>
#include <cstdio>
#include <iostream>
#include <utility>

#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/ui/dialog.h"
#include "platform/ui/property_sheet.h"
#include "resources/log_import_templates.h"

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

// False when a window did not take the step, which a message has said.
bool BatchFrontEnd::Perform(CDialog& window, const WindowStep& step) {
  if (!step.action || (step.unless && step.unless(window))) return true;
  const auto refuse = [&](const std::string& otherwise) {
    throw Error(step.refusal ? step.refusal.In(window) : otherwise);
  };
  step_files_ = step.files;
  step_dialog_ = step.then.empty() ? nullptr : &step.then;
  file_stays_ = is_refused_ = false;
  try {
    step.action.perform(window, step.control);
  } catch (const UiRefused& refusal) {
    refuse(refusal.what());
  }
  step_files_.clear();
  const bool is_open = std::exchange(step_dialog_, nullptr) == nullptr;
  const bool is_done = window.GetOutcome() != DialogOutcome::kNotDone && (!file_stays_ || step.goes_on_without_file);
  if (step.refusal && !(is_open && is_done)) refuse({});
  return is_done && !is_refused_;
}

// Up to the step that closes the window or leads to another page.
bool BatchFrontEnd::Play(CDialog& window, const std::vector<WindowStep>& steps) {
  for (const WindowStep& step : steps) {
    if (!window.IsReachable() || (answers_.ends_at_interrupt && WasInterrupted()) || !Perform(window, step))
      return false;
  }
  return true;
}

// False for a dialog that nothing is known of.
const std::vector<WindowStep>* BatchFrontEnd::StepsFor(const CDialog& dialog) {
  if (step_dialog_ != nullptr) return std::exchange(step_dialog_, nullptr);
  const auto known = answers_.windows.find(dialog.GetTemplate().id);
  return known == answers_.windows.end() ? nullptr : &known->second.front().steps;
}

void BatchFrontEnd::ShowDialog(CDialog& dialog) {
  if (options_.trace_ui) TraceWindow(dialog, dialog.GetTitle());
  const std::vector<WindowStep>* const steps = StepsFor(dialog);
  if (steps != nullptr)
    Play(dialog, *steps);
  else
    Log(LogLevel::kWarning, "no answer for this dialog, it is cancelled: " + GbkNameToUtf8(dialog.GetTitle()));
  outcome_ = dialog.GetOutcome();
  is_refused_ = dialog.IsRunning();
  if (is_refused_) dialog.UserClose();
}

void BatchFrontEnd::ShowSheet(CPropertySheet& sheet) {
  if (options_.trace_ui) TraceWindow(*sheet.GetActivePage(), sheet.GetTitle());
  const auto known = answers_.windows.find(sheet.GetPage(0).GetTemplate().id);
  if (known == answers_.windows.end()) return FrontEnd::ShowSheet(sheet);
  for (const WindowPage& page : known->second) {
    CPropertyPage& front = *sheet.GetActivePage();
    if (front.GetTemplate().id != page.id || !Play(front, page.steps) || !sheet.IsRunning()) break;
  }
  is_refused_ = sheet.IsRunning();
  if (is_refused_) sheet.UserClose();
}

MessageAnswer BatchFrontEnd::ShowMessage(const MessageBoxRequest& request) {
  const MessageAnswer answer = options_.no ? DecliningAnswer(request.buttons) : AgreeingAnswer(request.buttons);
  messages_.push_back({request, answer});
  if (options_.trace_ui) TraceMessage(request, answer);
  return answer;
}

bool BatchFrontEnd::MayReplace(const CString& file) const {
  if (!options_.no || !FileExists(file)) return true;
  Log(LogLevel::kWarning, "the file stays as it is: " + GbkNameToUtf8(file));
  return false;
}

// Opens the settings sheet where answers for it are given; false when it did not accept them.
bool BatchFrontEnd::PassesSettings(const FileDialogRequest& request) {
  if (!request.extra_button || !answers_.windows.contains(kDialogSelImport)) return true;
  request.extra_button->pressed();
  return !is_refused_;
}

std::optional<std::vector<CString>> BatchFrontEnd::ShowFileDialog(const FileDialogRequest& request) {
  if (options_.trace_ui) TraceFileDialog(request);
  const bool is_of_step = !step_files_.empty();
  if (!is_of_step && (answers_.files.empty() || !PassesSettings(request))) return std::nullopt;
  std::vector<CString> files = std::exchange(is_of_step ? step_files_ : answers_.files, {});
  const CString picked = CompletedPath(request, files.front());
  file_stays_ = !OverwriteQuestion(request, files).IsEmpty() && !MayReplace(picked);
  if (file_stays_) return std::nullopt;
  picked_file_ = picked;
  return files;
}

std::unique_ptr<ProgressView> BatchFrontEnd::ShowProgress(const ProgressRequest& request) {
  return MakeBatchProgress(request, options_.cancel_at, options_.trace_ui, bar_);
}

}  // namespace loom
