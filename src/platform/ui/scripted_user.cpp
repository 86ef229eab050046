#include "platform/ui/scripted_user.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/encoding.h"
#include "platform/log.h"
#include "platform/ui/property_sheet.h"

namespace loom {
namespace {

ScriptedUser::FailureHandler& CurrentHandler() {
  static ScriptedUser::FailureHandler handler;
  return handler;
}

std::string Quoted(const CString& text) { return "'" + GbkToUtf8(text) + "'"; }

}  // namespace

// A progress window that writes down what it is told.
class ScriptedUser::Progress : public ProgressView {
 public:
  Progress(ProgressRecord& record, CancelPoint cancel_at) : record_(record), cancel_at_(cancel_at) {}
  ~Progress() override { record_.closed = true; }

  void SetText(const CString& text) override { record_.texts.push_back(text); }
  void SetRange(int lowest, int highest) override {
    record_.lowest = lowest;
    record_.highest = highest;
  }
  void SetPos(int position) override {
    record_.positions.push_back(position);
    CancelWhen(cancel_at_.position && position >= *cancel_at_.position);
  }
  void Pump() override {
    ++record_.pumps;
    CancelWhen(cancel_at_.pumps && record_.pumps >= *cancel_at_.pumps);
  }
  bool Cancelled() const override { return record_.cancelled; }

 private:
  void CancelWhen(bool reached) { record_.cancelled |= reached && record_.can_cancel; }

  ProgressRecord& record_;
  CancelPoint cancel_at_;
};

// A window that stands in the list of open windows for its lifetime.
class ScriptedUser::Standing {
 public:
  Standing(ScriptedUser& user, OpenWindow window) : user_(user) { user_.open_.push_back(std::move(window)); }
  Standing(const Standing&) = delete;
  Standing& operator=(const Standing&) = delete;
  ~Standing() { user_.open_.pop_back(); }

 private:
  ScriptedUser& user_;
};

ScriptedUser::FailureHandler ScriptedUser::SetFailureHandler(FailureHandler handler) {
  return std::exchange(CurrentHandler(), std::move(handler));
}

ScriptedUser::ScriptedUser() : previous_(SetFrontEnd(this)) {}

ScriptedUser::~ScriptedUser() {
  SetFrontEnd(previous_);
  try {
    Finish();
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
  }
}

void ScriptedUser::Finish() {
  Report();
  const std::string next = NextStepText();
  const std::size_t count = std::exchange(steps_, {}).size();
  if (count > 0 && !IsStopped()) Fail(std::to_string(count) + " steps are left over, the first: " + next);
  for (const auto& [window, point] : std::exchange(cancel_points_, {})) {
    if (window >= static_cast<int>(progress_.size()) || !progress_[static_cast<std::size_t>(window)].cancelled)
      Fail("progress window " + std::to_string(window) + " was not cancelled: it did not come that far");
  }
}

ScriptedUser& ScriptedUser::CancelProgressAt(int position, int window) {
  cancel_points_[window].position = position;
  return *this;
}

ScriptedUser& ScriptedUser::CancelProgressAtPump(int pumps, int window) {
  cancel_points_[window].pumps = pumps;
  return *this;
}

void ScriptedUser::Fail(const std::string& utf8) {
  failures_.push_back(utf8);
  if (!CurrentHandler()) throw std::runtime_error(utf8);
  CurrentHandler()(utf8);
}

std::string ScriptedUser::NextStepText() const { return steps_.empty() ? "the end" : steps_.front().description; }

std::optional<ScriptedUser::Step> ScriptedUser::TakeIf(StepKind kind) {
  if (steps_.empty() || steps_.front().kind != kind) return std::nullopt;
  if ((free_ && !failures_.empty()) || IsStopped()) return std::nullopt;
  Step step = std::move(steps_.front());
  steps_.pop_front();
  step_unreported_ = true;
  return step;
}

std::optional<ScriptedUser::Step> ScriptedUser::TakePreset(StepKind kind) {
  const auto found =
      std::find_if(presets_.begin(), presets_.end(), [=](const Step& step) { return step.kind == kind; });
  if (found == presets_.end()) return TakeIf(kind);
  Step step = std::move(*found);
  presets_.erase(found);
  return step;
}

void ScriptedUser::Report() {
  if (std::exchange(step_unreported_, false) && listener_) listener_();
}

std::optional<WindowState> ScriptedUser::FrontState() const {
  for (auto window = open_.rbegin(); window != open_.rend() && !window->files; ++window) {
    if (const CDialog* const dialog = window->dialog()) return StateOf(*dialog);
  }
  return std::nullopt;
}

const FileDialogRequest* ScriptedUser::FrontFileDialog() const {
  for (auto window = open_.rbegin(); window != open_.rend(); ++window) {
    if (window->files || window->dialog()) return window->files;
  }
  return nullptr;
}

void ScriptedUser::Act(CDialog& dialog, const Step& step) {
  try {
    step.action(dialog);
  } catch (const UiRefused& refusal) {
    Fail("step '" + step.description + "': " + refusal.what());
  }
}

// False when the next step is not for the window in front.
bool ScriptedUser::PlayStep(const DialogInFront& front) {
  if (const auto step = TakeIf(StepKind::kAction)) {
    Act(*front(), *step);
    return true;
  }
  if (!free_) return false;
  for (const StepKind kind : {StepKind::kMessage, StepKind::kFiles, StepKind::kFileButton}) {
    if (auto step = TakeIf(kind)) {
      presets_.push_back(std::move(*step));
      return true;
    }
  }
  return false;
}

void ScriptedUser::Play(const CDialog& first, const CString& title, const DialogInFront& front) {
  const int id = first.GetTemplate().id;
  const std::string name = "dialog " + std::to_string(id) + " " + Quoted(title);
  const bool is_expected = !steps_.empty() && steps_.front().kind == StepKind::kDialog && steps_.front().id == id;
  if (!is_expected && !free_) return Fail("unexpected " + name + ", next in the script: " + NextStepText());
  if (is_expected) steps_.pop_front();
  const Standing standing(*this, {.dialog = front});
  Report();
  while (front()) {
    if (!PlayStep(front)) {
      if (!free_) Fail(name + " is left open, next in the script: " + NextStepText());
      return;
    }
    if (front()) Report();
  }
}

void ScriptedUser::ShowDialog(CDialog& dialog) {
  Play(dialog, dialog.GetTitle(), [&dialog] { return dialog.IsRunning() ? &dialog : nullptr; });
  dialog.EndDialog(kIdCancel);
}

void ScriptedUser::ShowSheet(CPropertySheet& sheet) {
  Play(*sheet.GetActivePage(), sheet.GetTitle(),
       [&sheet] { return sheet.IsRunning() ? sheet.GetActivePage() : nullptr; });
  sheet.EndDialog(kIdCancel);
}

MessageAnswer ScriptedUser::AnswerTo(const MessageBoxRequest& request, const Step& step, const std::string& came) {
  const MessageAnswer answer = step.answer.value_or(AgreeingAnswer(request.buttons));
  if (Offers(request.buttons, answer)) return answer;
  Fail(came + " does not offer the answer " + MessageAnswerName(answer));
  return DecliningAnswer(request.buttons);
}

// What the last step did is reported with the answer, the answer's own step with what comes of it.
MessageAnswer ScriptedUser::AnswerFreely(const MessageBoxRequest& request, const std::string& came) {
  const bool unreported = std::exchange(step_unreported_, false);
  const auto step = TakePreset(StepKind::kMessage);
  const bool took_step = std::exchange(step_unreported_, unreported);
  answers_.push_back(AnswerTo(request, step.value_or(Step{.kind = StepKind::kMessage, .description = {}}), came));
  Report();
  step_unreported_ = took_step;
  return answers_.back();
}

MessageAnswer ScriptedUser::AnswerAsScripted(const MessageBoxRequest& request, const std::string& came) {
  Report();
  const bool is_expected = !steps_.empty() && steps_.front().kind == StepKind::kMessage &&
                           (steps_.front().any_message || steps_.front().text == request.text) &&
                           steps_.front().icon.value_or(request.icon) == request.icon;
  if (is_expected) return answers_.emplace_back(AnswerTo(request, *TakeIf(StepKind::kMessage), came));
  answers_.push_back(DecliningAnswer(request.buttons));
  Fail("unexpected " + came + ", next in the script: " + NextStepText());
  return answers_.back();
}

MessageAnswer ScriptedUser::ShowMessage(const MessageBoxRequest& request) {
  messages_.push_back(request);
  const std::string came = "message " + Quoted(request.text) + " (" + MessageIconName(request.icon) + ", " +
                           MessageButtonsName(request.buttons) + ")";
  return free_ ? AnswerFreely(request, came) : AnswerAsScripted(request, came);
}

void ScriptedUser::PressExtraButton(const FileDialogRequest& request, int id) {
  if (!request.extra_button || request.extra_button->id != id)
    return Fail("file dialog " + Quoted(request.title) + " has no button " + std::to_string(id));
  request.extra_button->pressed();
  Report();
}

bool ScriptedUser::MayOverwrite(const FileDialogRequest& request, const Step& step) {
  const CString question = OverwriteQuestion(request, *step.paths);
  if (!question.IsEmpty()) overwrite_questions_.push_back(question);
  return question.IsEmpty() || step.overwrite;
}

std::optional<std::vector<CString>> ScriptedUser::ShowFileDialog(const FileDialogRequest& request) {
  file_dialogs_.push_back(request);
  const Standing standing(*this, {.files = &request});
  Report();
  for (;;) {
    while (const auto step = TakePreset(StepKind::kFileButton)) PressExtraButton(request, step->id);
    const auto step = TakePreset(StepKind::kFiles);
    if (!step) {
      if (!free_) Fail("unexpected file dialog " + Quoted(request.title) + ", next in the script: " + NextStepText());
      return std::nullopt;
    }
    if (!step->paths) return std::nullopt;
    const std::string objection = ObjectionTo(request, *step->paths);
    if (!objection.empty()) {
      Fail("file dialog " + Quoted(request.title) + " refuses: " + objection);
      return std::nullopt;
    }
    if (MayOverwrite(request, *step)) return step->paths;
    Report();
  }
}

std::unique_ptr<ProgressView> ScriptedUser::ShowProgress(const ProgressRequest& request) {
  const auto point = cancel_points_.find(static_cast<int>(progress_.size()));
  progress_.push_back({.title = request.title, .can_cancel = request.can_cancel});
  return std::make_unique<Progress>(progress_.back(), point == cancel_points_.end() ? CancelPoint{} : point->second);
}

void ScriptedUser::SetWaitCursor(bool on) {
  wait_cursor_depth_ += on ? 1 : -1;
  wait_cursor_count_ += on ? 1 : 0;
}

}  // namespace loom
