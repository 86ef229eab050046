#include "platform/ui/date_time_ctrl.h"

#include "platform/ui/dialog.h"

namespace loom {

bool CDateTimeCtrl::SetTime(const COleDateTime& value) {
  const bool can_hold = value.IsValid() || (value.GetStatus() == COleDateTime::kNull && HasStyle(style::kShowNone));
  if (can_hold) value_ = value;
  return can_hold;
}

CString CDateTimeCtrl::GetWindowText() const {
  const CString text = value_.Format();
  return HasStyle(style::kTimeFormat) ? text.Mid(11) : text.Left(10);
}

void CDateTimeCtrl::Pick(const COleDateTime& value) {
  if (!value.IsValid()) Refuse("there is no such date or time");
  value_ = value;
  Notify(Notification::kChange);
}

void CDateTimeCtrl::UserPickDate(const CalendarDay& day) {
  BeginUserAction();
  if (HasStyle(style::kTimeFormat)) Refuse("it picks a time of day");
  LocalTime time = value_.Fields();
  time.day = day;
  Pick(COleDateTime(time));
}

void CDateTimeCtrl::UserPickTime(int hour, int minute, int second) {
  BeginUserAction();
  if (!HasStyle(style::kTimeFormat)) Refuse("it picks a date");
  Pick(COleDateTime(LocalTime{.day = value_.Fields().day, .hour = hour, .minute = minute, .second = second}));
}

void CDateTimeCtrl::UserPickNone() {
  BeginUserAction();
  if (!HasStyle(style::kShowNone)) Refuse("it always holds a time");
  value_ = COleDateTime::Null();
  Notify(Notification::kChange);
}

void CDateTimeCtrl::Reset() {
  CWnd::Reset();
  value_ = COleDateTime::GetCurrentTime();
}

}  // namespace loom
