#pragma once

#include <QScreen>
#include <QScrollArea>

namespace loom {

// Holds a pane: as large as it when there is room, with scroll bars where the screen is small.
class ScrollingPlace final : public QScrollArea {
 public:
  ScrollingPlace(QWidget& content, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(&content);
  }

  QSize sizeHint() const override { return widget()->minimumSize(); }
  QSize minimumSizeHint() const override { return {}; }
};

// The size that a window wants, as far as its screen has room for it.
inline void FitToScreen(QWidget& window) {
  constexpr QSize kTitleAndFrame(16, 48);
  const QWidget* const owner = window.parentWidget() ? window.parentWidget()->window() : &window;
  window.resize(window.sizeHint().boundedTo(owner->screen()->availableSize() - kTitleAndFrame));
}

}  // namespace loom
