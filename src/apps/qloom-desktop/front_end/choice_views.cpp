#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QHBoxLayout>
#include <QLineEdit>

#include "apps/qloom-desktop/front_end/control_view.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "platform/ui/date_time_ctrl.h"

namespace loom {
namespace {

constexpr int kLongestDropDown = 20;  // entries

class ComboView final : public ControlView {
 public:
  ComboView(CComboBox& combo, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(combo, runner, units), combo_(combo), box_(new QComboBox(&pane)) {
    box_->setEditable(combo.HasStyle(style::kEditable));
    box_->setInsertPolicy(QComboBox::NoInsert);
    box_->setMaxVisibleItems(kLongestDropDown);
    SetWidget(box_);
    QObject::connect(box_, &QComboBox::activated, [this](int at) {
      if (at != combo_.GetCurSel()) Act([this, at] { combo_.UserChoose(at); });
    });
    if (!box_->isEditable()) return;
    box_->setCompleter(nullptr);
    QObject::connect(box_->lineEdit(), &QLineEdit::textEdited,
                     [this](const QString& text) { Act([=, this] { combo_.UserType(FromQt(text)); }); });
  }

 private:
  // The template's height is that of the open list.
  QRect PlaceIn(const QRect& rect) const override { return {rect.topLeft(), QSize(rect.width(), ClosedHeight())}; }
  int ClosedHeight() const {
    constexpr int kClosedUnits = 13;
    return std::max(units().Y(kClosedUnits), box_->minimumSizeHint().height());
  }

  std::vector<CString> Entries() const {
    std::vector<CString> entries;
    for (int at = 0; at < combo_.GetCount(); ++at) entries.push_back(combo_.GetLBText(at));
    return entries;
  }

  void ShowContent() override {
    if (std::vector<CString> entries = Entries(); entries != shown_) {
      shown_ = std::move(entries);
      box_->clear();
      for (const CString& entry : shown_) box_->addItem(NameToQt(entry));
    }
    if (box_->currentIndex() != combo_.GetCurSel()) box_->setCurrentIndex(combo_.GetCurSel());
    const QString text = NameToQt(combo_.GetWindowText());
    if (box_->isEditable() && box_->currentText() != text) box_->setEditText(text);
  }

  CComboBox& combo_;
  QComboBox* box_;
  std::vector<CString> shown_;
};

class DateTimeView final : public ControlView {
 public:
  DateTimeView(CDateTimeCtrl& picker, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(picker, runner, units), picker_(picker), frame_(new QWidget(&pane)) {
    const bool is_time = picker.HasStyle(style::kTimeFormat);
    if (picker.HasStyle(style::kShowNone)) has_value_ = new QCheckBox(frame_);
    edit_ = new QDateTimeEdit(frame_);
    edit_->setTimeSpec(Qt::UTC);  // no hour is missing
    edit_->setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    edit_->setDisplayFormat(is_time ? QStringLiteral("HH:mm:ss") : QStringLiteral("yyyy-MM-dd"));
    edit_->setCalendarPopup(!is_time);
    auto* const layout = new QHBoxLayout(frame_);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    if (has_value_) layout->addWidget(has_value_);
    layout->addWidget(edit_, 1);
    frame_->setFocusProxy(edit_);
    SetWidget(frame_);
    QObject::connect(edit_, &QDateTimeEdit::dateTimeChanged, [this] { Act([this] { Pick(); }); });
    if (!has_value_) return;
    QObject::connect(has_value_, &QCheckBox::clicked, [this](bool on) {
      Act([this, on] {
        if (on) return Pick();
        picker_.UserPickNone();
      });
    });
  }

 private:
  QWidget& FocusWidget() const override { return *edit_; }

  void Pick() {
    const QDate date = edit_->date();
    const QTime time = edit_->time();
    if (picker_.HasStyle(style::kTimeFormat))
      picker_.UserPickTime(time.hour(), time.minute(), time.second());
    else
      picker_.UserPickDate({date.year(), date.month(), date.day()});
  }

  void ShowContent() override {
    const COleDateTime& value = picker_.GetTime();
    if (has_value_) has_value_->setChecked(value.IsValid());
    edit_->setEnabled(value.IsValid() && picker_.IsWindowEnabled());
    if (!value.IsValid()) return;
    const QDateTime shown(QDate(value.GetYear(), value.GetMonth(), value.GetDay()),
                          QTime(value.GetHour(), value.GetMinute(), value.GetSecond()), Qt::UTC);
    if (edit_->dateTime() != shown) edit_->setDateTime(shown);
  }

  CDateTimeCtrl& picker_;
  QWidget* frame_;
  QCheckBox* has_value_ = nullptr;
  QDateTimeEdit* edit_ = nullptr;
};

}  // namespace

ViewPointer MakeComboView(CComboBox& combo, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  return std::make_unique<ComboView>(combo, runner, units, pane);
}

ViewPointer MakeDateTimeView(CDateTimeCtrl& picker, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  return std::make_unique<DateTimeView>(picker, runner, units, pane);
}

}  // namespace loom
