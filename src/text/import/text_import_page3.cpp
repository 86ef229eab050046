#include "platform/ui/list_ctrl.h"
#include "platform/ui/message_box.h"
#include "resources/text_import_templates.h"
#include "text/import/param_dialog.h"
#include "text/import/text_import_pages.h"

namespace loom {
namespace {

constexpr int kColumnWidthPx = 100;
constexpr const char* kUnmapped = " ...... ";

}  // namespace

CTextImportWizPage3::CTextImportWizPage3(TextImportSettings& settings)
    : CPropertyPage(kTextImport3Template), settings_(settings) {
  OnSelChange(kListColumnMap, [this] { OnRowSelected(); });
  OnDoubleClicked(kListColumnMap, [this] { MapCurrent(); });
  On(Notification::kHeaderClicked, kListTextPreview, [this] { OnHeaderClicked(); });
  OnClicked(kButtonMapColumn, [this] { MapCurrent(); });
  OnClicked(kButtonUnmapColumn, [this] { UnmapSelected(); });
  OnClicked(kButtonUnmapAll, [this] { UnmapAll(); });
  OnClicked(kButtonSaveConfig, [this] { SaveConfig(); });
}

bool CTextImportWizPage3::OnSetActive() {
  if (settings_.preview.empty()) {
    ShowMessageBox("数据错误，请重试！"_gbk, MessageIcon::kNone, MessageButtons::kOk, HostCaption());
    return false;
  }
  ShowPreview(GetDlgItem<CListCtrl>(kListTextPreview), settings_.preview, kPreviewColumnPx);
  MapAutomatically();
  FillMapping();
  ShowButtons();
  return CPropertyPage::OnSetActive();
}

void CTextImportWizPage3::MapAutomatically() {
  settings_.columns.clear();
  const PreviewRow& titles = settings_.preview.front();
  for (std::size_t column = 0; column < titles.size(); ++column) {
    const CString name = IeOfTitle(titles[column]);
    if (!name.IsEmpty()) settings_.columns[static_cast<std::int32_t>(column)] = name;
  }
}

void CTextImportWizPage3::FillMapping() {
  auto& list = GetDlgItem<CListCtrl>(kListColumnMap);
  list.DeleteAllItems();
  list.DeleteAllColumns();
  list.InsertColumn(0, "列"_gbk, kColumnWidthPx);
  list.InsertColumn(1, "参数"_gbk, list.GetClientWidth() - kColumnWidthPx);
  const int count = PreviewColumnCount(settings_.preview);
  for (int column = 0; column < count; ++column) {
    list.InsertItem(column, Format(" 列 %d"_gbk, column + 1));
    const auto mapped = settings_.columns.find(column);
    list.SetItemText(column, 1, mapped != settings_.columns.end() ? mapped->second : CString(kUnmapped));
  }
  current_column_ = -1;
  list.SetItemSelected(0, true);
  list.EnsureVisible(0);
}

void CTextImportWizPage3::ShowButtons() {
  const bool is_mapped = !settings_.columns.empty();
  GetDlgItem(kButtonSaveConfig).EnableWindow(is_mapped);
  GetSheet()->SetWizardButtons(kWizardBack | (is_mapped ? kWizardFinish : kWizardDisabledFinish));
}

void CTextImportWizPage3::OnRowSelected() {
  const auto& list = GetDlgItem<CListCtrl>(kListColumnMap);
  const int row = list.GetChangedRow();
  if (!list.IsItemSelected(row)) return;
  current_column_ = row;
  ShowCurrentColumn();
}

void CTextImportWizPage3::ShowCurrentColumn() {
  auto& preview = GetDlgItem<CListCtrl>(kListTextPreview);
  preview.SetColourRule([current = current_column_](int, int column) {
    return column == current ? CellColours::kHighlight : CellColours::kNormal;
  });
  int before_px = 0;
  for (int column = 0; column < current_column_; ++column) before_px += preview.GetColumnWidth(column);
  preview.Scroll(-preview.GetScrollX());
  preview.Scroll(before_px);
}

void CTextImportWizPage3::OnHeaderClicked() {
  auto& list = GetDlgItem<CListCtrl>(kListColumnMap);
  const int column = GetDlgItem<CListCtrl>(kListTextPreview).GetClickedColumn();
  current_column_ = column;
  list.SetItemSelected(column, true);
  list.EnsureVisible(column);
  ShowCurrentColumn();
}

void CTextImportWizPage3::MapCurrent() {
  if (current_column_ < 0) return;
  CParamDialog dialog(current_column_, settings_.columns);
  if (dialog.DoModal() == kIdOk) {
    GetDlgItem<CListCtrl>(kListColumnMap).SetItemText(current_column_, 1, settings_.columns[current_column_]);
  }
  if (!settings_.columns.empty()) ShowButtons();
}

void CTextImportWizPage3::UnmapSelected() {
  auto& list = GetDlgItem<CListCtrl>(kListColumnMap);
  const int row = list.GetNextSelected();
  if (row < 0) return;
  list.SetItemText(row, 1, kUnmapped);
  settings_.columns.erase(row);
  ShowButtons();
}

void CTextImportWizPage3::UnmapAll() {
  auto& list = GetDlgItem<CListCtrl>(kListColumnMap);
  for (int row = 0; row < list.GetItemCount(); ++row) list.SetItemText(row, 1, kUnmapped);
  settings_.columns.clear();
  ShowButtons();
}

void CTextImportWizPage3::SaveConfig() {
  SetOutcome(SaveImportConfig(settings_) ? DialogOutcome::kDone : DialogOutcome::kNotDone);
}

bool CTextImportWizPage3::OnWizardFinish() { return RequireTimeColumn(settings_.columns); }

}  // namespace loom
