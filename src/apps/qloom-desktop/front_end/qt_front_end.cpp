#include "apps/qloom-desktop/front_end/qt_front_end.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "apps/qloom-desktop/front_end/qt_file_dialog.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/sheet_window.h"
#include "apps/qloom-desktop/front_end/ui_language.h"
#include "platform/ui/message_box.h"

namespace loom {
namespace {

// A window that stands in a list of open windows as long as it is shown.
class Standing {
 public:
  Standing(std::vector<QWidget*>& open, QWidget& window) : open_(open) { open_.push_back(&window); }
  Standing(const Standing&) = delete;
  Standing& operator=(const Standing&) = delete;
  ~Standing() { open_.pop_back(); }

 private:
  std::vector<QWidget*>& open_;
};

QMessageBox::Icon IconOf(MessageIcon icon) {
  constexpr QMessageBox::Icon kIcons[] = {QMessageBox::NoIcon, QMessageBox::Information, QMessageBox::Warning,
                                          QMessageBox::Critical, QMessageBox::Question};
  return kIcons[static_cast<std::size_t>(icon)];
}

QPushButton* AddButton(QMessageBox& box, MessageAnswer answer) {
  constexpr ShellText kTexts[] = {standard::kOk, standard::kCancel, standard::kYes, standard::kNo};
  constexpr QMessageBox::ButtonRole kRoles[] = {QMessageBox::AcceptRole, QMessageBox::RejectRole, QMessageBox::YesRole,
                                                QMessageBox::NoRole};
  const auto at = static_cast<std::size_t>(answer);
  QPushButton* const button = box.addButton(Text(kTexts[at]), kRoles[at]);
  button->setObjectName(QStringLiteral("button_%1").arg(QString::fromLatin1(MessageAnswerName(answer))));
  return button;
}

}  // namespace

// A person who is asked something sees an ordinary pointer.
class QtFrontEnd::SuspendWaitCursor {
 public:
  SuspendWaitCursor() : suspended_(QApplication::overrideCursor() != nullptr) {
    if (suspended_) QApplication::setOverrideCursor(Qt::ArrowCursor);
  }
  SuspendWaitCursor(const SuspendWaitCursor&) = delete;
  SuspendWaitCursor& operator=(const SuspendWaitCursor&) = delete;
  ~SuspendWaitCursor() {
    if (suspended_) QApplication::restoreOverrideCursor();
  }

 private:
  bool suspended_;
};

QtFrontEnd::QtFrontEnd() : previous_(SetFrontEnd(this)), watched_before_(SetWorkWatch(this)) {}

QtFrontEnd::~QtFrontEnd() {
  SetWorkWatch(watched_before_);
  SetFrontEnd(previous_);
}

void QtFrontEnd::EndWork() {
  work_window_.reset();
  work_since_.invalidate();
}

// Work that was not heard of for a while was another one.
void QtFrontEnd::Look(std::uint64_t done, std::uint64_t whole) {
  constexpr int kBetweenLooksMs = 50;
  constexpr int kOtherWorkMs = 2000;
  if (last_look_.isValid() && last_look_.elapsed() < kBetweenLooksMs) return;
  const bool is_new = !work_since_.isValid() || last_look_.elapsed() > kOtherWorkMs;
  last_look_.restart();
  if (is_new && !work_window_) work_since_.restart();
  if (!work_window_) {
    if (work_since_.elapsed() < work_delay_ms_ || ProgressWindow::OpenCount() > 0 || main_window_ == nullptr) return;
    work_window_ =
        std::make_unique<ProgressWindow>(ProgressRequest{.title = FromQt(Text(standard::kWorking))}, Owner());
  }
  work_window_->SetRange(0, whole > 0 ? 1000 : 0);
  if (whole > 0) work_window_->SetPos(static_cast<int>(std::min<std::uint64_t>(1000, done * 1000 / whole)));
  work_window_->Pump();
  if (!work_window_->Cancelled()) return;
  EndWork();
  throw Interrupted();
}

QWidget* QtFrontEnd::Owner(const CDialog* dialog) const {
  for (QWidget* const window : open_) {
    const auto* const modal = dynamic_cast<const ModalWindow*>(window);
    if (dialog && modal && modal->Shows(*dialog)) return window;
  }
  return open_.empty() ? main_window_.data() : open_.back();
}

void QtFrontEnd::RefreshOpenWindows() {
  EndWork();
  for (QWidget* const window : open_) {
    if (auto* const modal = dynamic_cast<ModalWindow*>(window)) modal->Refresh();
  }
}

void QtFrontEnd::RunWindow(ModalWindow& window) {
  RefreshOpenWindows();
  const Standing standing(open_, window);
  const SuspendWaitCursor pointer;
  window.RunModal();
}

void QtFrontEnd::ShowDialog(CDialog& dialog) {
  DialogWindow window(dialog, Owner());
  RunWindow(window);
  dialog.EndDialog(kIdCancel);
}

void QtFrontEnd::ShowSheet(CPropertySheet& sheet) {
  SheetWindow window(sheet, Owner());
  RunWindow(window);
  sheet.EndDialog(kIdCancel);
}

MessageAnswer QtFrontEnd::ShowMessage(const MessageBoxRequest& request) {
  RefreshOpenWindows();
  QMessageBox box(Owner(request.owner));
  box.setObjectName(QStringLiteral("message"));
  box.setWindowTitle(ToQt(request.caption.IsEmpty() ? HostCaption() : request.caption));
  box.setTextFormat(Qt::PlainText);
  box.setText(TextWithNamesToQt(request.text));
  box.setIcon(IconOf(request.icon));
  const MessageAnswer agreeing = AgreeingAnswer(request.buttons);
  const MessageAnswer declining = DecliningAnswer(request.buttons);
  QPushButton* const agree = AddButton(box, agreeing);
  QPushButton* const decline = declining == agreeing ? agree : AddButton(box, declining);
  // What may be lost is lost by a choice, not by Enter.
  box.setDefaultButton(request.buttons == MessageButtons::kYesNo ? decline : agree);
  box.setEscapeButton(decline);
  const Standing standing(open_, box);
  const SuspendWaitCursor pointer;
  box.exec();
  return box.clickedButton() == agree ? agreeing : declining;
}

std::optional<std::vector<CString>> QtFrontEnd::ShowFileDialog(const FileDialogRequest& request) {
  if (const auto offered = std::exchange(offered_files_, std::nullopt)) {
    if (ObjectionTo(request, *offered).empty() && OverwriteQuestion(request, *offered).IsEmpty()) return offered;
  }
  RefreshOpenWindows();
  QtFileDialog dialog(request, Owner());
  const Standing standing(open_, dialog);
  const SuspendWaitCursor pointer;
  return dialog.Pick();
}

std::unique_ptr<ProgressView> QtFrontEnd::ShowProgress(const ProgressRequest& request) {
  RefreshOpenWindows();
  if (common_progress_ != nullptr) return std::make_unique<PartOfProgress>(*common_progress_);
  return std::make_unique<ProgressWindow>(request, Owner());
}

std::unique_ptr<CommonProgress> QtFrontEnd::ShowCommonProgress(const ProgressRequest& request) {
  RefreshOpenWindows();
  return std::make_unique<CommonProgress>(request, Owner(), common_progress_);
}

void QtFrontEnd::SetWaitCursor(bool on) {
  if (on)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

}  // namespace loom
