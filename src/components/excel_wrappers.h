#pragma once

#include <cstdint>

#include "platform/automation/dispatch_driver.h"

// The spreadsheet server's objects as the module calls them. Members are those of the server's published object model;
// what fails throws AutomationError.
namespace loom {

inline constexpr std::string_view kExcelProgId = "Excel.Application";
inline constexpr std::int16_t kXlCenter = -4108;

class Range : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  void SetValue(const VARIANT& value) const { Put("Value", value); }
  void SetVerticalAlignment(const VARIANT& alignment) const { Put("VerticalAlignment", alignment); }
  Range GetEntireColumn() const { return Range(Get("EntireColumn").Object()); }
  void AutoFit() const { Call("AutoFit"); }
  void Select() const { Call("Select"); }
};

class _Worksheet : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  void SetName(const CString& name) const { Put("Name", VARIANT(name)); }
  Range GetRange(const VARIANT& first_cell, const VARIANT& last_cell) const {
    return Range(Get("Range", {first_cell, last_cell}).Object());
  }
  Range GetUsedRange() const { return Range(Get("UsedRange").Object()); }
  void Activate() const { Call("Activate"); }
};

class Sheets : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  // By position from 1.
  _Worksheet GetItem(const VARIANT& index) const { return _Worksheet(Get("Item", {index}).Object()); }
  std::int32_t GetCount() const { return Get("Count").Integer(); }
  _Worksheet Add(const VARIANT& before, const VARIANT& after, const VARIANT& count, const VARIANT& type) const {
    return _Worksheet(Call("Add", {before, after, count, type}).Object());
  }
};

class _Workbook : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  Sheets GetSheets() const { return Sheets(Get("Sheets").Object()); }
};

class Workbooks : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  _Workbook Add(const VARIANT& template_name) const { return _Workbook(Call("Add", {template_name}).Object()); }
};

class Window : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  void SetFreezePanes(bool frozen) const { Put("FreezePanes", VARIANT::Bool(frozen)); }
};

class _Application : public COleDispatchDriver {
 public:
  using COleDispatchDriver::COleDispatchDriver;
  Workbooks GetWorkbooks() const { return Workbooks(Get("Workbooks").Object()); }
  // The application, whose members serve for those of the workbook that is active.
  ComPtr<IDispatch> GetApplication() const { return Get("Application").Object(); }
  Sheets GetWorksheets() const { return Sheets(Get("Worksheets").Object()); }
  Window GetActiveWindow() const { return Window(Get("ActiveWindow").Object()); }
  void SetVisible(bool visible) const { Put("Visible", VARIANT::Bool(visible)); }
  void SetAlertBeforeOverwriting(bool on) const { Put("AlertBeforeOverwriting", VARIANT::Bool(on)); }
  void SetDisplayAlerts(bool on) const { Put("DisplayAlerts", VARIANT::Bool(on)); }
};

}  // namespace loom
