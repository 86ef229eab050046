#include "apps/qloom-desktop/front_end/progress_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>

#include "apps/qloom-desktop/front_end/qt_text.h"

namespace loom {
namespace {

constexpr int kWidthPx = 460;
constexpr int kPumpIntervalMs = 20;

}  // namespace

// Closing it is cancelling; it goes when the work ends.
class ProgressWindow::Window final : public QDialog {
 public:
  Window(QWidget* parent, std::function<void()> cancel)
      : QDialog(parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint), cancel_(std::move(cancel)) {}
  void reject() override { cancel_(); }

 private:
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    cancel_();
  }
  std::function<void()> cancel_;
};

ProgressWindow::ProgressWindow(const ProgressRequest& request, QWidget* parent)
    : window_(new Window(parent, [this] { Cancel(); })) {
  window_->setObjectName(QStringLiteral("progress"));
  window_->setWindowTitle(ToQt(request.title));
  window_->setWindowModality(Qt::ApplicationModal);
  text_ = new QLabel(window_);
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  bar_ = new QProgressBar(window_);
  auto* const layout = new QVBoxLayout(window_);
  layout->addWidget(text_);
  layout->addWidget(bar_);
  if (request.can_cancel) {
    cancel_ = new QPushButton(QStringLiteral("取消"), window_);
    cancel_->setObjectName(QStringLiteral("button_cancel"));
    QObject::connect(cancel_, &QPushButton::clicked, window_, [this] { Cancel(); });
    layout->addWidget(cancel_, 0, Qt::AlignRight);
  }
  window_->setFixedWidth(kWidthPx);
  window_->show();
  QCoreApplication::processEvents();
  since_pump_.start();
}

ProgressWindow::~ProgressWindow() { delete window_; }

void ProgressWindow::Cancel() {
  if (!cancel_ || cancelled_) return;
  cancelled_ = true;
  cancel_->setEnabled(false);
}

void ProgressWindow::SetText(const CString& text) { text_->setText(TextWithNamesToQt(text)); }

void ProgressWindow::SetRange(int lowest, int highest) { bar_->setRange(lowest, highest); }

void ProgressWindow::SetPos(int position) { bar_->setValue(position); }

void ProgressWindow::Pump() {
  if (since_pump_.elapsed() < kPumpIntervalMs) return;
  QCoreApplication::processEvents();
  since_pump_.restart();
}

}  // namespace loom
