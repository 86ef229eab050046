#include "netinfo/net_import_page2.h"

#include <algorithm>

#include "components/factory.h"
#include "netinfo/custom_net_dialog.h"
#include "netinfo/net_param_dialog.h"
#include "platform/ui/message_box.h"
#include "resources/net_import_templates.h"

namespace loom {
namespace {

constexpr int kColumnWidth = 180;
constexpr const char* kNotMapped = " ...... ";

// Closes the mapper's workbook at the end of whatever needs it.
class OpenedWorkbook {
 public:
  OpenedWorkbook(IDBMapper& mapper, const CString& path) : mapper_(mapper), result_(mapper.OpenWorkbook(path)) {}
  OpenedWorkbook(const OpenedWorkbook&) = delete;
  OpenedWorkbook& operator=(const OpenedWorkbook&) = delete;
  ~OpenedWorkbook() { mapper_.CloseWorkbook(); }
  int result() const { return result_; }

 private:
  IDBMapper& mapper_;
  int result_;
};

}  // namespace

CNetInfoImportWizPage2::CNetInfoImportWizPage2(const CNetInfoImportWizPage1& first_page)
    : CPropertyPage(kNetImport2Template), first_page_(first_page), mapper_(CFactory::Instance().CreateDBMapper()) {
  OnSelChange(kComboWorksheet, [this] { OnWorksheetChanged(); });
  OnClicked(kButtonMapNet, [this] { MapRow(); });
  OnDoubleClicked(kListNetMapping, [this] {
    if (List().GetClickedRow() >= 0) MapRow();
  });
  OnClicked(kButtonClearNet, [this] { ClearRow(); });
  OnClicked(kButtonCustomNet, [this] { NameRow(); });
  OnSelChange(kListNetMapping, [this] {
    if (const int row = List().GetNextSelected(); row >= 0) selected_row_ = row;
  });
}

CListCtrl& CNetInfoImportWizPage2::List() const { return GetDlgItem<CListCtrl>(kListNetMapping); }

void CNetInfoImportWizPage2::Warn(const CString& text) const {
  ShowMessageBox(text, MessageIcon::kWarning, MessageButtons::kOk, kApplicationCaption, this);
}

bool CNetInfoImportWizPage2::OnSetActive() {
  if (!IsLoadedFor(first_page_) && !LoadFrom(first_page_)) return false;
  CPropertyPage::OnSetActive();
  ShowWizardButtons();
  return true;
}

bool CNetInfoImportWizPage2::IsLoadedFor(const CNetInfoImportWizPage1& page) const {
  return loaded_ == 1 && file_path_ == page.GetFilePath() && data_type_ == page.GetDataType() &&
         protocol_ == page.GetProtocol();
}

bool CNetInfoImportWizPage2::LoadFrom(const CNetInfoImportWizPage1& page) {
  file_path_ = page.GetFilePath();
  source_file_type_ = page.GetSourceFileType();
  data_type_ = page.GetDataType();
  protocol_ = page.GetProtocol();
  if (!HasRequiredTables()) {
    loaded_ = 0;  // what is in the list belongs to other data
    return false;
  }
  List().DeleteAllItems();
  List().DeleteAllColumns();
  if (source_file_type_ == kSourceWorkbook) loaded_ = LoadWorkbook() == 1 ? 1 : 0;
  if (loaded_ == 1) return true;
  ShowMessageBox("导入文件的格式错误，请检查后重新导入！"_gbk, MessageIcon::kNone, MessageButtons::kOk,
                 kApplicationCaption, this);
  return false;
}

// Every table is there or the first one missing is reported.
bool CNetInfoImportWizPage2::HasRequiredTables() const {
  IDBMapper* const mapper = CFactory::Instance().CreateDBMapper();
  for (const RequiredTable& table : RequiredTables(data_type_, protocol_)) {
    if (mapper->TableExists(table.name)) continue;
    Warn(table.message);
    return false;
  }
  return true;
}

int CNetInfoImportWizPage2::LoadWorkbook() {
  const OpenedWorkbook workbook(*mapper_, file_path_);
  return workbook.result() == 1 ? FillWorksheets() : workbook.result();
}

int CNetInfoImportWizPage2::FillWorksheets() {
  std::vector<CString> names;
  if (const int result = mapper_->GetWorksheetNames(names); result != 1) return result;
  auto& worksheets = GetDlgItem<CComboBox>(kComboWorksheet);
  worksheets.ResetContent();
  for (const CString& name : names) worksheets.AddString(name);
  worksheets.SetCurSel(0);
  worksheet_ = worksheets.GetWindowText();
  return FillMapping();
}

int CNetInfoImportWizPage2::FillMapping() {
  headings_.clear();
  heading_attributes_.clear();
  catalogue_names_.clear();
  catalogue_attributes_.clear();
  mapping_.Clear();
  selected_row_ = -1;
  List().DeleteAllItems();
  List().DeleteAllColumns();
  if (const int result = ReadHeadings(); result != 1) return result;
  List().InsertColumn(0, "EXCEL", kColumnWidth);
  List().InsertColumn(1, NetMappingHeading(data_type_), kColumnWidth);
  MapAutomatically();
  ShowRows();
  return 1;
}

int CNetInfoImportWizPage2::ReadHeadings() {
  if (worksheet_.IsEmpty()) return 1;
  if (const int result = mapper_->GetColumnHeadings(worksheet_, headings_, heading_attributes_); result != 1)
    return result;
  return mapper_->GetParameterCatalogue(data_type_, protocol_, catalogue_names_, catalogue_attributes_);
}

void CNetInfoImportWizPage2::MapAutomatically() {
  for (const CString& heading : headings_) {
    const auto found = std::find(catalogue_names_.begin(), catalogue_names_.end(), heading);
    if (found == catalogue_names_.end()) continue;
    mapping_.Add(heading, heading, catalogue_attributes_[static_cast<std::size_t>(found - catalogue_names_.begin())]);
  }
}

// Mapped headings first; each of the others goes right behind them, so that these stand in reverse order.
void CNetInfoImportWizPage2::ShowRows() {
  CListCtrl& list = List();
  const int mapped = static_cast<int>(mapping_.source_columns.size());
  for (int row = 0; row < mapped; ++row) {
    const auto at = static_cast<std::size_t>(row);
    list.SetItemText(list.InsertItem(row, mapping_.source_columns[at]), 1, mapping_.parameters[at]);
  }
  for (const CString& heading : headings_) {
    if (mapping_.PlaceOfColumn(heading) < 0) list.SetItemText(list.InsertItem(mapped, heading), 1, kNotMapped);
  }
  if (list.GetItemCount() == 0) return;
  list.SetItemSelected(0, true);
  list.EnsureVisible(0);
}

void CNetInfoImportWizPage2::SelectWorksheet(const CString& name) {
  auto& worksheets = GetDlgItem<CComboBox>(kComboWorksheet);
  worksheets.SetCurSel(worksheets.FindStringExact(-1, name));
}

void CNetInfoImportWizPage2::OnWorksheetChanged() {
  const CString chosen = GetDlgItem<CComboBox>(kComboWorksheet).GetWindowText();
  if (!chosen.IsEmpty()) {
    const OpenedWorkbook workbook(*mapper_, file_path_);
    if (workbook.result() != 1) return SelectWorksheet(worksheet_);
    worksheet_ = chosen;
    FillMapping();
  }
  ShowWizardButtons();
}

bool CNetInfoImportWizPage2::HasSelectedRow() const {
  return selected_row_ >= 0 && selected_row_ < List().GetItemCount();
}

CString CNetInfoImportWizPage2::RowHeading() const { return List().GetItemText(selected_row_, 0); }

// Empty when the row is not mapped.
CString CNetInfoImportWizPage2::RowParameter() const {
  const CString text = List().GetItemText(selected_row_, 1);
  return text == kNotMapped ? CString() : text;
}

void CNetInfoImportWizPage2::MapRow() {
  if (!HasSelectedRow()) return;
  CNetParamDialog dialog(data_type_, protocol_, catalogue_names_, mapping_.parameters);
  if (dialog.DoModal() == kIdOk) {
    const auto found = std::find(catalogue_names_.begin(), catalogue_names_.end(), dialog.GetChoice());
    const bool is_known = found != catalogue_names_.end();
    const auto at = static_cast<std::size_t>(found - catalogue_names_.begin());
    SetRowParameter(dialog.GetChoice(), is_known ? catalogue_attributes_[at] : CString(), is_known);
  }
  if (!mapping_.IsEmpty()) ShowWizardButtons();
}

void CNetInfoImportWizPage2::NameRow() {
  if (!HasSelectedRow()) return;
  const auto attribute = heading_attributes_.find(RowHeading());
  if (attribute == heading_attributes_.end() || attribute->second.IsEmpty()) return;
  CCustomNetInfoDlg dialog(RowHeading(), RowParameter(), mapping_.parameters);
  if (dialog.DoModal() == kIdOk) SetRowParameter(dialog.GetName(), attribute->second, true);
  if (!mapping_.IsEmpty()) ShowWizardButtons();
}

void CNetInfoImportWizPage2::SetRowParameter(const CString& parameter, const CString& attribute, bool is_stored) {
  mapping_.Remove(mapping_.PlaceOfParameter(RowParameter()));
  List().SetItemText(selected_row_, 1, parameter);
  if (is_stored) mapping_.Add(RowHeading(), parameter, attribute);
}

void CNetInfoImportWizPage2::ClearRow() {
  if (!HasSelectedRow()) return;
  List().SetItemText(selected_row_, 1, kNotMapped);
  mapping_.Remove(mapping_.PlaceOfColumn(RowHeading()));
  if (mapping_.IsEmpty()) ShowWizardButtons();
}

void CNetInfoImportWizPage2::ShowWizardButtons() {
  GetSheet()->PostWizardButtons(kWizardBack | (mapping_.IsEmpty() ? kWizardDisabledFinish : kWizardFinish));
}

bool CNetInfoImportWizPage2::OnWizardFinish() {
  CString refusal;
  if (mapping_.IsEmpty()) {
    refusal = "请选择映射参数！"_gbk;
  } else if (worksheet_.IsEmpty()) {
    refusal = "数据页名称无效，请重选！"_gbk;
  } else {
    const auto mandatory = MandatoryParameters(data_type_, protocol_);
    const auto missing = std::find_if(mandatory.begin(), mandatory.end(), [this](const MandatoryParameter& parameter) {
      return !mapping_.HoldsParameter(parameter.name);
    });
    if (missing != mandatory.end()) refusal = missing->message;
  }
  if (refusal.IsEmpty()) return true;
  Warn(refusal);
  return false;
}

}  // namespace loom
