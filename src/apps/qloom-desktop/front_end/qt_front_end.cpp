#include "apps/qloom-desktop/front_end/qt_front_end.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "apps/qloom-desktop/front_end/progress_window.h"
#include "apps/qloom-desktop/front_end/qt_file_dialog.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/sheet_window.h"
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
  static const QString kTexts[] = {QStringLiteral("确定"), QStringLiteral("取消"), QStringLiteral("是(&Y)"),
                                   QStringLiteral("否(&N)")};
  constexpr QMessageBox::ButtonRole kRoles[] = {QMessageBox::AcceptRole, QMessageBox::RejectRole, QMessageBox::YesRole,
                                                QMessageBox::NoRole};
  const auto at = static_cast<std::size_t>(answer);
  QPushButton* const button = box.addButton(kTexts[at], kRoles[at]);
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

QtFrontEnd::QtFrontEnd() : previous_(SetFrontEnd(this)) {}

QtFrontEnd::~QtFrontEnd() { SetFrontEnd(previous_); }

QWidget* QtFrontEnd::Owner(const CDialog* dialog) const {
  for (QWidget* const window : open_) {
    const auto* const modal = dynamic_cast<const ModalWindow*>(window);
    if (dialog && modal && modal->Shows(*dialog)) return window;
  }
  return open_.empty() ? main_window_.data() : open_.back();
}

void QtFrontEnd::RefreshOpenWindows() const {
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
  box.setDefaultButton(agree);
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
  return std::make_unique<ProgressWindow>(request, Owner());
}

void QtFrontEnd::SetWaitCursor(bool on) {
  if (on)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
}

}  // namespace loom
