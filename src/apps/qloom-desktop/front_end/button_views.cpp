#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include "apps/qloom-desktop/front_end/control_view.h"
#include "apps/qloom-desktop/front_end/qt_text.h"

// Texts, group boxes and everything that is pressed.
namespace loom {
namespace {

// From this height on a text has room for a second line.
constexpr int kTwoLines = 16;

class LabelView final : public ControlView {
 public:
  LabelView(CWnd& text, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(text, runner, units), label_(new QLabel(&pane)) {
    const bool several_lines = text.GetTemplate().rect.height >= kTwoLines;
    label_->setTextFormat(Qt::PlainText);
    label_->setWordWrap(several_lines);
    label_->setAlignment(Qt::AlignLeft | (several_lines ? Qt::AlignTop : Qt::AlignVCenter));
    SetWidget(label_);
  }

 private:
  // Only with a buddy does a label know the '&'.
  void ShowContent() override {
    const CString text = control().GetWindowText();
    label_->setText(label_->buddy() ? ToQt(text) : WithoutMnemonic(text));
  }

  QLabel* label_;
};

class GroupBoxView final : public ControlView {
 public:
  GroupBoxView(CWnd& text, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(text, runner, units), box_(new QGroupBox(&pane)) {
    SetWidget(box_);
    box_->lower();
  }

 private:
  void ShowContent() override { box_->setTitle(WithoutMnemonic(control().GetWindowText())); }

  QGroupBox* box_;
};

class ButtonView final : public ControlView {
 public:
  ButtonView(CButton& button, ActionRunner& runner, const DialogUnits& units, QAbstractButton* widget)
      : ControlView(button, runner, units), button_(button), widget_(widget) {
    SetWidget(widget_);
    QObject::connect(widget_, &QAbstractButton::clicked, [this] { Act([this] { button_.UserPress(); }); });
  }

 private:
  void ShowContent() override {
    const QString text = ToQt(button_.GetWindowText());
    if (widget_->text() != text) widget_->setText(text);
    if (auto* const box = qobject_cast<QCheckBox*>(widget_)) {
      constexpr Qt::CheckState kStates[] = {Qt::Unchecked, Qt::Checked, Qt::PartiallyChecked};
      box->setTristate(button_.HasStyle(style::kThreeState) || button_.GetCheck() == 2);
      box->setCheckState(kStates[button_.GetCheck()]);
    } else if (qobject_cast<QRadioButton*>(widget_)) {
      widget_->setChecked(button_.GetCheck() != 0);
    }
  }

  CButton& button_;
  QAbstractButton* widget_;
};

QAbstractButton* MakeButton(const CButton& button, QWidget& pane) {
  switch (button.GetTemplate().control_class) {
    case ControlClass::kCheckBox:
      return new QCheckBox(&pane);
    case ControlClass::kRadioButton:
      return new QRadioButton(&pane);
    default:
      return new QPushButton(&pane);
  }
}

}  // namespace

ViewPointer MakeTextView(CWnd& text, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  if (text.GetTemplate().control_class == ControlClass::kGroupBox)
    return std::make_unique<GroupBoxView>(text, runner, units, pane);
  return std::make_unique<LabelView>(text, runner, units, pane);
}

ViewPointer MakeButtonView(CButton& button, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  return std::make_unique<ButtonView>(button, runner, units, MakeButton(button, pane));
}

}  // namespace loom
