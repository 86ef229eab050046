#pragma once

#include "platform/ui/controls.h"
#include "platform/ui/ole_date_time.h"

namespace loom {

// Picks a date or, with the style kTimeFormat, a time of day. It holds both; a person changes the part shown.
class CDateTimeCtrl : public CWnd {
 public:
  using CWnd::CWnd;

  // Null when nothing is picked, which only the style kShowNone allows.
  const COleDateTime& GetTime() const { return value_; }
  // False, and nothing changes, for an invalid time or a null one that the style does not allow.
  bool SetTime(const COleDateTime& value);
  CString GetWindowText() const override;  // "2009-03-14" or "10:07:59"; empty for null

  void UserPickDate(const CalendarDay& day);
  void UserPickTime(int hour, int minute, int second);
  void UserPickNone();
  void Reset() override;  // to the current local time

 private:
  void Pick(const COleDateTime& value);
  COleDateTime value_;
};

}  // namespace loom
