#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "apps/qloom-desktop/front_end/control_view.h"
#include "apps/qloom-desktop/front_end/pane_stretch.h"
#include "platform/ui/dialog.h"

class QButtonGroup;

namespace loom {

// The controls of a dialog or of one page of a sheet, where the template puts them; in a larger pane lists grow. Tab
// goes through them in the order of the template, in which they are made.
class DialogPane final : public QWidget {
 public:
  DialogPane(CDialog& dialog, ActionRunner& runner, QWidget* parent);

  CDialog& dialog() const { return dialog_; }
  ControlView* FindView(int id) const;  // null when the template lacks it
  QWidget* LastTabStop() const;         // null when there is none
  const std::vector<std::unique_ptr<ControlView>>& views() const { return views_; }
  // Takes over the model's state, the focus included where the program moved it.
  void Refresh();

  bool CanGrow() const { return stretch_.Grows(); }

  static QSize SizeOf(const DialogTemplate& dialog_template, const QFont& font);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  PaneStretch MakeStretch() const;
  void MakeRadioGroups();
  void SetBuddies();
  int FocusedId() const;  // kIdNone when the focus is elsewhere
  void ShowFocus();

  CDialog& dialog_;
  ActionRunner& runner_;
  DialogUnits units_;
  std::vector<std::unique_ptr<ControlView>> views_;  // in tab order
  std::vector<QButtonGroup*> radio_groups_;
  PaneStretch stretch_;
};

}  // namespace loom
