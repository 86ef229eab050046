#include "apps/qloom-desktop/front_end/dialog_pane.h"

#include <QApplication>
#include <QButtonGroup>
#include <QEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>

namespace loom {

DialogPane::DialogPane(CDialog& dialog, ActionRunner& runner, QWidget* parent)
    : QWidget(parent), dialog_(dialog), runner_(runner), units_(font()), stretch_({}) {
  setObjectName(QStringLiteral("template_%1").arg(dialog.GetTemplate().id));
  for (const auto& control : dialog.controls()) {
    views_.push_back(MakeControlView(*control, runner, units_, *this));
    views_.back()->FocusWidget().installEventFilter(this);
    views_.back()->SetPlacer([this, at = views_.size() - 1] { return stretch_.RectOf(at, size() - minimumSize()); });
  }
  stretch_ = MakeStretch();
  MakeRadioGroups();
  SetBuddies();
  setMinimumSize(SizeOf(dialog.GetTemplate(), font()));
  resize(minimumSize());
}

PaneStretch DialogPane::MakeStretch() const {
  constexpr int kWideEditUnits = 100;
  constexpr int kWideComboUnits = 150;
  std::vector<PaneStretch::Place> places;
  for (const auto& view : views_) {
    const CWnd& control = view->control();
    const ControlClass own = control.GetTemplate().control_class;
    const int width = control.GetPlacement().width;
    const bool is_list = own == ControlClass::kListView || own == ControlClass::kTreeView ||
                         (own == ControlClass::kEdit && control.HasStyle(style::kMultiLine));
    const bool is_wide = (own == ControlClass::kEdit && width >= kWideEditUnits) ||
                         (own == ControlClass::kComboBox && width >= kWideComboUnits);
    places.push_back({.rect = units_.Rect(control.GetPlacement()),
                      .grows_down = is_list,
                      .grows_across = is_list || is_wide,
                      .is_frame = own == ControlClass::kGroupBox});
  }
  return PaneStretch(std::move(places));
}

void DialogPane::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  for (const auto& view : views_) view->Place();
}

QSize DialogPane::SizeOf(const DialogTemplate& dialog_template, const QFont& font) {
  return DialogUnits(font).Rect({0, 0, dialog_template.rect.width, dialog_template.rect.height}).size();
}

// The arrow keys stay within a group, and only its marked button takes part in the tab order.
void DialogPane::MakeRadioGroups() {
  QButtonGroup* group = nullptr;
  for (const auto& view : views_) {
    if (view->control().HasStyle(style::kGroupStart)) group = nullptr;
    auto* const radio = qobject_cast<QRadioButton*>(&view->widget());
    if (!radio) continue;
    if (!group) radio_groups_.push_back(group = new QButtonGroup(this));
    group->addButton(radio);
  }
}

// The key of a text leads to the control behind it.
void DialogPane::SetBuddies() {
  for (std::size_t at = 0; at + 1 < views_.size(); ++at) {
    auto* const label = qobject_cast<QLabel*>(&views_[at]->widget());
    if (!label || views_[at]->control().GetWindowText().Find('&') < 0) continue;
    label->setBuddy(&views_[at + 1]->FocusWidget());
  }
}

ControlView* DialogPane::FindView(int id) const {
  if (id == kIdNone) return nullptr;
  for (const auto& view : views_) {
    if (view->control().GetDlgCtrlID() == id) return view.get();
  }
  return nullptr;
}

QWidget* DialogPane::LastTabStop() const {
  const auto last = std::find_if(views_.rbegin(), views_.rend(), [](const auto& view) {
    return (view->FocusWidget().focusPolicy() & Qt::TabFocus) != 0;
  });
  return last == views_.rend() ? nullptr : &(*last)->FocusWidget();
}

void DialogPane::Refresh() {
  stretch_ = MakeStretch();
  // An exclusive group does not let its last mark go.
  for (QButtonGroup* const group : radio_groups_) group->setExclusive(false);
  for (const auto& view : views_) view->Refresh();
  for (QButtonGroup* const group : radio_groups_) group->setExclusive(true);
  ShowFocus();
}

int DialogPane::FocusedId() const {
  for (const QWidget* widget = QApplication::focusWidget(); widget && widget != this; widget = widget->parentWidget()) {
    for (const auto& view : views_) {
      if (&view->widget() == widget || &view->FocusWidget() == widget) return view->control().GetDlgCtrlID();
    }
  }
  return kIdNone;
}

void DialogPane::ShowFocus() {
  const int wanted = dialog_.GetFocusId();
  if (wanted == kIdNone || wanted == FocusedId()) return;
  if (ControlView* const view = FindView(wanted)) view->FocusWidget().setFocus(Qt::OtherFocusReason);
}

bool DialogPane::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn && !runner_.IsRefreshing()) {
    for (const auto& view : views_) {
      if (&view->FocusWidget() == watched) dialog_.SetFocusTo(view->control().GetDlgCtrlID());
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace loom
