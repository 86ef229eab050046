#pragma once

#include <QDialog>
#include <QElapsedTimer>
#include <QString>

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

  void SetText(const CString& text) override { SetTexts({}, text); }
  void SetTexts(const QString& heading, const CString& text);
  void SetRange(int lowest, int highest) override;
  void SetPos(int position) override;
  void Pump() override;  // at most some fifty times a second, however often it is called
  bool Cancelled() const override { return cancelled_; }

  static int OpenCount();

 private:
  class Window;
  void Cancel();
  void StandInFrontOf(const QWidget* owner);

  bool cancelled_ = false;
  Window* window_;
  QLabel* text_;
  QProgressBar* bar_;
  QPushButton* cancel_ = nullptr;
  QElapsedTimer since_pump_;
};

// One window for several works after each other, each a part of the whole. Cancelling it cancels what runs and what
// would follow.
class CommonProgress final {
 public:
  // `current` is this one until it goes.
  CommonProgress(const ProgressRequest& request, QWidget* parent, CommonProgress*& current);
  CommonProgress(const CommonProgress&) = delete;
  CommonProgress& operator=(const CommonProgress&) = delete;
  ~CommonProgress() { current_ = nullptr; }

  // The next work, counted from 1.
  void Begin(int part, int parts);
  bool Cancelled() const { return window_.Cancelled(); }

 private:
  friend class PartOfProgress;
  ProgressWindow window_;
  CommonProgress*& current_;
  QString heading_;
};

class PartOfProgress final : public ProgressView {
 public:
  explicit PartOfProgress(CommonProgress& whole) : whole_(whole) {}

  void SetText(const CString& text) override { whole_.window_.SetTexts(whole_.heading_, text); }
  void SetRange(int lowest, int highest) override { whole_.window_.SetRange(lowest, highest); }
  void SetPos(int position) override { whole_.window_.SetPos(position); }
  void Pump() override { whole_.window_.Pump(); }
  bool Cancelled() const override { return whole_.window_.Cancelled(); }

 private:
  CommonProgress& whole_;
};

}  // namespace loom
