#pragma once

#include <QPointer>
#include <QWidget>
#include <optional>
#include <vector>

#include "apps/qloom-desktop/front_end/progress_window.h"
#include "platform/interrupt.h"
#include "platform/ui/front_end.h"

namespace loom {

class ModalWindow;

// Shows the windows of the model with Qt Widgets: any template, any control. It is the current front end for its
// lifetime; the application object outlives it.
class QtFrontEnd final : public FrontEnd, private WorkWatch {
 public:
  QtFrontEnd();
  QtFrontEnd(const QtFrontEnd&) = delete;
  QtFrontEnd& operator=(const QtFrontEnd&) = delete;
  ~QtFrontEnd() override;

  // The owner of windows when no other is open.
  void SetMainWindow(QWidget* window) { main_window_ = window; }
  // Answers the next file dialog, which is not shown then, unless something speaks against these files.
  void OfferFiles(std::vector<CString> paths) { offered_files_ = std::move(paths); }
  void WithdrawFiles() { offered_files_.reset(); }

  void ShowDialog(CDialog& dialog) override;
  void ShowSheet(CPropertySheet& sheet) override;
  MessageAnswer ShowMessage(const MessageBoxRequest& request) override;
  std::optional<std::vector<CString>> ShowFileDialog(const FileDialogRequest& request) override;
  std::unique_ptr<ProgressView> ShowProgress(const ProgressRequest& request) override;
  // Until it goes, the progress of every work shows in this one window.
  std::unique_ptr<CommonProgress> ShowCommonProgress(const ProgressRequest& request);
  void SetWaitCursor(bool on) override;

  // What runs without a progress window of its own gets one when it takes long, until it ends or asks something.
  void EndWork();
  void SetWorkDelay(int milliseconds) { work_delay_ms_ = milliseconds; }

 private:
  void Look(std::uint64_t done, std::uint64_t whole) override;
  class SuspendWaitCursor;
  void RunWindow(ModalWindow& window);
  QWidget* Owner(const CDialog* dialog = nullptr) const;
  void RefreshOpenWindows();

  FrontEnd* previous_;
  QPointer<QWidget> main_window_;
  std::vector<QWidget*> open_;  // the last one is in front
  std::optional<std::vector<CString>> offered_files_;
  WorkWatch* watched_before_ = nullptr;
  std::unique_ptr<ProgressWindow> work_window_;
  int work_delay_ms_ = 500;
  QElapsedTimer work_since_;
  QElapsedTimer last_look_;
  CommonProgress* common_progress_ = nullptr;  // null: each work has a window of its own
};

}  // namespace loom
