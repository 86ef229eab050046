#include "apps/qloom-desktop/front_end/control_view.h"

#include "platform/ui/date_time_ctrl.h"
#include "platform/ui/list_ctrl.h"
#include "platform/ui/tree_ctrl.h"

namespace loom {

ControlView::ControlView(CWnd& control, ActionRunner& runner, const DialogUnits& units)
    : control_(control), runner_(runner), units_(units) {}

void ControlView::SetWidget(QWidget* widget) {
  widget_ = widget;
  widget_->setObjectName(QStringLiteral("control_%1").arg(control_.GetDlgCtrlID()));
}

void ControlView::Place() {
  const QRect place = PlaceIn(placer_ ? placer_() : units_.Rect(control_.GetPlacement()));
  if (widget_->geometry() != place) widget_->setGeometry(place);
}

void ControlView::Refresh() {
  if (IsFrozen()) return;
  Place();
  widget_->setEnabled(control_.IsWindowEnabled());
  widget_->setVisible(control_.IsWindowVisible());
  ShowContent();
}

std::unique_ptr<ControlView> MakeControlView(CWnd& control, ActionRunner& runner, const DialogUnits& units,
                                             QWidget& pane) {
  if (auto* const button = dynamic_cast<CButton*>(&control)) return MakeButtonView(*button, runner, units, pane);
  if (auto* const edit = dynamic_cast<CEdit*>(&control)) return MakeEditView(*edit, runner, units, pane);
  if (auto* const combo = dynamic_cast<CComboBox*>(&control)) return MakeComboView(*combo, runner, units, pane);
  if (auto* const list = dynamic_cast<CListCtrl*>(&control)) return MakeListView(*list, runner, units, pane);
  if (auto* const tree = dynamic_cast<CTreeCtrl*>(&control)) return MakeTreeView(*tree, runner, units, pane);
  if (auto* const picker = dynamic_cast<CDateTimeCtrl*>(&control))
    return MakeDateTimeView(*picker, runner, units, pane);
  return MakeTextView(control, runner, units, pane);
}

}  // namespace loom
