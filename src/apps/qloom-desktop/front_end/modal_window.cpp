#include "apps/qloom-desktop/front_end/modal_window.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/scrolling_place.h"
#include "platform/log.h"

namespace loom {
namespace {

// Where the template marks no button, Enter presses the one that means OK.
void ChooseDefaultButton(const DialogPane& pane) {
  QPushButton* chosen = nullptr;
  for (const auto& view : pane.views()) {
    auto* const button = qobject_cast<QPushButton*>(&view->widget());
    if (!button) continue;
    const ControlTemplate& control = view->control().GetTemplate();
    if (control.control_class == ControlClass::kDefaultButton || (!chosen && control.id == kIdOk)) chosen = button;
  }
  for (const auto& view : pane.views()) {
    // Enter presses another button only while that has the focus.
    if (auto* const button = qobject_cast<QPushButton*>(&view->widget())) button->setAutoDefault(false);
  }
  if (chosen) chosen->setDefault(true);
}

}  // namespace

ModalWindow::ModalWindow(QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                          Qt::WindowCloseButtonHint) {}

void ModalWindow::RunModal() {
  Refresh();
  EndIfDone();
  if (IsRunning() && !failure_) exec();
  if (failure_) std::rethrow_exception(failure_);
}

void ModalWindow::Refresh() {
  if (refreshing_) return;
  refreshing_ = true;
  ShowModel();
  refreshing_ = false;
}

void ModalWindow::Run(const std::function<void()>& action) {
  if (acting_ || !IsRunning()) return;
  acting_ = true;
  try {
    action();
  } catch (const UiRefused& refusal) {
    // The control went away between the person's action and now.
    Log(LogLevel::kDebug, refusal.what());
  } catch (...) {
    failure_ = std::current_exception();
  }
  acting_ = false;
  if (IsRunning()) Refresh();
  EndIfDone();
  if (!posted_.empty())
    QMetaObject::invokeMethod(
        this, [this] { RunPosted(); }, Qt::QueuedConnection);
}

void ModalWindow::RunLater(std::function<void()> action) {
  posted_.push_back(std::move(action));
  QMetaObject::invokeMethod(
      this, [this] { RunPosted(); }, Qt::QueuedConnection);
}

void ModalWindow::RunPosted() {
  // While a handler has another window open, its own window waits.
  if (acting_ || posted_.empty()) return;
  const auto action = std::move(posted_.front());
  posted_.pop_front();
  Run(action);
}

void ModalWindow::EndIfDone() {
  if (!IsRunning() || failure_) QDialog::done(0);
}

void ModalWindow::reject() {
  Run([this] { UserClose(); });
}

void ModalWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  reject();
}

void ModalWindow::keyPressEvent(QKeyEvent* event) {
  const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* const button = qobject_cast<QPushButton*>(focusWidget());
  if (is_enter && button && !button->isDefault()) return button->click();
  QDialog::keyPressEvent(event);
}

DialogWindow::DialogWindow(CDialog& dialog, QWidget* parent)
    : ModalWindow(parent), dialog_(dialog), pane_(new DialogPane(dialog, *this, this)) {
  setObjectName(QStringLiteral("dialog_%1").arg(dialog.GetTemplate().id));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new ScrollingPlace(*pane_, this));
  ChooseDefaultButton(*pane_);
  FitToScreen(*this);
  if (!pane_->CanGrow()) setMaximumSize(sizeHint());
}

void DialogWindow::ShowModel() {
  setWindowTitle(ToQt(dialog_.GetTitle()));
  pane_->Refresh();
}

}  // namespace loom
