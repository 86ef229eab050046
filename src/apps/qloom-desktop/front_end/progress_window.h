#pragma once

#include <QDialog>
#include <QElapsedTimer>

#include "platform/ui/front_end.h"

class QLabel;
class QProgressBar;
class QPushButton;

namespace loom {

// The progress of work on the calling thread.
class ProgressWindow final : public ProgressView {
 public:
  ProgressWindow(const ProgressRequest& request, QWidget* parent);
  ~ProgressWindow() override;

  void SetText(const CString& text) override;
  void SetRange(int lowest, int highest) override;
  void SetPos(int position) override;
  void Pump() override;  // at most some fifty times a second, however often it is called
  bool Cancelled() const override { return cancelled_; }

 private:
  class Window;
  void Cancel();

  bool cancelled_ = false;
  Window* window_;
  QLabel* text_;
  QProgressBar* bar_;
  QPushButton* cancel_ = nullptr;
  QElapsedTimer since_pump_;
};

}  // namespace loom
