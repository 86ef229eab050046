#pragma once

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <deque>
#include <functional>
#include <string>

namespace loom::testing {

// Sits in front of real windows: plays steps one after the other while modal windows wait for somebody. What Qt has
// pending is handled between two steps. A window that is left open is a failure and gets closed.
class Person {
 public:
  using Step = std::function<void()>;

  Person() = default;
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;
  ~Person() {
    if (!steps_.empty()) ADD_FAILURE() << steps_.size() << " steps are left over, the first: " << steps_.front().first;
  }

  Person& Then(const std::string& what, Step step) {
    steps_.emplace_back(what, std::move(step));
    if (!std::exchange(started_, true)) Schedule();
    return *this;
  }
  // A click on a control of the window in front, or on the sheet's button or answer of that name.
  Person& Click(int id) {
    return Then("click " + std::to_string(id), [=] { ClickOn(Control<QAbstractButton>(id)); });
  }
  Person& Click(const QString& name) {
    return Then("click " + name.toStdString(), [=] { ClickOn(Find<QAbstractButton>("button_" + name)); });
  }
  Person& Key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return Then("press a key", [=] { QTest::keyClick(Focus(), key, modifiers); });
  }
  Person& Type(int id, const QString& text) {
    return Then("type " + text.toStdString(), [=] {
      QWidget* const edit = Control<QWidget>(id);
      if (!edit) return;
      edit->setFocus();
      QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
      TypeText(edit, text);
    });
  }
  // Without this, steps wait for the end of a progress window.
  Person& ActOnProgress() {
    acts_on_progress_ = true;
    return *this;
  }
  // Any characters, which QTest::keyClicks cannot.
  static void TypeText(QWidget* edit, const QString& text) {
    for (const QChar character : text) {
      const bool is_enter = character == u'\n';
      QTest::sendKeyEvent(QTest::Click, edit, is_enter ? Qt::Key_Return : Qt::Key_unknown,
                          is_enter ? QStringLiteral("\r") : QString(character), Qt::NoModifier);
    }
  }

  static QWidget* Window() { return QApplication::activeModalWidget(); }
  static QWidget* Focus() {
    QWidget* const focus = Window() ? Window()->focusWidget() : QApplication::focusWidget();
    return focus ? focus : Window();
  }
  template <class T>
  static T* Find(const QString& name) {
    T* const found = Window() ? Window()->findChild<T*>(name) : nullptr;
    if (!found) ADD_FAILURE() << "nothing in front is called " << name.toStdString();
    return found;
  }
  template <class T>
  static T* Control(int id) {
    return Find<T>(QStringLiteral("control_%1").arg(id));
  }

 private:
  static void ClickOn(QAbstractButton* button) {
    if (!button) return;
    EXPECT_TRUE(button->isEnabled() && button->isVisible()) << button->objectName().toStdString();
    // A box is hit where it is drawn, not anywhere in the room for its text.
    const bool is_box = button->isCheckable() && !button->inherits("QPushButton");
    QTest::mouseClick(button, Qt::LeftButton, {}, is_box ? QPoint(8, button->height() / 2) : QPoint());
  }

  // A button pressed by its accelerator comes up, and is clicked, a moment later.
  static bool IsButtonDown() {
    if (!Window()) return false;
    const auto buttons = Window()->findChildren<QAbstractButton*>();
    return std::any_of(buttons.begin(), buttons.end(), [](const QAbstractButton* button) {
      return button->isDown() && !button->inherits("QToolButton");
    });
  }

  void Schedule() {
    QTimer::singleShot(5, &context_, [this] { PlayNext(); });
  }

  void PlayNext() {
    if (QWidget* const window = Window(); window && !window->isActiveWindow() && waits_++ < kMostWaits) {
      window->activateWindow();
      return Schedule();
    }
    waits_ = 0;
    if (IsButtonDown()) return Schedule();
    if (!acts_on_progress_ && Window() && Window()->objectName() == QStringLiteral("progress")) return Schedule();
    if (steps_.empty()) {
      if (QWidget* const left = Window()) {
        ADD_FAILURE() << "a window is left open: " << left->windowTitle().toStdString();
        left->close();
        Schedule();
      } else {
        started_ = false;
      }
      return;
    }
    const auto [what, step] = std::move(steps_.front());
    steps_.pop_front();
    // The step may bring up a window, in front of which the next one is played.
    Schedule();
    SCOPED_TRACE(what);
    step();
  }

  std::deque<std::pair<std::string, Step>> steps_;
  static constexpr int kMostWaits = 200;
  int waits_ = 0;
  bool started_ = false;
  bool acts_on_progress_ = false;
  QObject context_;
};

}  // namespace loom::testing
