#include "text/export/text_export_page2.h"

#include <algorithm>

#include "components/project.h"
#include "platform/completes.h"
#include "platform/error.h"
#include "platform/number.h"
#include "platform/ui/message_box.h"
#include "resources/images.h"
#include "resources/text_export_templates.h"
#include "text/export/export_limits_dialog.h"
#include "text/navigator/parameter_navigator.h"

namespace loom {
namespace {

// The exporter writes these by itself.
constexpr const char* kAlwaysWritten[] = {"RecordTime", "Longitude", "Latitude"};

constexpr int kMinimumColumn = 1;
constexpr int kMaximumColumn = 2;
constexpr int kListColumns = 3;
constexpr int kLimitDecimals = 2;

bool IsOffered(const NavigatorItem& item) {
  if (item.type != NavigatorType::kParamItem) return true;
  if (g_project->GetIEMemType(g_project->GetIEID(item.text)) == kFieldText) return false;
  return std::find(std::begin(kAlwaysWritten), std::end(kAlwaysWritten), item.text) == std::end(kAlwaysWritten);
}

// Whether some log file still has the stream; says so by the address alone.
bool IsPresent(const IDataStream* stream) {
  std::map<CString, ILogfile*> logs;
  CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(logs);
  return std::any_of(logs.begin(), logs.end(), [stream](const auto& log) {
    const std::list<IDataStream*> streams = log.second->GetStreams();
    return std::find(streams.begin(), streams.end(), stream) != streams.end();
  });
}

}  // namespace

CTextExportWizPage2::CTextExportWizPage2(const CTextExportWizPage1& stream_page)
    : CPropertyPage(kTextExport2Template), stream_page_(stream_page) {
  OnClicked(kButtonExportSelect, [this] { AddSelected(); });
  OnClicked(kButtonExportRemove, [this] { RemoveSelected(); });
  OnClicked(kButtonExportClear, [this] { RemoveAll(); });
  OnClicked(kButtonExportUp, [this] { MoveUp(); });
  OnClicked(kButtonExportDown, [this] { MoveDown(); });
  OnDoubleClicked(kListExport, [this] { EditLimit(); });
}

CMutiTreeCtrl& CTextExportWizPage2::Tree() const { return GetDlgItem<CMutiTreeCtrl>(kTreeExport); }
CListCtrl& CTextExportWizPage2::List() const { return GetDlgItem<CListCtrl>(kListExport); }

void CTextExportWizPage2::OnInitDialog() {
  CPropertyPage::OnInitDialog();
  shown_stream_ = nullptr;
  Tree().SetImageList(CImageList(kTreeImages));
  CListCtrl& list = List();
  list.InsertColumn(0, "导出参数"_gbk, 100);
  list.InsertColumn(kMinimumColumn, "最小值"_gbk, 55);
  list.InsertColumn(kMaximumColumn, "最大值"_gbk, 55);
  if (LoadNavigator(navigator_)) return;
  ShowMessageBox("加载参数配置文件失败！不能正常显示参数"_gbk, MessageIcon::kError);
  EndDialog(kIdCancel);
}

bool CTextExportWizPage2::OnSetActive() {
  if (!CPropertyPage::OnSetActive()) return false;
  IDataStream* const stream = stream_page_.GetStream();
  const bool is_shown = stream == shown_stream_ || Completes([&] {
                          if (!IsPresent(stream))
                            throw Error("the stream that was chosen for the export is not loaded any more");
                          ShowStream(*stream);
                        });
  if (!is_shown) {
    shown_stream_ = nullptr;
    ShowMessageBox("初始化信息失败，请重试！"_gbk, MessageIcon::kError);
    return false;
  }
  UpdateButtons();
  return true;
}

void CTextExportWizPage2::ShowStream(IDataStream& stream) {
  const std::list<CString> names = stream.GetIENames();
  ie_names_ = {names.begin(), names.end()};
  CMutiTreeCtrl& tree = Tree();
  tree.DeleteAllItems();
  const HTREEITEM root = tree.InsertItem(stream.GetName(), kImageStream);
  WalkNavigator(navigator_.GetDocumentElement(), root, [&](const NavigatorItem& item, HTREEITEM parent) {
    if (!IsOffered(item)) return parent;
    return tree.InsertItem(item.text, item.type == NavigatorType::kProtocol ? kImageGroup : item.image, parent);
  });
  const CString protocol = stream.GetProtocol();
  for (HTREEITEM item = tree.GetChildItem(root); item;) {
    const HTREEITEM next = tree.GetNextSiblingItem(item);
    if (!RemoveUnavailable(item) && tree.GetItemText(item) != protocol) tree.DeleteItem(item);
    item = next;
  }
  tree.Expand(root);
  List().DeleteAllItems();
  limits_.clear();
  shown_stream_ = &stream;
}

// Removes the leaves that the stream lacks and the groups that hold no other; true when the item itself went.
bool CTextExportWizPage2::RemoveUnavailable(HTREEITEM item) {
  CMutiTreeCtrl& tree = Tree();
  const bool is_leaf = !tree.ItemHasChildren(item);
  for (HTREEITEM child = tree.GetChildItem(item); child;) {
    const HTREEITEM next = tree.GetNextSiblingItem(child);
    RemoveUnavailable(child);
    child = next;
  }
  if (is_leaf ? ie_names_.contains(tree.GetItemText(item)) : tree.ItemHasChildren(item)) return false;
  tree.DeleteItem(item);
  return true;
}

void CTextExportWizPage2::UpdateButtons() {
  GetSheet()->SetWizardButtons(List().GetItemCount() > 0 ? kWizardBack | kWizardNext : kWizardBack);
}

void CTextExportWizPage2::AddSelected() {
  const CMutiTreeCtrl& tree = Tree();
  for (const HTREEITEM selected : tree.GetSelectedItems()) {
    if (!tree.ItemHasChildren(selected)) AddParameter(tree.GetItemText(selected));
    for (HTREEITEM item = tree.GetNextItem(selected, selected); item; item = tree.GetNextItem(item, selected)) {
      if (!tree.ItemHasChildren(item)) AddParameter(tree.GetItemText(item));
    }
  }
  UpdateButtons();
}

void CTextExportWizPage2::AddParameter(const CString& name) {
  CListCtrl& list = List();
  if (list.FindItem(name) < 0 && ie_names_.contains(name)) list.InsertItem(list.GetItemCount(), name);
}

void CTextExportWizPage2::RemoveSelected() {
  CListCtrl& list = List();
  for (int row = list.GetNextSelected(); row >= 0; row = list.GetNextSelected()) {
    limits_.erase(list.GetItemText(row, 0));
    list.DeleteItem(row);
  }
  UpdateButtons();
}

void CTextExportWizPage2::RemoveAll() {
  List().DeleteAllItems();
  limits_.clear();
  UpdateButtons();
}

void CTextExportWizPage2::MoveRow(int from, int to) {
  CListCtrl& list = List();
  CString cells[kListColumns];
  for (int column = 0; column < kListColumns; ++column) cells[column] = list.GetItemText(from, column);
  list.DeleteItem(from);
  list.InsertItem(to, cells[0]);
  for (int column = 1; column < kListColumns; ++column) list.SetItemText(to, column, cells[column]);
  list.SetItemSelected(to, true);
}

void CTextExportWizPage2::MoveUp() {
  CListCtrl& list = List();
  for (const int row : list.GetSelectedRows()) {
    if (row > 0) MoveRow(row, row - 1);
  }
  if (const int first = list.GetNextSelected(); first >= 0) list.EnsureVisible(first);
}

void CTextExportWizPage2::MoveDown() {
  CListCtrl& list = List();
  const std::vector<int> selected = list.GetSelectedRows();
  std::for_each(selected.rbegin(), selected.rend(), [&](int row) {
    if (row + 1 < list.GetItemCount()) MoveRow(row, row + 1);
  });
}

void CTextExportWizPage2::EditLimit() {
  CListCtrl& list = List();
  const int row = list.GetClickedRow();
  if (row < 0) return;
  const CString name = list.GetItemText(row, 0);
  double valid_maximum = kInvalidDouble;
  double valid_minimum = kInvalidDouble;
  if (!g_project->GetIEValueRangeByName(name, valid_maximum, valid_minimum)) return;
  const auto known = limits_.find(name);
  const ExportLimit current = known != limits_.end() ? known->second : ExportLimit();
  CSelExportDialog dialog(name, valid_minimum, valid_maximum, current.minimum, current.maximum);
  if (dialog.DoModal() != kIdOk) return;

  const ExportLimit& limit = dialog.GetResult();
  const bool is_none = limit.minimum == kInvalidDouble && limit.maximum == kInvalidDouble;
  if (is_none)
    limits_.erase(name);
  else
    limits_[name] = limit;
  const auto text = [&](double number) { return is_none ? CString() : CString(NumberText(number, kLimitDecimals)); };
  list.SetItemText(row, kMinimumColumn, text(limit.minimum));
  list.SetItemText(row, kMaximumColumn, text(limit.maximum));
}

int CTextExportWizPage2::OnWizardNext() {
  const CListCtrl& list = List();
  if (list.GetItemCount() == 0) {
    ShowMessageBox("请选择要导出的参数！"_gbk, MessageIcon::kWarning);
    return kWizardStay;
  }
  parameters_.clear();
  for (int row = 0; row < list.GetItemCount(); ++row) parameters_.push_back(list.GetItemText(row, 0));
  return kWizardGoOn;
}

}  // namespace loom
