#include <algorithm>
#include <utility>

#include "host/workbook/spreadsheet_model.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"
#include "platform/encoding.h"

namespace loom {
namespace {

using Arguments = std::span<const VARIANT>;
using ApplicationPtr = std::shared_ptr<SpreadsheetApplication>;
using WorkbookPtr = std::shared_ptr<WorkbookWriter>;

// An object of the server: finds the member in the class's table.
template <class Derived>
class ServerObject : public IDispatch {
 public:
  explicit ServerObject(ApplicationPtr application) : application_(std::move(application)) {}

  VARIANT Invoke(std::string_view member, InvokeKind kind, Arguments arguments) override {
    application_->CheckRuns();
    for (const auto& row : Derived::Members()) {
      if (row.name != member || row.kind != kind) continue;
      if (arguments.size() != row.arguments)
        throw AutomationError("\"" + std::string(member) + "\" takes " + std::to_string(row.arguments) + " arguments");
      return (static_cast<Derived*>(this)->*row.call)(arguments);
    }
    throw AutomationError(std::string(Derived::kName) + " has no member \"" + std::string(member) + "\"");
  }

 protected:
  struct Member {
    std::string_view name;
    InvokeKind kind;
    std::size_t arguments;
    VARIANT (Derived::*call)(Arguments);
  };

  const ApplicationPtr& application() const { return application_; }

 private:
  ApplicationPtr application_;
};

template <class Object, class... Parts>
VARIANT MakeObject(Parts&&... parts) {
  return VARIANT(new Object(std::forward<Parts>(parts)...));
}

constexpr InvokeKind kMethod = InvokeKind::kMethod;
constexpr InvokeKind kGet = InvokeKind::kGet;
constexpr InvokeKind kPut = InvokeKind::kPut;

// A sheet of a workbook; sheets are never taken away.
struct SheetPlace {
  WorkbookPtr book;
  WrittenSheet* sheet;
  std::size_t Position() const {
    std::size_t at = 0;
    while (&book->Sheet(at) != sheet) ++at;
    return at;
  }
};

class RangeObject : public ServerObject<RangeObject> {
 public:
  static constexpr const char* kName = "Range";
  RangeObject(ApplicationPtr application, SheetPlace place, CellAddress first, CellAddress last)
      : ServerObject(std::move(application)), place_(std::move(place)), first_(first), last_(last) {}

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {
        {"Value", kPut, 1, &RangeObject::PutValue},
        {"VerticalAlignment", kPut, 1, &RangeObject::PutVerticalAlignment},
        {"EntireColumn", kGet, 0, &RangeObject::GetEntireColumn},
        {"AutoFit", kMethod, 0, &RangeObject::AutoFit},
        {"Select", kMethod, 0, &RangeObject::Select},
    };
    return kMembers;
  }

 private:
  VARIANT PutValue(Arguments arguments) {
    const COleSafeArray& values = arguments[0].Array();
    if (values.GetDim() != 2 ||
        Counts(values) != std::pair(last_.row - first_.row + 1, last_.column - first_.column + 1))
      throw AutomationError("the values do not have the shape of the range");
    place_.book->Fill(*place_.sheet, values, first_);
    return {};
  }
  static std::pair<std::uint32_t, std::uint32_t> Counts(const COleSafeArray& values) {
    return {static_cast<std::uint32_t>(values.GetUBound(1) + 1), static_cast<std::uint32_t>(values.GetUBound(2) + 1)};
  }
  VARIANT PutVerticalAlignment(Arguments arguments) {
    place_.sheet->vertical_align = arguments[0].Integer();
    return {};
  }
  VARIANT GetEntireColumn(Arguments) {
    return MakeObject<RangeObject>(application(), place_, CellAddress{0, first_.column},
                                   CellAddress{kMaxSheetRows - 1, last_.column});
  }
  VARIANT AutoFit(Arguments) {
    if (first_.row != 0 || last_.row != kMaxSheetRows - 1) throw AutomationError("only whole columns are fitted");
    place_.sheet->fits_columns = true;
    return {};
  }
  VARIANT Select(Arguments) {
    place_.sheet->selection = first_;
    return {};
  }

  SheetPlace place_;
  CellAddress first_;
  CellAddress last_;
};

class WorksheetObject : public ServerObject<WorksheetObject> {
 public:
  static constexpr const char* kName = "Worksheet";
  WorksheetObject(ApplicationPtr application, SheetPlace place)
      : ServerObject(std::move(application)), place_(std::move(place)) {}

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {
        {"Name", kPut, 1, &WorksheetObject::PutName},         {"Name", kGet, 0, &WorksheetObject::GetName},
        {"Range", kGet, 2, &WorksheetObject::GetRange},       {"UsedRange", kGet, 0, &WorksheetObject::GetUsedRange},
        {"Activate", kMethod, 0, &WorksheetObject::Activate},
    };
    return kMembers;
  }
  const SheetPlace& place() const { return place_; }

 private:
  static CellAddress CellOf(const VARIANT& value) {
    const auto cell = ParseCell(value.Text());
    if (!cell) throw AutomationError("\"" + GbkToUtf8(value.Text()) + "\" names no cell");
    return *cell;
  }
  VARIANT PutName(Arguments arguments) {
    place_.book->Rename(*place_.sheet, CString(arguments[0].Text()));
    return {};
  }
  VARIANT GetName(Arguments) { return VARIANT(place_.sheet->name); }
  VARIANT GetRange(Arguments arguments) {
    const CellAddress a = CellOf(arguments[0]);
    const CellAddress b = CellOf(arguments[1]);
    return MakeObject<RangeObject>(application(), place_,
                                   CellAddress{std::min(a.row, b.row), std::min(a.column, b.column)},
                                   CellAddress{std::max(a.row, b.row), std::max(a.column, b.column)});
  }
  VARIANT GetUsedRange(Arguments) {
    const auto& body = place_.sheet->body;
    return MakeObject<RangeObject>(application(), place_, body ? body->first : CellAddress{},
                                   body ? body->last : CellAddress{});
  }
  VARIANT Activate(Arguments) {
    place_.book->SetActiveSheet(place_.Position());
    return {};
  }

  SheetPlace place_;
};

class SheetsObject : public ServerObject<SheetsObject> {
 public:
  static constexpr const char* kName = "Sheets";
  SheetsObject(ApplicationPtr application, WorkbookPtr book)
      : ServerObject(std::move(application)), book_(std::move(book)) {}

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {
        {"Item", kGet, 1, &SheetsObject::GetItem},
        {"Count", kGet, 0, &SheetsObject::GetCount},
        {"Add", kMethod, 4, &SheetsObject::Add},
    };
    return kMembers;
  }

 private:
  VARIANT MakeSheet(WrittenSheet& sheet) {
    return MakeObject<WorksheetObject>(application(), SheetPlace{book_, &sheet});
  }
  VARIANT GetItem(Arguments arguments) {
    const std::int32_t index = arguments[0].Integer();
    if (index < 1 || static_cast<std::size_t>(index) > book_->SheetCount())
      throw AutomationError("there is no sheet " + std::to_string(index));
    return MakeSheet(book_->Sheet(static_cast<std::size_t>(index) - 1));
  }
  VARIANT GetCount(Arguments) { return VARIANT::I4(static_cast<std::int32_t>(book_->SheetCount())); }
  // Behind the worksheet given.
  VARIANT Add(Arguments arguments) {
    if (!arguments[0].IsMissing() || !arguments[2].IsMissing() || !arguments[3].IsMissing())
      throw AutomationError("a sheet is added behind another, one at a time");
    const auto* after = dynamic_cast<const WorksheetObject*>(arguments[1].Object());
    if (after == nullptr || after->place().book != book_)
      throw AutomationError("a sheet is added behind one of the same workbook");
    book_->SetActiveSheet(after->place().Position() + 1);
    return MakeSheet(book_->AddSheet(book_->ActiveSheet()));
  }
  WorkbookPtr book_;
};

class WorkbookObject : public ServerObject<WorkbookObject> {
 public:
  static constexpr const char* kName = "Workbook";
  WorkbookObject(ApplicationPtr application, WorkbookPtr book)
      : ServerObject(std::move(application)), book_(std::move(book)) {}

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {
        {"Sheets", kGet, 0, &WorkbookObject::GetSheets},
        {"Worksheets", kGet, 0, &WorkbookObject::GetSheets},
    };
    return kMembers;
  }

 private:
  VARIANT GetSheets(Arguments) { return MakeObject<SheetsObject>(application(), book_); }

  WorkbookPtr book_;
};

class WorkbooksObject : public ServerObject<WorkbooksObject> {
 public:
  static constexpr const char* kName = "Workbooks";
  using ServerObject::ServerObject;

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {{"Add", kMethod, 1, &WorkbooksObject::Add}};
    return kMembers;
  }

 private:
  VARIANT Add(Arguments arguments) {
    if (!arguments[0].IsMissing()) throw AutomationError("workbooks are made without a template");
    return MakeObject<WorkbookObject>(application(), application()->AddWorkbook());
  }
};

class WindowObject : public ServerObject<WindowObject> {
 public:
  static constexpr const char* kName = "Window";
  using ServerObject::ServerObject;

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {{"FreezePanes", kPut, 1, &WindowObject::PutFreezePanes}};
    return kMembers;
  }

 private:
  // At the selection of the sheet in front.
  VARIANT PutFreezePanes(Arguments arguments) {
    const WorkbookPtr& book = application()->ActiveWorkbook();
    book->Sheet(book->ActiveSheet()).frozen = arguments[0].Boolean();
    return {};
  }
};

class ApplicationObject : public ServerObject<ApplicationObject> {
 public:
  static constexpr const char* kName = "Application";
  using ServerObject::ServerObject;

  static std::span<const Member> Members() {
    static constexpr Member kMembers[] = {
        {"Workbooks", kGet, 0, &ApplicationObject::GetWorkbooks},
        {"Application", kGet, 0, &ApplicationObject::GetApplication},
        {"Sheets", kGet, 0, &ApplicationObject::GetSheets},
        {"Worksheets", kGet, 0, &ApplicationObject::GetSheets},
        {"ActiveWindow", kGet, 0, &ApplicationObject::GetActiveWindow},
        {"Visible", kPut, 1, &ApplicationObject::PutVisible},
        {"Visible", kGet, 0, &ApplicationObject::GetVisible},
        {"AlertBeforeOverwriting", kPut, 1, &ApplicationObject::PutAlertBeforeOverwriting},
        {"DisplayAlerts", kPut, 1, &ApplicationObject::PutDisplayAlerts},
    };
    return kMembers;
  }

 private:
  VARIANT GetWorkbooks(Arguments) { return MakeObject<WorkbooksObject>(application()); }
  VARIANT GetApplication(Arguments) { return VARIANT(static_cast<IDispatch*>(this)); }
  VARIANT GetSheets(Arguments) { return MakeObject<SheetsObject>(application(), application()->ActiveWorkbook()); }
  VARIANT GetActiveWindow(Arguments) { return MakeObject<WindowObject>(application()); }
  VARIANT PutVisible(Arguments arguments) {
    application()->SetVisible(arguments[0].Boolean());
    return {};
  }
  VARIANT GetVisible(Arguments) { return VARIANT::Bool(application()->IsVisible()); }
  VARIANT PutAlertBeforeOverwriting(Arguments arguments) {
    application()->alert_before_overwriting = arguments[0].Boolean();
    return {};
  }
  VARIANT PutDisplayAlerts(Arguments arguments) {
    application()->display_alerts = arguments[0].Boolean();
    return {};
  }
};

}  // namespace

ComPtr<IUnknown> MakeApplicationObject(std::shared_ptr<SpreadsheetApplication> application) {
  return new ApplicationObject(std::move(application));
}

}  // namespace loom
