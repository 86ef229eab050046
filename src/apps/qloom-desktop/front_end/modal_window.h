#pragma once

#include <QDialog>
#include <deque>
#include <exception>
#include <functional>

#include "apps/qloom-desktop/front_end/dialog_pane.h"

namespace loom {

// A window over one dialog or sheet. What a handler throws ends it and comes out of RunModal.
class ModalWindow : public QDialog, public ActionRunner {
 public:
  explicit ModalWindow(QWidget* parent);

  // Returns when the model no longer runs.
  void RunModal();
  // Shows what the model holds.
  void Refresh();
  virtual bool Shows(const CDialog& dialog) const = 0;

  void Run(const std::function<void()>& action) override;
  void RunLater(std::function<void()> action) override;
  bool IsRefreshing() const override { return refreshing_; }

  void reject() override;  // Escape and the close button

 protected:
  virtual bool IsRunning() const = 0;
  virtual void UserClose() = 0;
  virtual void ShowModel() = 0;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void RunPosted();
  void EndIfDone();

  std::deque<std::function<void()>> posted_;
  std::exception_ptr failure_;
  bool refreshing_ = false;
  bool acting_ = false;
};

class CPropertySheet;

class DialogWindow final : public ModalWindow {
 public:
  DialogWindow(CDialog& dialog, QWidget* parent);
  bool Shows(const CDialog& dialog) const override { return &dialog == &dialog_; }

 private:
  bool IsRunning() const override { return dialog_.IsRunning(); }
  void UserClose() override { dialog_.UserClose(); }
  void ShowModel() override;

  CDialog& dialog_;
  DialogPane* pane_;
};

}  // namespace loom
