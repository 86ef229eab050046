#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "apps/qloom-desktop/front_end/dialog_units.h"
#include "platform/ui/controls.h"

namespace loom {

// Runs what a person does in a window: the model's handlers, and afterwards the window shows what they changed.
class ActionRunner {
 public:
  virtual ~ActionRunner() = default;
  virtual void Run(const std::function<void()>& action) = 0;
  // The same once the widget has handled its event, in the order asked for.
  virtual void RunLater(std::function<void()> action) = 0;
  // Whether the window takes over the model's state: what widgets report meanwhile is nobody's action.
  virtual bool IsRefreshing() const = 0;
};

// One control on the screen.
class ControlView {
 public:
  ControlView(CWnd& control, ActionRunner& runner, const DialogUnits& units);
  ControlView(const ControlView&) = delete;
  ControlView& operator=(const ControlView&) = delete;
  virtual ~ControlView() = default;

  CWnd& control() const { return control_; }
  QWidget& widget() const { return *widget_; }
  virtual QWidget& FocusWidget() const { return *widget_; }
  // Takes over the model's state, unless drawing is frozen.
  void Refresh();
  bool IsFrozen() const { return control_.IsRedrawFrozen(); }
  // Where it stands, in pixels; without it where the model says.
  void SetPlacer(std::function<QRect()> placer) { placer_ = std::move(placer); }
  void Place();

 protected:
  // Once, from the constructor; a child of the pane and owned by it.
  void SetWidget(QWidget* widget);
  virtual void ShowContent() = 0;
  virtual QRect PlaceIn(const QRect& rect) const { return rect; }

  const DialogUnits& units() const { return units_; }
  bool IsRefreshing() const { return runner_.IsRefreshing(); }
  void Act(const std::function<void()>& action) {
    if (!runner_.IsRefreshing()) runner_.Run(action);
  }
  void ActLater(std::function<void()> action) {
    if (!runner_.IsRefreshing()) runner_.RunLater(std::move(action));
  }

 private:
  CWnd& control_;
  ActionRunner& runner_;
  const DialogUnits& units_;
  QWidget* widget_ = nullptr;
  std::function<QRect()> placer_;
};

// The view of a control of any class, its widget a child of `pane`.
std::unique_ptr<ControlView> MakeControlView(CWnd& control, ActionRunner& runner, const DialogUnits& units,
                                             QWidget& pane);

class CButton;
class CComboBox;
class CDateTimeCtrl;
class CEdit;
class CListCtrl;
class CTreeCtrl;
using ViewPointer = std::unique_ptr<ControlView>;
ViewPointer MakeTextView(CWnd& text, ActionRunner& runner, const DialogUnits& units, QWidget& pane);
ViewPointer MakeButtonView(CButton& button, ActionRunner& runner, const DialogUnits& units, QWidget& pane);
ViewPointer MakeEditView(CEdit& edit, ActionRunner& runner, const DialogUnits& units, QWidget& pane);
ViewPointer MakeComboView(CComboBox& combo, ActionRunner& runner, const DialogUnits& units, QWidget& pane);
ViewPointer MakeDateTimeView(CDateTimeCtrl& picker, ActionRunner& runner, const DialogUnits& units, QWidget& pane);
ViewPointer MakeListView(CListCtrl& list, ActionRunner& runner, const DialogUnits& units, QWidget& pane);
ViewPointer MakeTreeView(CTreeCtrl& tree, ActionRunner& runner, const DialogUnits& units, QWidget& pane);

}  // namespace loom
