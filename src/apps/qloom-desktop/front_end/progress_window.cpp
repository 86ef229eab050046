#include "apps/qloom-desktop/front_end/progress_window.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/ui_language.h"

namespace loom {
namespace {

constexpr int kWidthPx = 460;
constexpr int kPumpIntervalMs = 20;
int open_windows = 0;

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
    cancel_ = new QPushButton(Text(standard::kCancel), window_);
    cancel_->setObjectName(QStringLiteral("button_cancel"));
    QObject::connect(cancel_, &QPushButton::clicked, window_, [this] { Cancel(); });
    layout->addWidget(cancel_, 0, Qt::AlignRight);
  }
  ++open_windows;
  window_->setFixedWidth(kWidthPx);
  StandInFrontOf(parent);
  window_->show();
  QCoreApplication::processEvents();
  since_pump_.start();
}

// In the middle, also where no window manager places windows.
void ProgressWindow::StandInFrontOf(const QWidget* owner) {
  if (owner == nullptr) return;
  QRect place(QPoint(), window_->sizeHint());
  place.moveCenter(owner->window()->geometry().center());
  window_->move(place.topLeft());
}

// Whoever had the keys before gets them back.
int ProgressWindow::OpenCount() { return open_windows; }

ProgressWindow::~ProgressWindow() {
  --open_windows;
  QWidget* const owner = window_->parentWidget();
  delete window_;
  if (owner != nullptr && owner->isVisible()) owner->window()->activateWindow();
}

void ProgressWindow::Cancel() {
  if (!cancel_ || cancelled_) return;
  cancelled_ = true;
  cancel_->setEnabled(false);
}

void ProgressWindow::SetTexts(const QString& heading, const CString& text) {
  const QString own = TextWithNamesToQt(text);
  text_->setText(heading.isEmpty() ? own : heading + u'\n' + own);
}

void ProgressWindow::SetRange(int lowest, int highest) { bar_->setRange(lowest, highest); }

void ProgressWindow::SetPos(int position) { bar_->setValue(position); }

CommonProgress::CommonProgress(const ProgressRequest& request, QWidget* parent, CommonProgress*& current)
    : window_(request, parent), current_(current) {
  current_ = this;
}

void CommonProgress::Begin(int part, int parts) {
  heading_ = Text(standard::kPart).arg(part).arg(parts);
  window_.SetTexts(heading_, CString());
  window_.SetPos(0);
  window_.Pump();
}

void ProgressWindow::Pump() {
  if (since_pump_.elapsed() < kPumpIntervalMs) return;
  QCoreApplication::processEvents();
  since_pump_.restart();
}

}  // namespace loom
